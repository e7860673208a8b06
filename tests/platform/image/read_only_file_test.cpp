#include "platform/image/read_only_file.h"

#include <gtest/gtest.h>

#include <array>
#include <limits>

#include "platform/image/file_cursor.h"
#include "support/image_makers.h"
#include "support/temporary_folder.h"

namespace vantrel {
namespace {

using testing::Bytes;

// Larger than the buffer of a cursor, and no multiple of it.
constexpr size_t kSize = 150001;

uint8_t byteAt(uint64_t position) {
  return static_cast<uint8_t>(position * 7 + position / 251);
}

class ReadOnlyFileTest : public ::testing::Test {
 protected:
  ReadOnlyFileTest() {
    Bytes bytes(kSize);
    for (size_t i = 0; i < kSize; ++i)
      bytes[i] = byteAt(i);
    testing::saveBytes(m_folder / "file", bytes);
  }

  [[nodiscard]] ReadOnlyFile open() const { return *ReadOnlyFile::open(m_folder / "file"); }

  testing::TemporaryFolder m_folder;
};

void expectBytes(std::span<const std::byte> bytes, uint64_t position) {
  for (size_t i = 0; i < bytes.size(); ++i) {
    ASSERT_EQ(std::to_integer<uint8_t>(bytes[i]), byteAt(position + i)) << position + i;
  }
}

TEST_F(ReadOnlyFileTest, KnowsItsPathAndSize) {
  const ReadOnlyFile file = open();
  EXPECT_EQ(file.path(), m_folder / "file");
  EXPECT_EQ(file.size(), kSize);
}

TEST_F(ReadOnlyFileTest, ReadsAnywhereAndLessAtTheEnd) {
  const ReadOnlyFile file = open();
  std::vector<std::byte> buffer(1000);
  EXPECT_EQ(file.read(70000, buffer), 1000u);
  expectBytes(buffer, 70000);
  EXPECT_EQ(file.read(kSize - 10, buffer), 10u);
  expectBytes(std::span(buffer).first(10), kSize - 10);
  EXPECT_EQ(file.read(kSize, buffer), 0u);
  EXPECT_EQ(file.read(std::numeric_limits<uint64_t>::max() - 1, buffer), 0u);
  EXPECT_EQ(file.read(0, {}), 0u);
}

TEST_F(ReadOnlyFileTest, StaysOpenWhenItIsMoved) {
  ReadOnlyFile first = open();
  ReadOnlyFile second = std::move(first);
  first = open();
  first = std::move(second);
  std::array<std::byte, 4> buffer;
  EXPECT_EQ(first.read(5, buffer), 4u);
  expectBytes(buffer, 5);
}

TEST_F(ReadOnlyFileTest, IsReadForwardThroughACursor) {
  const ReadOnlyFile file = open();
  FileCursor cursor(file);
  std::vector<std::byte> buffer(100000);
  ASSERT_TRUE(cursor.read(std::span(buffer).first(3)));
  ASSERT_TRUE(cursor.read(buffer));
  expectBytes(buffer, 3);
  EXPECT_EQ(cursor.position(), 100003u);
  cursor.skip(40);
  cursor.skip(40000);
  ASSERT_TRUE(cursor.read(std::span(buffer).first(2)));
  expectBytes(std::span(buffer).first(2), 140043);
  expectBytes(cursor.peek(), 140045);
  EXPECT_FALSE(cursor.read(buffer));
  EXPECT_TRUE(cursor.peek().empty());
}

TEST_F(ReadOnlyFileTest, GivesACursorNothingPastItsEnd) {
  const ReadOnlyFile file = open();
  FileCursor cursor(file);
  cursor.skip(std::numeric_limits<uint64_t>::max());
  cursor.skip(5);
  EXPECT_EQ(cursor.position(), std::numeric_limits<uint64_t>::max());
  EXPECT_TRUE(cursor.peek().empty());
  std::array<std::byte, 1> byte;
  EXPECT_FALSE(cursor.read(byte));
}

TEST(BigEndian, ReadsTheMostSignificantByteFirst) {
  constexpr std::array bytes = {std::byte{0x12}, std::byte{0x34}, std::byte{0xff}};
  EXPECT_EQ(bigEndian(bytes), 0x1234ffu);
}

}  // namespace
}  // namespace vantrel
