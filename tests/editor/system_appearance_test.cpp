#include "editor/system_appearance.h"

#include <gtest/gtest.h>

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVariant>
#include <QSignalSpy>

namespace vantrel {
namespace {

const QString kDesktop = QStringLiteral("org.freedesktop.portal.Desktop");

/// Tells everyone on the bus that a setting has another value, as the portal does.
void change(const QDBusConnection& portal, const char* group, const char* key,
            const QVariant& value) {
  QDBusMessage message = QDBusMessage::createSignal(
      QStringLiteral("/org/freedesktop/portal/desktop"),
      QStringLiteral("org.freedesktop.portal.Settings"), QStringLiteral("SettingChanged"));
  message << QString::fromLatin1(group) << QString::fromLatin1(key)
          << QVariant::fromValue(QDBusVariant(value));
  ASSERT_TRUE(portal.send(message));
}

void changeColorScheme(const QDBusConnection& portal, uint value) {
  change(portal, "org.freedesktop.appearance", "color-scheme", value);
}

/// The portal's settings, as they are read.
class FakeSettings final : public QObject {
  Q_OBJECT
  Q_CLASSINFO("D-Bus Interface", "org.freedesktop.portal.Settings")

 public:
  QStringList asked;

 public Q_SLOTS:
  // The portal's own name for it.
  QDBusVariant Read(const QString& group, const QString& key) {
    asked << group << key;
    const QVariant value =
        key == QLatin1String("enable-animations") ? QVariant(true) : QVariant(1U);
    return QDBusVariant(QVariant::fromValue(QDBusVariant(value)));
  }
};

TEST(SystemAppearance, FollowsThePortalWhileTheProgramRuns) {
  // First of all: what else speaks on the bus would teach the toolkit the types of its messages.
  SystemAppearance appearance;
  QSignalSpy changed(&appearance, &SystemAppearance::changed);
  ASSERT_FALSE(appearance.prefersDark());
  QDBusConnection portal =
      QDBusConnection::connectToBus(QDBusConnection::SessionBus, QStringLiteral("portal"));
  ASSERT_TRUE(portal.registerService(kDesktop));

  changeColorScheme(portal, 1);
  ASSERT_TRUE(changed.wait());
  EXPECT_TRUE(appearance.prefersDark());
  changeColorScheme(portal, 2);
  ASSERT_TRUE(changed.wait());
  EXPECT_FALSE(appearance.prefersDark());
}

TEST(SystemAppearance, AsksForLessMotionAsThePortalDoes) {
  SystemAppearance appearance;
  QSignalSpy changed(&appearance, &SystemAppearance::changed);
  ASSERT_FALSE(appearance.prefersLessMotion());
  QDBusConnection portal =
      QDBusConnection::connectToBus(QDBusConnection::SessionBus, QStringLiteral("portal"));
  ASSERT_TRUE(portal.registerService(kDesktop));

  change(portal, "org.freedesktop.appearance", "reduced-motion", 1U);
  ASSERT_TRUE(changed.wait());
  EXPECT_TRUE(appearance.prefersLessMotion());
  change(portal, "org.freedesktop.appearance", "reduced-motion", 0U);
  ASSERT_TRUE(changed.wait());
  EXPECT_FALSE(appearance.prefersLessMotion());
  change(portal, "org.gnome.desktop.interface", "enable-animations", false);
  ASSERT_TRUE(changed.wait());
  EXPECT_TRUE(appearance.prefersLessMotion());
}

TEST(SystemAppearance, AsksThePortalWithoutWaitingForIt) {
  QDBusConnection portal =
      QDBusConnection::connectToBus(QDBusConnection::SessionBus, QStringLiteral("portal"));
  ASSERT_TRUE(portal.registerService(kDesktop));
  FakeSettings settings;
  ASSERT_TRUE(portal.registerObject(QStringLiteral("/org/freedesktop/portal/desktop"), &settings,
                                    QDBusConnection::ExportAllSlots));
  SystemAppearance appearance;
  QSignalSpy changed(&appearance, &SystemAppearance::changed);
  EXPECT_TRUE(settings.asked.isEmpty());
  ASSERT_TRUE(changed.wait());
  EXPECT_TRUE(appearance.prefersDark());
  EXPECT_EQ(settings.asked.mid(0, 2), (QStringList{QStringLiteral("org.freedesktop.appearance"),
                                                   QStringLiteral("color-scheme")}));
}

}  // namespace
}  // namespace vantrel

#include "system_appearance_test.moc"
