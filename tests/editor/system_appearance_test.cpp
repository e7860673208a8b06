#include "editor/system_appearance.h"

#include <gtest/gtest.h>

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVariant>
#include <QSignalSpy>

namespace vantrel {
namespace {

const QString kDesktop = QStringLiteral("org.freedesktop.portal.Desktop");

/// Tells everyone on the bus that the color scheme has another value, as the portal does.
void changeColorScheme(const QDBusConnection& portal, uint value) {
  QDBusMessage change = QDBusMessage::createSignal(
      QStringLiteral("/org/freedesktop/portal/desktop"),
      QStringLiteral("org.freedesktop.portal.Settings"), QStringLiteral("SettingChanged"));
  change << QStringLiteral("org.freedesktop.appearance") << QStringLiteral("color-scheme")
         << QVariant::fromValue(QDBusVariant(value));
  ASSERT_TRUE(portal.send(change));
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
    return QDBusVariant(QVariant::fromValue(QDBusVariant(1U)));
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
  EXPECT_EQ(settings.asked, (QStringList{QStringLiteral("org.freedesktop.appearance"),
                                         QStringLiteral("color-scheme")}));
}

}  // namespace
}  // namespace vantrel

#include "system_appearance_test.moc"
