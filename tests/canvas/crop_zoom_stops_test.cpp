#include "canvas/crop_zoom_stops.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>

namespace vantrel {
namespace {

TEST(CropZoomStops, AreFourToADoublingBetweenTheEnds) {
  const std::vector<double>& stops = CropZoomStops::values();
  ASSERT_EQ(stops.size(), 29U);
  EXPECT_EQ(stops.front(), 0.1);
  EXPECT_NEAR(stops[1], 0.10511, 1e-5);
  EXPECT_EQ(stops[14], 1.0);
  EXPECT_NEAR(stops[27], 9.51366, 1e-5);
  EXPECT_EQ(stops.back(), 10.0);
  EXPECT_TRUE(std::is_sorted(stops.begin(), stops.end()));
}

TEST(CropZoomStops, LieOnQuarterPowersOfTwoBetweenTheEnds) {
  const std::vector<double>& stops = CropZoomStops::values();
  for (int index = 1; index + 1 < static_cast<int>(stops.size()); ++index) {
    EXPECT_EQ(stops[static_cast<size_t>(index)], std::pow(2.0, (index - 14) / 4.0));
  }
}

TEST(CropZoomStops, LeadFromEachToItsNeighbours) {
  const std::vector<double>& stops = CropZoomStops::values();
  for (size_t index = 1; index < stops.size(); ++index) {
    EXPECT_EQ(CropZoomStops::next(stops[index - 1], true), stops[index]);
    EXPECT_EQ(CropZoomStops::next(stops[index], false), stops[index - 1]);
  }
}

TEST(CropZoomStops, StayInTheRangeForWhatIsNoNumber) {
  const double infinite = std::numeric_limits<double>::infinity();
  for (const double from : {std::numeric_limits<double>::quiet_NaN(), infinite, -infinite}) {
    for (const bool increasing : {false, true}) {
      const double stop = CropZoomStops::next(from, increasing);
      EXPECT_TRUE(stop >= CropZoomStops::kMinimum && stop <= CropZoomStops::kMaximum);
    }
  }
}

TEST(CropZoomStops, EndAtTheRange) {
  EXPECT_EQ(CropZoomStops::next(10.0, true), 10.0);
  EXPECT_EQ(CropZoomStops::next(0.1, false), 0.1);
  EXPECT_EQ(CropZoomStops::next(25, true), 10.0);
  EXPECT_EQ(CropZoomStops::next(0.01, false), 0.1);
}

TEST(CropZoomStops, CountAZoomWithinAMillionthAsTheStop) {
  EXPECT_DOUBLE_EQ(CropZoomStops::next(1.0000005, true), std::pow(2, 0.25));
  EXPECT_DOUBLE_EQ(CropZoomStops::next(1.0000005, false), std::pow(2, -0.25));
  EXPECT_EQ(CropZoomStops::next(1.000002, false), 1.0);
  EXPECT_EQ(CropZoomStops::next(0.999998, true), 1.0);
}

TEST(CropZoomStops, LeadFromOutsideToTheNearEnd) {
  EXPECT_EQ(CropZoomStops::next(12, false), 10.0);
  EXPECT_EQ(CropZoomStops::next(0.05, true), 0.1);
}

TEST(CropZoomStops, LeadOffTheLadderToTheNearestInTheDirection) {
  EXPECT_EQ(CropZoomStops::next(0.42, true), CropZoomStops::values()[9]);
  EXPECT_EQ(CropZoomStops::next(0.42, false), CropZoomStops::values()[8]);
}

}  // namespace
}  // namespace vantrel
