#include "platform/desktop/file_copy.h"

#include <fcntl.h>
#include <gtest/gtest.h>

#include <system_error>

#include "platform/desktop/file_descriptor.h"
#include "support/temporary_folder.h"
#include "support/write_failures.h"

namespace vantrel {
namespace {

using testing::readFile;
using testing::TemporaryFolder;
using testing::writeFile;

class FileCopyTest : public ::testing::Test {
 protected:
  FileCopyTest() {
    writeFile(m_folder / "source", "0123456789");
    m_source = FileDescriptor(::open((m_folder / "source").c_str(), O_RDONLY | O_CLOEXEC));
    m_destination =
        FileDescriptor(::open((m_folder / "out").c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0600));
  }

  FileCopy copy() { return {{m_source.get(), "source"}, {m_destination.get(), "out"}}; }

  TemporaryFolder m_folder;
  FileDescriptor m_source, m_destination;
};

TEST_F(FileCopyTest, AppendsStretchesAndBytesInTheOrderOfTheCalls) {
  FileCopy copied = copy();
  EXPECT_EQ(copied.copySome(6, 2), 2u);
  const std::vector<uint8_t> bytes = {'a', 'b'};
  copied.write(bytes);
  EXPECT_EQ(copied.copySome(1, 3), 3u);
  EXPECT_EQ(readFile(m_folder / "out"), "67ab123");
}

TEST_F(FileCopyTest, EndsWithTheSource) {
  FileCopy copied = copy();
  EXPECT_EQ(copied.copySome(8), 2u);
  EXPECT_EQ(copied.copySome(10), 0u);
  EXPECT_EQ(copied.copySome(0, 1), 1u);
  EXPECT_EQ(readFile(m_folder / "out"), "890");
}

TEST_F(FileCopyTest, CopiesAtMostAChunkAtOnce) {
  std::filesystem::resize_file(m_folder / "source", FileCopy::kChunk + 10);
  FileCopy copied = copy();
  EXPECT_EQ(copied.copySome(0, 2 * FileCopy::kChunk), FileCopy::kChunk);
  EXPECT_EQ(copied.copySome(FileCopy::kChunk), 10u);
}

TEST_F(FileCopyTest, NamesTheFileThatFails) {
  FileCopy copied = copy();
  const testing::FileSizeLimit limit(0);
  for (const bool byHand : {false, true}) {
    try {
      byHand ? copied.write(std::vector<uint8_t>{1}) : void(copied.copySome(0));
      ADD_FAILURE();
    } catch (const std::system_error& error) {
      EXPECT_STREQ(error.what(), "“out” could not be saved: File too large");
    }
  }
}

}  // namespace
}  // namespace vantrel
