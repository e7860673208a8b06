#include "platform/image/exif_orientation.h"

#include <gtest/gtest.h>

#include <random>

#include "support/image_makers.h"

namespace vantrel {
namespace {

using testing::Bytes;
using testing::exifBlock;

Orientation orientationOf(const Bytes& block) {
  return exifOrientation(std::as_bytes(std::span(block)));
}

TEST(ExifOrientation, IsReadInEitherByteOrder) {
  for (uint16_t tag = 1; tag <= 8; ++tag) {
    EXPECT_EQ(orientationOf(exifBlock(tag)), static_cast<Orientation>(tag));
    EXPECT_EQ(orientationOf(exifBlock(tag, true)), static_cast<Orientation>(tag));
  }
}

TEST(ExifOrientation, IsReadBehindTheNameOfTheSegment) {
  EXPECT_EQ(orientationOf(testing::exifSegment(6)), Orientation::RightTop);
}

TEST(ExifOrientation, IsUprightForValuesThatAreNone) {
  EXPECT_EQ(orientationOf(exifBlock(0)), Orientation::TopLeft);
  EXPECT_EQ(orientationOf(exifBlock(9)), Orientation::TopLeft);
  EXPECT_EQ(orientationOf(exifBlock(65535)), Orientation::TopLeft);
}

// Of the little-endian block: where the parts of its entry stand.
constexpr size_t kDirectoryOffset = 4, kEntryCount = 8, kTag = 10, kFieldType = 12,
                 kValueCount = 14, kValue = 18;

TEST(ExifOrientation, IsReadFromBytesAndLongsToo) {
  Bytes block = exifBlock(6);
  block[kFieldType] = 1;
  EXPECT_EQ(orientationOf(block), Orientation::RightTop);
  block[kFieldType] = 4;
  EXPECT_EQ(orientationOf(block), Orientation::RightTop);
  block[kFieldType] = 2;
  EXPECT_EQ(orientationOf(block), Orientation::TopLeft);
}

TEST(ExifOrientation, IsUprightForDamage) {
  EXPECT_EQ(orientationOf({}), Orientation::TopLeft);
  Bytes count = exifBlock(6);
  count[kValueCount] = 2;
  EXPECT_EQ(orientationOf(count), Orientation::TopLeft);
  Bytes tag = exifBlock(6);
  tag[kTag] ^= 1;
  EXPECT_EQ(orientationOf(tag), Orientation::TopLeft);
  Bytes directory = exifBlock(6);
  directory[kDirectoryOffset + 3] = 0xff;
  EXPECT_EQ(orientationOf(directory), Orientation::TopLeft);
  Bytes order = exifBlock(6);
  order[1] = 'M';
  EXPECT_EQ(orientationOf(order), Orientation::TopLeft);
}

TEST(ExifOrientation, LooksNoFurtherThanTheBlock) {
  Bytes entries = exifBlock(6);
  entries[kTag] ^= 1;
  entries[kEntryCount] = entries[kEntryCount + 1] = 0xff;
  EXPECT_EQ(orientationOf(entries), Orientation::TopLeft);
  const Bytes whole = exifBlock(6);
  for (size_t length = 0; length < kValue + 2; ++length) {
    // A block of its own, so that the sanitizer sees a read past its end.
    const Bytes cut(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(length));
    EXPECT_EQ(orientationOf(cut), Orientation::TopLeft) << length;
  }
}

TEST(ExifOrientation, StandsAnyBytes) {
  std::mt19937 random(1);
  for (int round = 0; round < 20000; ++round) {
    Bytes block = exifBlock(6, round % 2 == 0);
    for (int i = 0; i < 3; ++i)
      block[random() % block.size()] = static_cast<uint8_t>(random());
    const auto orientation = static_cast<int>(orientationOf(block));
    ASSERT_TRUE(orientation >= 1 && orientation <= 8);
  }
}

}  // namespace
}  // namespace vantrel
