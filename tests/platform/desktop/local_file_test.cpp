#include "platform/desktop/local_file.h"

#include <gtest/gtest.h>

#include <QSysInfo>
#include <QUrl>
#include <fstream>

#include "support/temporary_folder.h"

namespace vantrel {
namespace {

using std::filesystem::path;

/// Relative names are of a folder that goes with the test.
class FileOfArgument : public ::testing::Test {
 protected:
  FileOfArgument() { std::filesystem::current_path(folder.path()); }
  ~FileOfArgument() override { std::filesystem::current_path(before); }

  const path before = std::filesystem::current_path();
  const testing::TemporaryFolder folder;
};

TEST_F(FileOfArgument, IsAPathAsItStands) {
  for (const char* argument : {"photo.png", "/a/b c.png", "with%20percent.png", "\xff.png", ""}) {
    EXPECT_EQ(fileOfArgument(argument), path(argument));
  }
}

TEST_F(FileOfArgument, IsWhatAFileUrlNames) {
  EXPECT_EQ(fileOfArgument("file:///a/with%20space%23.png"), path("/a/with space#.png"));
  EXPECT_EQ(fileOfArgument("file:///a/%E2%80%93%FF.png"), path("/a/–\xff.png"));
  EXPECT_EQ(fileOfArgument("file:///a/b c–.png"), path("/a/b c–.png"));
  EXPECT_EQ(fileOfArgument("file://localhost/a/b.png"), path("/a/b.png"));
  EXPECT_EQ(fileOfArgument("FILE:/a/b.png"), path("/a/b.png"));
  EXPECT_EQ(fileOfArgument("file://" + QSysInfo::machineHostName().toStdString() + "/a/b.png"),
            path("/a/b.png"));
}

TEST_F(FileOfArgument, IsNoFileOfAnotherComputerAndNoPartOfAPath) {
  for (const char* argument : {"file://elsewhere.example/a.png", "https://example.org/a.png",
                               "file:a.png", "file:", "file:///a.png%00.txt", "files:///a.png"}) {
    EXPECT_EQ(fileOfArgument(argument), path(argument));
  }
}

TEST_F(FileOfArgument, IsFirstOfAllWhatThereIs) {
  std::filesystem::create_directories("file:/a");
  for (const char* name : {"file:b.png", "file:/a/b%20c.png"}) {
    std::ofstream(name) << "here";
    EXPECT_EQ(fileOfArgument(name), path(name));
  }
}

TEST(LocalFile, IsNotWhatIsElsewhere) {
  EXPECT_EQ(localFile(QUrl(QStringLiteral("https://example.org/a.png"))), std::nullopt);
  EXPECT_EQ(localFile(QUrl(QStringLiteral("file://elsewhere.example/a.png"))), std::nullopt);
  EXPECT_EQ(localFile(QUrl()), std::nullopt);
}

}  // namespace
}  // namespace vantrel
