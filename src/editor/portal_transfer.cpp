#include "editor/portal_transfer.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QMimeData>
#include <utility>

namespace vantrel::PortalTransfer {
namespace {

const QString kFormat = QStringLiteral("application/vnd.portal.filetransfer");
const QString kService = QStringLiteral("org.freedesktop.portal.Documents");
const QString kPath = QStringLiteral("/org/freedesktop/portal/documents");
const QString kInterface = QStringLiteral("org.freedesktop.portal.FileTransfer");

}  // namespace

bool isOffered(const QMimeData& data) {
  return data.hasFormat(kFormat);
}

std::optional<QString> keyOf(const QMimeData& data) {
  QByteArray key = data.data(kFormat);
  // Some programs send the zero behind the text with it.
  while (key.endsWith('\0'))
    key.chop(1);
  if (key.isEmpty()) return std::nullopt;
  return QString::fromUtf8(key);
}

void retrieve(const QString& key, QObject& receiver, Retrieved retrieved) {
  if (!QDBusConnection::sessionBus().isConnected()) {
    // A call would never be answered.
    QMetaObject::invokeMethod(
        &receiver, [retrieved = std::move(retrieved)] { retrieved({}, {}); }, Qt::QueuedConnection);
    return;
  }
  QDBusMessage call =
      QDBusMessage::createMethodCall(kService, kPath, kInterface, QStringLiteral("RetrieveFiles"));
  call << key << QVariantMap();
  auto* const watcher =
      new QDBusPendingCallWatcher(QDBusConnection::sessionBus().asyncCall(call), &receiver);
  QObject::connect(watcher, &QDBusPendingCallWatcher::finished, &receiver,
                   [retrieved = std::move(retrieved)](QDBusPendingCallWatcher* finished) {
                     finished->deleteLater();
                     const QDBusPendingReply<QStringList> reply = *finished;
                     if (reply.isError()) {
                       retrieved({}, reply.error().message());
                     } else {
                       retrieved(reply.value(), {});
                     }
                   });
}

}  // namespace vantrel::PortalTransfer
