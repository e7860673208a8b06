#include "export/file_size_poll.h"

#include <gtest/gtest.h>

#include <semaphore>

#include "support/temporary_folder.h"

namespace vantrel {
namespace {

using testing::TemporaryFolder;
using testing::writeFile;

TEST(LargestEntry, IsTheSizeOfTheLargestFile) {
  const TemporaryFolder folder;
  EXPECT_EQ(largestEntry(folder.path()), 0);
  writeFile(folder / "Export.mov", std::string(1000, 'x'));
  writeFile(folder / ".hidden", std::string(2000, 'x'));
  std::filesystem::create_directory(folder / "folder");
  std::filesystem::create_symlink("nowhere", folder / "link");
  EXPECT_EQ(largestEntry(folder.path()), 2000);
}

TEST(LargestEntry, IsNothingWithoutAFolder) {
  const TemporaryFolder folder;
  EXPECT_EQ(largestEntry(folder / "missing"), 0);
  EXPECT_EQ(largestEntry(""), 0);
}

TEST(FileSizePoll, TellsTheSizeAtOnceAndAgain) {
  const TemporaryFolder folder;
  std::binary_semaphore second(0);
  std::vector<int64_t> sizes;
  {
    const FileSizePoll poll(folder.path(), [&](int64_t size) {
      sizes.push_back(size);
      if (sizes.size() == 1) writeFile(folder / "Export.mov", "12345");
      if (sizes.size() == 2) second.release();
    });
    second.acquire();
  }
  EXPECT_EQ(sizes.at(0), 0);
  EXPECT_EQ(sizes.at(1), 5);
}

TEST(FileSizePoll, TellsNobodyWithoutACallback) {
  const FileSizePoll poll("/", {});
}

}  // namespace
}  // namespace vantrel
