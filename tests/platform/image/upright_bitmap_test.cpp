#include "platform/image/upright_bitmap.h"

#include <gtest/gtest.h>

#include <array>
#include <vector>

#include "platform/image/image_reader.h"

namespace vantrel {
namespace {

constexpr PixelLayout kGray{ColorModel::Gray, SampleFormat::UInt8, false};
// 3 × 2 pixels: rows 1 2 3 and 4 5 6.
const std::vector<std::byte> kPixels = {std::byte{1}, std::byte{2}, std::byte{3},
                                        std::byte{4}, std::byte{5}, std::byte{6}};

std::vector<int> samples(const Bitmap& bitmap) {
  std::vector<int> result;
  for (int64_t y = 0; y < bitmap.height(); ++y) {
    for (int64_t x = 0; x < bitmap.width(); ++x) {
      result.push_back(std::to_integer<int>(*bitmap.pixel(x, y)));
    }
  }
  return result;
}

Bitmap turned(const Bitmap& bitmap, Orientation orientation) {
  UprightBitmap upright(static_cast<uint64_t>(bitmap.width()),
                        static_cast<uint64_t>(bitmap.height()), kGray, orientation);
  upright.put(0, 0, bitmap.width(), bitmap.height(), bitmap.row(0), bitmap.stride());
  return upright.finish({});
}

Bitmap original() {
  UprightBitmap upright(3, 2, kGray, Orientation::TopLeft);
  upright.put(0, 0, 3, 2, kPixels.data(), 3);
  return upright.finish({});
}

TEST(UprightBitmap, TurnsAsTheTagSays) {
  const std::vector<std::vector<int>> expected = {
      {1, 2, 3, 4, 5, 6}, {3, 2, 1, 6, 5, 4}, {6, 5, 4, 3, 2, 1}, {4, 5, 6, 1, 2, 3},
      {1, 4, 2, 5, 3, 6}, {4, 1, 5, 2, 6, 3}, {6, 3, 5, 2, 4, 1}, {3, 6, 2, 5, 1, 4}};
  for (int tag = 1; tag <= 8; ++tag) {
    const Bitmap bitmap = turned(original(), orientationFromTag(tag));
    EXPECT_EQ(bitmap.width(), tag < 5 ? 3 : 2) << tag;
    EXPECT_EQ(samples(bitmap), expected[static_cast<size_t>(tag) - 1]) << tag;
  }
}

TEST(UprightBitmap, LeavesOutWhatLiesOutside) {
  UprightBitmap upright(2, 1, kGray, Orientation::TopLeft);
  upright.put(0, 0, 3, 2, kPixels.data(), 3);
  upright.put(2, 0, 1, 1, kPixels.data(), 3);
  EXPECT_EQ(samples(upright.finish({})), (std::vector{1, 2}));
}

TEST(UprightBitmap, SpacedPixelsLandBetweenOthers) {
  for (int tag = 1; tag <= 8; ++tag) {
    UprightBitmap upright(3, 2, kGray, orientationFromTag(tag));
    const std::array<std::byte, 3> even = {std::byte{1}, std::byte{3}, std::byte{9}};
    const std::array<std::byte, 1> odd = {std::byte{2}};
    upright.putSpaced(0, 0, 2, 3, even.data());
    upright.putSpaced(1, 0, 2, 1, odd.data());
    upright.put(0, 1, 3, 1, kPixels.data() + 3, 3);
    EXPECT_EQ(samples(upright.finish({})), samples(turned(original(), orientationFromTag(tag))));
  }
}

TEST(UprightBitmap, RefusesWhatTakesTooMuchMemory) {
  EXPECT_THROW(UprightBitmap(0, 1, kGray, Orientation::TopLeft), ImageDamaged);
  EXPECT_THROW(UprightBitmap(uint64_t{1} << 33, 1, kGray, Orientation::TopLeft), ImageDamaged);
  EXPECT_THROW(UprightBitmap(uint64_t{1} << 63, uint64_t{1} << 63, kGray, Orientation::RightTop),
               ImageDamaged);
}

TEST(Bitmap, FitsCountsWithoutOverflow) {
  EXPECT_TRUE(Bitmap::fits(1, 1, 20));
  EXPECT_FALSE(Bitmap::fits(0, 5, 1));
  EXPECT_TRUE(Bitmap::fits(65536, 65536, 1));
  EXPECT_FALSE(Bitmap::fits(65536, 65537, 1));
  EXPECT_FALSE(Bitmap::fits(65536, 65536, 2));
  EXPECT_FALSE(Bitmap::fits(UINT64_MAX, UINT64_MAX, 1));
}

}  // namespace
}  // namespace vantrel
