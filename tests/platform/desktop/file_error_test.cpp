#include "platform/desktop/file_error.h"

#include <gtest/gtest.h>

#include <cerrno>

#include "base/failure.h"

namespace vantrel {
namespace {

TEST(FileError, IsOneLineForTheUser) {
  errno = ENOENT;
  const std::system_error error = fileError("/some/where/photo.jpg", FileAction::Open);
  EXPECT_STREQ(error.what(), "“photo.jpg” could not be opened: No such file or directory");
  EXPECT_EQ(error.code(), std::errc::no_such_file_or_directory);
  EXPECT_EQ(userMessage(std::make_exception_ptr(error)), error.what());
}

TEST(FileError, SaysWhatWasBeingDone) {
  const auto code = std::make_error_code(std::errc::no_space_on_device);
  EXPECT_STREQ(fileError("a", FileAction::Save, code).what(),
               "“a” could not be saved: No space left on device");
  EXPECT_STREQ(fileError("a", FileAction::Read, code).what(),
               "“a” could not be read: No space left on device");
}

TEST(FileError, NamesAFaultOfItsOwn) {
  const std::system_error error = fileError("pipe", FileAction::Open, FileFault::NotAFile);
  EXPECT_STREQ(error.what(), "“pipe” could not be opened: Not a regular file");
  EXPECT_EQ(error.code(), make_error_code(FileFault::NotAFile));
}

TEST(DisplayName, IsTheLastPartOfThePath) {
  EXPECT_EQ(displayName("/a/b/c.d.png"), u"c.d.png");
  EXPECT_EQ(displayName("c"), u"c");
  EXPECT_EQ(displayName("/a/b/"), u"/a/b/");
  EXPECT_EQ(displayName(""), u"");
}

TEST(DisplayName, TakesNamesOfEveryScript) {
  EXPECT_EQ(displayName("/x/Übung 写真 🦊.png"), u"Übung 写真 🦊.png");
}

TEST(DisplayName, KeepsWhatJoinsCharacters) {
  EXPECT_EQ(displayName("👨‍👩‍👧 می‌خواهم.png"),
            u"👨‍👩‍👧 می‌خواهم.png");
}

TEST(DisplayName, MarksWhatCannotBeRead) {
  EXPECT_EQ(displayName("a\xff\xfe.png"), u"a\uFFFD\uFFFD.png");
  EXPECT_EQ(displayName("a\nb\x1b[0m"), u"a\uFFFDb\uFFFD[0m");
  EXPECT_EQ(displayName("a\u202Egnp.exe"), u"a\uFFFDgnp.exe") << "it would turn the rest around";
}

}  // namespace
}  // namespace vantrel
