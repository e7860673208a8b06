#include "platform/movie/picture_orientation.h"

#include <gtest/gtest.h>

namespace vantrel {
namespace {

constexpr PictureSize kSize{1920, 1080};

VideoOutputSettings settingsOf(const AffineTransform& transform, int width, int height) {
  VideoOutputSettings settings;
  settings.transform = transform;
  settings.width = width;
  settings.height = height;
  return settings;
}

TEST(PictureOrientation, AShiftChoosesAnUprightPart) {
  EXPECT_EQ(sourceRegion(settingsOf({1, 0, 0, 1, -101, -7}, 640, 360), kSize),
            (SourceRegion{101, 7, 640, 360, {false, false, false}}));
}

TEST(PictureOrientation, AHalfTurnFlipsBothAxes) {
  EXPECT_EQ(sourceRegion(settingsOf({-1, 0, 0, -1, 1920 - 101, 1080 - 7}, 640, 360), kSize),
            (SourceRegion{1920 - 101 - 640, 1080 - 7 - 360, 640, 360, {true, true, false}}));
}

TEST(PictureOrientation, AQuarterTurnClockwiseTransposesAFlippedPicture) {
  // Displayed 1080 × 1920; the part at (100, 200) of size 300 × 500.
  EXPECT_EQ(sourceRegion(settingsOf({0, 1, -1, 0, 1080 - 100, -200}, 300, 500), kSize),
            (SourceRegion{200, 1080 - 100 - 300, 500, 300, {false, true, true}}));
}

TEST(PictureOrientation, AQuarterTurnCounterclockwiseFlipsTheOtherAxis) {
  EXPECT_EQ(sourceRegion(settingsOf({0, -1, 1, 0, -100, 1920 - 200}, 300, 500), kSize),
            (SourceRegion{1920 - 200 - 500, 100, 500, 300, {true, false, true}}));
}

TEST(PictureOrientation, RoundingInTheMatrixIsForgiven) {
  EXPECT_EQ(sourceRegion(settingsOf({1.00002, 0.00002, -0.00002, 1, -10.0001, -20}, 64, 64), kSize),
            (SourceRegion{10, 20, 64, 64, {}}));
}

TEST(PictureOrientation, WhatIsNoQuarterTurnIsRefused) {
  for (const AffineTransform& transform :
       {AffineTransform{0.7, 0.7, -0.7, 0.7, 100, 0}, AffineTransform{2, 0, 0, 2, 0, 0},
        AffineTransform{1, 1, 0, 1, 0, 0}, AffineTransform{0, 0, 0, 0, 0, 0},
        AffineTransform{1, 0, 0, 1, -0.5, 0},
        AffineTransform{1, 0, 0, 1, std::numeric_limits<double>::quiet_NaN(), 0},
        AffineTransform{1, 0, 0, 1, -1e300, 0}})
    EXPECT_FALSE(sourceRegion(settingsOf(transform, 64, 64), kSize));
}

TEST(PictureOrientation, AnOutputBeyondTheSourceIsRefused) {
  EXPECT_TRUE(sourceRegion(settingsOf({}, 1920, 1080), kSize));
  EXPECT_FALSE(sourceRegion(settingsOf({1, 0, 0, 1, -1, 0}, 1920, 1080), kSize));
  EXPECT_FALSE(sourceRegion(settingsOf({1, 0, 0, 1, 0, 1}, 64, 64), kSize));
  EXPECT_FALSE(sourceRegion(settingsOf({}, 1080, 1920), kSize));
}

TEST(PictureOrientation, OddAndEmptyOutputsAreRefused) {
  for (const int size : {-2, 0, 1, 63}) {
    EXPECT_FALSE(sourceRegion(settingsOf({}, size, 64), kSize)) << size;
    EXPECT_FALSE(sourceRegion(settingsOf({}, 64, size), kSize)) << size;
  }
}

}  // namespace
}  // namespace vantrel
