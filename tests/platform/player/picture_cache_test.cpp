#include "platform/player/picture_cache.h"

#include <gtest/gtest.h>

#include <vector>

namespace vantrel {
namespace {

constexpr int kTimescale = 1000;
constexpr int kWidth = 10, kHeight = 10;
constexpr size_t kBytes = kWidth * kHeight;

/// A grey picture of a hundred bytes that is shown for a duration from a time on.
TimedVideoPicture pictureAt(int64_t time, int64_t duration = 40) {
  static const std::vector<uint8_t> samples(kBytes);
  auto picture = std::make_shared<VideoPicture>();
  picture->model = VideoPicture::Model::Gray;
  picture->planes[0] = {samples.data(), kWidth, kWidth, kHeight, 1};
  return {std::move(picture), {time, kTimescale}, {duration, kTimescale}};
}

TEST(PictureCache, GivesThePictureThatIsShownAtATime) {
  PictureCache cache;
  for (const int64_t time : {80, 0, 40})
    cache.insert(pictureAt(time));
  EXPECT_EQ(cache.at(0)->time.ticks, 0);
  EXPECT_EQ(cache.at(39)->time.ticks, 0);
  EXPECT_EQ(cache.at(40)->time.ticks, 40);
  EXPECT_EQ(cache.at(119)->time.ticks, 80);
}

TEST(PictureCache, GivesNothingForTimesThatNoPictureCovers) {
  PictureCache cache;
  EXPECT_FALSE(cache.at(0));
  cache.insert(pictureAt(40));
  cache.insert(pictureAt(120));
  EXPECT_FALSE(cache.at(39));
  EXPECT_FALSE(cache.at(80));
  EXPECT_FALSE(cache.at(160));
}

TEST(PictureCache, HoldsNoMoreThanItHasRoomFor) {
  PictureCache cache(3 * kBytes);
  for (int i = 0; i < 10; ++i) {
    cache.insert(pictureAt(i * 40));
    EXPECT_LE(cache.bytes(), cache.mostBytes());
  }
  EXPECT_EQ(cache.count(), 3U);
  EXPECT_FALSE(cache.at(6 * 40));
  EXPECT_TRUE(cache.at(7 * 40));
}

TEST(PictureCache, GivesUpWhatWasNotUsedForLongest) {
  PictureCache cache(3 * kBytes);
  for (const int64_t time : {0, 40, 80})
    cache.insert(pictureAt(time));
  EXPECT_TRUE(cache.at(0));
  cache.insert(pictureAt(120));
  EXPECT_TRUE(cache.at(0));
  EXPECT_FALSE(cache.at(40));
}

TEST(PictureCache, CountsAPictureOfTheSameTimeOnce) {
  PictureCache cache(3 * kBytes);
  for (int i = 0; i < 5; ++i)
    cache.insert(pictureAt(0, 40 + i));
  EXPECT_EQ(cache.count(), 1U);
  EXPECT_EQ(cache.bytes(), kBytes);
  EXPECT_EQ(cache.at(43)->duration.ticks, 44);
}

TEST(PictureCache, KeepsNoPictureThatIsLargerThanItself) {
  PictureCache cache(kBytes - 1);
  cache.insert(pictureAt(0));
  EXPECT_EQ(cache.count(), 0U);
  EXPECT_EQ(cache.bytes(), 0U);
}

}  // namespace
}  // namespace vantrel
