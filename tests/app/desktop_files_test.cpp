#include <gtest/gtest.h>

#include <QSettings>
#include <QString>
#include <filesystem>

namespace vantrel {
namespace {

const QString kPackaging = QStringLiteral(VANTREL_SOURCE_DIR "/packaging/");
const QString kId = QStringLiteral("org.vantrel.Vantrel");

QString entry(const char* key) {
  const QSettings file(kPackaging + kId + QStringLiteral(".desktop"), QSettings::IniFormat);
  return file.value(QStringLiteral("Desktop Entry/") + QLatin1String(key)).toString();
}

TEST(DesktopEntry, NamesTheIconThatIsInstalled) {
  EXPECT_EQ(entry("Icon"), kId);
  EXPECT_TRUE(std::filesystem::exists(
      (kPackaging + QStringLiteral("icons/") + kId + QStringLiteral(".svg")).toStdString()));
}

TEST(DesktopEntry, IsGivenFilesOfThisComputer) {
  // The desktop fetches what lies elsewhere first, as it does not for a program that takes any URL.
  EXPECT_EQ(entry("Exec"), QStringLiteral("vantrel %F"));
}

TEST(DesktopEntry, IsFoundFromTheWindows) {
  // Of X11, where the class of a window is the name of the application.
  EXPECT_EQ(entry("StartupWMClass"), QStringLiteral("Vantrel"));
}

}  // namespace
}  // namespace vantrel
