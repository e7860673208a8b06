#include <gtest/gtest.h>

#include <sys/stat.h>

#include <QTest>
#include <cstring>

#include "editor/media_loader.h"
#include "support/ordinary_user.h"
#include "support/picture_files.h"
#include "support/temporary_folder.h"

namespace vantrel {
namespace {

/// What is opened over a picture with an edit, which must not suffer from it.
class BadFileTest : public ::testing::Test {
 protected:
  void SetUp() override {
    testing::savePng(folder / "open.png", 40, 30);
    loader.loadMedia(folder / "open.png");
    ASSERT_TRUE(waitIdle());
    state.history().setCrop({1, 2, 3, 4});
  }
  bool waitIdle() {
    return QTest::qWaitFor([this] { return !state.busy(); });
  }
  /// The one line that the user reads.
  QString lineFor(const std::string& name) {
    state.setOpenError({});
    loader.loadMedia(folder / name);
    EXPECT_TRUE(waitIdle()) << name;
    const QString line = state.openError().value_or(QString());
    EXPECT_FALSE(line.isEmpty()) << name;
    EXPECT_FALSE(line.contains(u'\n')) << name;
    EXPECT_EQ(state.file()->path, folder / "open.png") << name;
    EXPECT_EQ(state.history().crop(), (CropMargins{1, 2, 3, 4})) << name;
    EXPECT_TRUE(state.history().canUndo()) << name;
    EXPECT_TRUE(state.canExport()) << name;
    return line;
  }
  /// The line of a file that could not be opened for this reason.
  static QString notOpened(const char* name, int reason) {
    return QStringLiteral("“%1” could not be opened: %2")
        .arg(QString::fromUtf8(name), QString::fromLocal8Bit(std::strerror(reason)));
  }

  testing::TemporaryFolder folder;
  EditorState state;
  MediaLoader loader{state};
};

TEST_F(BadFileTest, IsMissing) {
  EXPECT_EQ(lineFor("missing.png"), notOpened("missing.png", ENOENT));
  EXPECT_EQ(lineFor("missing.mov"), notOpened("missing.mov", ENOENT));
  EXPECT_EQ(lineFor("open.png/inside.png"), notOpened("inside.png", ENOTDIR));
}

TEST_F(BadFileTest, IsAFolder) {
  for (const char* name : {"folder", "folder.png", "folder.mov"}) {
    std::filesystem::create_directory(folder / name);
    EXPECT_EQ(lineFor(name), notOpened(name, EISDIR));
  }
}

TEST_F(BadFileTest, IsAPipe) {
  for (const char* name : {"pipe", "pipe.png", "pipe.mov"}) {
    ASSERT_EQ(::mkfifo((folder / name).c_str(), 0600), 0);
    EXPECT_EQ(
        lineFor(name),
        QStringLiteral("“%1” could not be opened: Not a regular file").arg(QLatin1String(name)));
  }
}

TEST_F(BadFileTest, IsALinkThatLeadsNowhere) {
  std::filesystem::create_symlink("loop.png", folder / "loop.png");
  std::filesystem::create_symlink("b.mov", folder / "a.mov");
  std::filesystem::create_symlink("a.mov", folder / "b.mov");
  std::filesystem::create_symlink("nobody.png", folder / "dangling.png");
  EXPECT_EQ(lineFor("loop.png"), notOpened("loop.png", ELOOP));
  EXPECT_EQ(lineFor("a.mov"), notOpened("a.mov", ELOOP));
  EXPECT_EQ(lineFor("dangling.png"), notOpened("dangling.png", ENOENT));
}

TEST_F(BadFileTest, MayNotBeRead) {
  testing::savePng(folder / "secret.png", 4, 4);
  testing::savePng(folder / "secret.mov", 4, 4);
  std::filesystem::create_directory(folder / "closed");
  testing::savePng(folder / "closed/inside.png", 4, 4);
  for (const char* name : {"secret.png", "secret.mov", "closed"})
    ::chmod((folder / name).c_str(), 0);
  {
    const testing::OrdinaryUser user;
    EXPECT_EQ(lineFor("secret.png"), notOpened("secret.png", EACCES));
    EXPECT_EQ(lineFor("secret.mov"), notOpened("secret.mov", EACCES));
    EXPECT_EQ(lineFor("closed/inside.png"), notOpened("inside.png", EACCES));
  }
  ::chmod((folder / "closed").c_str(), 0700);
}

TEST_F(BadFileTest, IsEmpty) {
  const QString unsupported = ImageError(ImageError::unsupported).errorDescription();
  for (const char* name : {"empty", "empty.png", "empty.jpg", "empty.mov", "empty.mp4"})
    testing::writeFile(folder / name, "");
  EXPECT_EQ(lineFor("empty.png"), unsupported);
  EXPECT_EQ(lineFor("empty.jpg"), unsupported);
  for (const char* name : {"empty", "empty.mov", "empty.mp4"}) {
    EXPECT_TRUE(lineFor(name).startsWith(QStringLiteral("“%1” ").arg(QLatin1String(name))))
        << state.openError()->toStdString();
  }
}

TEST_F(BadFileTest, IsAnImageOfAnotherKind) {
  const QString unsupported = ImageError(ImageError::unsupported).errorDescription();
  testing::writeFile(folder / "a.gif", "GIF89a\1\0\1\0");
  testing::writeFile(folder / "a.svg", "<svg xmlns='http://www.w3.org/2000/svg'/>");
  testing::writeFile(folder / "words.png", "Only words.");
  for (const char* name : {"a.gif", "a.svg", "words.png"})
    EXPECT_EQ(lineFor(name), unsupported);
}

TEST_F(BadFileTest, IsCutOff) {
  const std::string whole = testing::readFile(folder / "open.png");
  testing::writeFile(folder / "cut.png", whole.substr(0, whole.size() / 2));
  EXPECT_EQ(lineFor("cut.png"), ImageError(ImageError::unreadable).errorDescription());
}

TEST_F(BadFileTest, HasWordsThatNobodyTakesForAFilm) {
  testing::writeFile(folder / "notes.txt", "Only words.");
  testing::writeFile(folder / "nameless", std::string(100'000, 'z'));
  EXPECT_TRUE(lineFor("notes.txt").contains(QStringLiteral("notes.txt")));
  EXPECT_TRUE(lineFor("nameless").contains(QStringLiteral("nameless")));
}

}  // namespace
}  // namespace vantrel
