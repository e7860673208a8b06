#include "export/working_folder.h"

#include <gmock/gmock.h>

#include <system_error>

#include "support/ordinary_user.h"
#include "support/temporary_folder.h"

namespace vantrel {
namespace {

namespace fs = std::filesystem;
using testing::modeOf;
using testing::namesIn;
using testing::OrdinaryUser;
using testing::TemporaryFolder;
using testing::writeFile;
using Names = std::vector<std::string>;

TEST(WorkingFolder, StandsBesideTheDestinationForItsLife) {
  const TemporaryFolder folder;
  {
    const WorkingFolder working(FileDestination(folder / "out.mov"));
    EXPECT_EQ(working.path().parent_path(), folder.path());
    EXPECT_THAT(working.path().filename().string(),
                ::testing::MatchesRegex("Vantrel-[0-9A-F]{8}(-[0-9A-F]{4}){3}-[0-9A-F]{12}"));
    EXPECT_EQ(modeOf(working.path()), 0700U);
    writeFile(working.path() / "Export.mov", "data");
    fs::create_directory(working.path() / "folder");
  }
  EXPECT_EQ(namesIn(folder.path()), Names{});
}

TEST(WorkingFolder, HasANameOfItsOwn) {
  const TemporaryFolder folder;
  const FileDestination destination(folder / "out.mov");
  const WorkingFolder one(destination), other(destination);
  EXPECT_NE(one.path(), other.path());
}

TEST(WorkingFolder, MakesTheFoldersAboveIt) {
  const TemporaryFolder folder;
  const WorkingFolder working(FileDestination(folder / "a/b/out.mov"));
  EXPECT_EQ(working.path().parent_path(), folder / "a/b");
  EXPECT_TRUE(fs::is_directory(working.path()));
}

TEST(WorkingFolder, NamesTheDestinationWhereItCannotBeMade) {
  const TemporaryFolder folder;
  fs::permissions(folder.path(), fs::perms(0555));
  const OrdinaryUser ordinary;
  for (const char* name : {"out.mov", "new/out.mov"}) {
    try {
      const WorkingFolder working(FileDestination(folder / name));
      FAIL() << "made in a folder that allows nothing";
    } catch (const std::system_error& error) {
      EXPECT_STREQ(error.what(), "“out.mov” could not be saved: Permission denied");
    }
  }
}

}  // namespace
}  // namespace vantrel
