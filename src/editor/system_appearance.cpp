#include "editor/system_appearance.h"

#include <QDBusConnection>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusVariant>
#include <QGuiApplication>
#include <QPalette>
#include <QStyleHints>

#include "controls/dark_palette.h"

namespace vantrel {
namespace {

const QString kService = QStringLiteral("org.freedesktop.portal.Desktop");
const QString kPath = QStringLiteral("/org/freedesktop/portal/desktop");
const QString kSettings = QStringLiteral("org.freedesktop.portal.Settings");
const QString kGroup = QStringLiteral("org.freedesktop.appearance");
const QString kKey = QStringLiteral("color-scheme");
// Of the portal: 0 no preference, 1 dark, 2 light.
constexpr uint kDark = 1;

/// A value out of however many variants it is wrapped in: Read wraps twice.
QVariant unwrapped(QVariant value) {
  while (value.canConvert<QDBusVariant>())
    value = value.value<QDBusVariant>().variant();
  return value;
}

bool toolkitPrefersDark() {
#if QT_VERSION >= QT_VERSION_CHECK(6, 5, 0)
  if (QGuiApplication::styleHints()->colorScheme() == Qt::ColorScheme::Dark) return true;
#endif
  return isDark(QGuiApplication::palette());
}

}  // namespace

SystemAppearance::SystemAppearance(QObject* parent)
    : QObject(parent), m_dark(toolkitPrefersDark()) {
#if QT_VERSION >= QT_VERSION_CHECK(6, 5, 0)
  connect(QGuiApplication::styleHints(), &QStyleHints::colorSchemeChanged, this,
          [this](Qt::ColorScheme scheme) { setDark(scheme == Qt::ColorScheme::Dark); });
#endif
  askPortal();
}

void SystemAppearance::askPortal() {
  QDBusConnection bus = QDBusConnection::sessionBus();
  if (!bus.isConnected()) return;
  // Of any sender: for a named one the toolkit would wait until the bus tells who that is. It knows
  // slots and the types of their arguments by name only.
  const QString any;
  qRegisterMetaType<QDBusVariant>();
  bus.connect(any, kPath, kSettings, QStringLiteral("SettingChanged"), this,
              SLOT(takeSetting(QString, QString, QDBusVariant)));
  QDBusMessage read =
      QDBusMessage::createMethodCall(kService, kPath, kSettings, QStringLiteral("Read"));
  read << kGroup << kKey;
  // Before a window is made the answer has come in most cases.
  auto* const watcher = new QDBusPendingCallWatcher(bus.asyncCall(read), this);
  connect(watcher, &QDBusPendingCallWatcher::finished, this,
          [this](QDBusPendingCallWatcher* finished) {
            finished->deleteLater();
            const QDBusPendingReply<QDBusVariant> reply = *finished;
            if (!reply.isError()) takeSetting(kGroup, kKey, reply.value());
          });
}

void SystemAppearance::takeSetting(const QString& group, const QString& key,
                                   const QDBusVariant& value) {
  if (group != kGroup || key != kKey) return;
  setDark(unwrapped(value.variant()).toUInt() == kDark);
}

void SystemAppearance::setDark(bool dark) {
  if (dark == m_dark) return;
  m_dark = dark;
  Q_EMIT changed();
}

}  // namespace vantrel
