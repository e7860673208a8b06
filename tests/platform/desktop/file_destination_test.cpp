#include "platform/desktop/file_destination.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <system_error>

#include "support/temporary_folder.h"

namespace vantrel {
namespace {

namespace fs = std::filesystem;
using testing::modeOf;
using testing::namesIn;
using testing::readFile;
using testing::TemporaryFolder;
using testing::writeFile;
using Names = std::vector<std::string>;

TEST(FileDestination, TakesAFileFromAFolderBesideIt) {
  const TemporaryFolder folder;
  fs::create_directory(folder / "work");
  writeFile(folder / "work/new", "new");
  writeFile(folder / "out.mov", "old");
  FileDestination(folder / "out.mov").take(folder / "work/new", {});
  EXPECT_EQ(readFile(folder / "out.mov"), "new");
  EXPECT_EQ(namesIn(folder / "work"), Names{});
}

TEST(FileDestination, GivesTheFileThePermissionsItIsTold) {
  const TemporaryFolder folder;
  writeFile(folder / "new", "new");
  writeFile(folder / "out.mov", "old");
  fs::permissions(folder / "new", fs::perms(0600));
  fs::permissions(folder / "out.mov", fs::perms(0644));
  const FileDestination destination(folder / "out.mov");
  EXPECT_EQ(destination.oldPermissions(), mode_t{0644});
  destination.take(folder / "new", destination.oldPermissions());
  EXPECT_EQ(modeOf(folder / "out.mov"), 0644U);
}

TEST(FileDestination, LeavesTheFileItsPermissionsWhereItIsToldNone) {
  const TemporaryFolder folder;
  writeFile(folder / "new", "new");
  fs::permissions(folder / "new", fs::perms(0640));
  const FileDestination destination(folder / "out.mov");
  EXPECT_FALSE(destination.oldPermissions());
  destination.take(folder / "new", destination.oldPermissions());
  EXPECT_EQ(modeOf(folder / "out.mov"), 0640U);
}

TEST(FileDestination, LiesWhereItsLinksLead) {
  const TemporaryFolder folder;
  fs::create_directory(folder / "far");
  fs::create_symlink("far/real.mov", folder / "link.mov");
  const FileDestination destination(folder / "link.mov");
  EXPECT_EQ(destination.name(), folder / "link.mov");
  EXPECT_EQ(destination.path(), folder / "far/real.mov");
  EXPECT_EQ(destination.folder(), folder / "far");
}

TEST(FileDestination, IsKnownByTheNameItIsGiven) {
  const TemporaryFolder folder;
  fs::create_symlink("a.mov", folder / "a.mov");
  fs::create_directory(folder / "b.mov");
  for (const char* path : {"a.mov", "b.mov"}) {
    try {
      const FileDestination destination(folder / path, "film-framed.mov");
      ADD_FAILURE() << path;
    } catch (const std::system_error& error) {
      EXPECT_EQ(std::string(error.what()).find("“film-framed.mov” could not be saved: "), 0U);
    }
  }
  const FileDestination destination(folder / "c.mov", "film-framed.mov");
  EXPECT_EQ(destination.path(), folder / "c.mov");
  EXPECT_EQ(destination.name(), "film-framed.mov");
}

TEST(FileDestination, OfAPlainNameLiesInTheWorkingDirectory) {
  EXPECT_EQ(FileDestination("out.mov").folder(), ".");
}

TEST(FileDestination, LeavesTheOldFileWhereTheNewOneIsMissing) {
  const TemporaryFolder folder;
  writeFile(folder / "out.mov", "old");
  EXPECT_THROW(FileDestination(folder / "out.mov").take(folder / "missing", {}), std::system_error);
  EXPECT_EQ(readFile(folder / "out.mov"), "old");
}

}  // namespace
}  // namespace vantrel
