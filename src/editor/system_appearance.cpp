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
const QString kAppearance = QStringLiteral("org.freedesktop.appearance");
const QString kColorScheme = QStringLiteral("color-scheme");
const QString kReducedMotion = QStringLiteral("reduced-motion");
const QString kInterface = QStringLiteral("org.gnome.desktop.interface");
const QString kAnimations = QStringLiteral("enable-animations");
// Of the portal's colour scheme: 0 no preference, 1 dark, 2 light; of its motion: 1 less.
constexpr uint kDark = 1, kLess = 1;

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
          [this](Qt::ColorScheme scheme) { set(m_dark, scheme == Qt::ColorScheme::Dark); });
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
  // Before a window is made the first answer has come in most cases.
  read(kAppearance, kColorScheme);
  read(kAppearance, kReducedMotion);
  read(kInterface, kAnimations);
}

void SystemAppearance::read(const QString& group, const QString& key) {
  QDBusMessage question =
      QDBusMessage::createMethodCall(kService, kPath, kSettings, QStringLiteral("Read"));
  question << group << key;
  auto* const watcher =
      new QDBusPendingCallWatcher(QDBusConnection::sessionBus().asyncCall(question), this);
  connect(watcher, &QDBusPendingCallWatcher::finished, this,
          [this, group, key](QDBusPendingCallWatcher* finished) {
            finished->deleteLater();
            const QDBusPendingReply<QDBusVariant> reply = *finished;
            if (!reply.isError()) takeSetting(group, key, reply.value());
          });
}

void SystemAppearance::takeSetting(const QString& group, const QString& key,
                                   const QDBusVariant& value) {
  const QVariant setting = unwrapped(value.variant());
  if (group == kAppearance && key == kColorScheme) {
    set(m_dark, setting.toUInt() == kDark);
  } else if (group == kAppearance && key == kReducedMotion) {
    set(m_reducedMotion, setting.toUInt() == kLess);
  } else if (group == kInterface && key == kAnimations) {
    set(m_noAnimations, !setting.toBool());
  }
}

void SystemAppearance::set(bool& wish, bool value) {
  if (value == wish) return;
  wish = value;
  Q_EMIT changed();
}

}  // namespace vantrel
