#include "export/temporary_export.h"

#include <gtest/gtest.h>

#include <type_traits>

#include "support/temporary_folder.h"

namespace vantrel {
namespace {

using testing::namesIn;
using testing::TemporaryFolder;
using testing::writeFile;
using Names = std::vector<std::string>;

static_assert(!std::is_copy_constructible_v<TemporaryExport>);

TEST(TemporaryExport, DeletesItsFileWhenDropped) {
  const TemporaryFolder folder;
  {
    const TemporaryExport file(folder / "a");
    writeFile(file.path(), "picture");
    EXPECT_EQ(namesIn(folder.path()), Names{"a"});
  }
  EXPECT_EQ(namesIn(folder.path()), Names{});
}

TEST(TemporaryExport, MovesItsDuty) {
  const TemporaryFolder folder;
  writeFile(folder / "a", "picture");
  TemporaryExport last;
  {
    TemporaryExport first(folder / "a");
    TemporaryExport second(std::move(first));
    // NOLINTNEXTLINE(bugprone-use-after-move): what is left behind is part of the contract.
    EXPECT_TRUE(first.path().empty());
    last = std::move(second);
  }
  EXPECT_EQ(namesIn(folder.path()), Names{"a"});
  EXPECT_EQ(last.path(), folder / "a");
}

TEST(TemporaryExport, DeletesWhatAnotherTakesThePlaceOf) {
  const TemporaryFolder folder;
  writeFile(folder / "a", "picture");
  writeFile(folder / "b", "picture");
  TemporaryExport file(folder / "a");
  file = TemporaryExport(folder / "b");
  EXPECT_EQ(namesIn(folder.path()), Names{"b"});
}

TEST(TemporaryExport, DeletesOnceAndOnDemand) {
  const TemporaryFolder folder;
  writeFile(folder / "a", "picture");
  {
    TemporaryExport file(folder / "a");
    file.remove();
    EXPECT_EQ(namesIn(folder.path()), Names{});
    writeFile(folder / "a", "another's");
  }
  EXPECT_EQ(namesIn(folder.path()), Names{"a"});
}

TEST(TemporaryExport, IgnoresAFileThatIsGone) {
  const TemporaryFolder folder;
  { const TemporaryExport file(folder / "never written"); }
  { const TemporaryExport nothing; }
  EXPECT_EQ(namesIn(folder.path()), Names{});
}

}  // namespace
}  // namespace vantrel
