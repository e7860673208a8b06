#include "editor/desktop_notification.h"

#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QGuiApplication>

namespace vantrel {
namespace {

const QString kService = QStringLiteral("org.freedesktop.Notifications");
const QString kPath = QStringLiteral("/org/freedesktop/Notifications");
const QString kDefaultAction = QStringLiteral("default");
constexpr int kDesktopsOwnTimeout = -1;

QDBusMessage callOf(const QString& method) {
  return QDBusMessage::createMethodCall(kService, kPath, kService, method);
}

void close(uint id) {
  QDBusConnection::sessionBus().send(callOf(QStringLiteral("CloseNotification")) << id);
}

QDBusMessage notifyCall(const ExportNotice& notice) {
  const QString application = QGuiApplication::desktopFileName();
  const QVariantMap hints = {
      {QStringLiteral("desktop-entry"), application},
      {QStringLiteral("category"),
       notice.isFailure ? QStringLiteral("transfer.error") : QStringLiteral("transfer.complete")}};
  constexpr uint kReplacesNone = 0;
  // The body is markup; the title is not.
  return callOf(QStringLiteral("Notify"))
         << QCoreApplication::applicationName() << kReplacesNone << application << notice.title
         << notice.text.toHtmlEscaped()
         << QStringList{kDefaultAction, DesktopNotification::tr("Show")} << hints
         << kDesktopsOwnTimeout;
}

}  // namespace

struct DesktopNotification::Shown {
  /// 0 while it is not on the desktop.
  uint id = 0;
  bool isOver = false;
};

DesktopNotification::DesktopNotification(const ExportNotice& notice, QObject* parent)
    : QObject(parent), m_shown(std::make_shared<Shown>()) {
  if (!QDBusConnection::sessionBus().isConnected()) return;
  listen();
  send(notice);
}

DesktopNotification::~DesktopNotification() {
  m_shown->isOver = true;
  if (m_shown->id != 0) close(m_shown->id);
}

void DesktopNotification::listen() {
  QDBusConnection bus = QDBusConnection::sessionBus();
  // Of any sender: for a named one the toolkit would wait until the bus tells who that is. It knows
  // slots and the types of their arguments by name only.
  const QString any;
  bus.connect(any, kPath, kService, QStringLiteral("ActivationToken"), this,
              SLOT(takeToken(uint, QString)));
  bus.connect(any, kPath, kService, QStringLiteral("ActionInvoked"), this,
              SLOT(takeAction(uint, QString)));
  bus.connect(any, kPath, kService, QStringLiteral("NotificationClosed"), this,
              SLOT(takeClosing(uint, uint)));
}

void DesktopNotification::send(const ExportNotice& notice) {
  // Of the application, so that an answer that comes too late still closes the notice.
  auto* const watcher = new QDBusPendingCallWatcher(
      QDBusConnection::sessionBus().asyncCall(notifyCall(notice)), qApp);
  connect(watcher, &QDBusPendingCallWatcher::finished, watcher,
          [shown = m_shown](QDBusPendingCallWatcher* finished) {
            finished->deleteLater();
            const QDBusPendingReply<uint> reply = *finished;
            if (reply.isError()) return;
            if (shown->isOver) {
              close(reply.value());
            } else {
              shown->id = reply.value();
            }
          });
}

bool DesktopNotification::isOwn(uint id) const {
  return m_shown->id != 0 && m_shown->id == id;
}

void DesktopNotification::takeAction(uint id, const QString& key) {
  if (isOwn(id) && key == kDefaultAction) Q_EMIT activated();
}

void DesktopNotification::takeToken(uint id, const QString& token) {
  // With it the desktop lets the window come to the front; the toolkit reads it from here.
  if (isOwn(id)) qputenv("XDG_ACTIVATION_TOKEN", token.toUtf8());
}

void DesktopNotification::takeClosing(uint id, uint /*reason*/) {
  if (isOwn(id)) m_shown->id = 0;
}

}  // namespace vantrel
