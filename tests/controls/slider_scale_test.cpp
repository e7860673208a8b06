#include "controls/slider_scale.h"

#include <gtest/gtest.h>

#include <limits>

namespace vantrel {
namespace {

constexpr SliderScale kPercent{0, 1, 100};
constexpr SliderScale kUsual{0.5, 60, 2};
constexpr SliderScale kOdd{0.2, 40, 2};

TEST(SliderScale, LeadsFromOneEndToTheOther) {
  EXPECT_EQ(kPercent.last(), 100);
  EXPECT_EQ(kUsual.last(), 119);
  EXPECT_EQ(kUsual.value(0), 0.5);
  EXPECT_EQ(kUsual.value(1), 1);
  EXPECT_EQ(kUsual.value(119), 60);
}

TEST(SliderScale, ReachesAnEndThatLiesBesideTheSteps) {
  EXPECT_EQ(kOdd.last(), 80);
  EXPECT_EQ(kOdd.value(0), 0.2);
  EXPECT_EQ(kOdd.value(1), 0.7);
  EXPECT_NEAR(kOdd.value(79), 39.7, 1e-12);
  EXPECT_EQ(kOdd.value(80), 40);
  EXPECT_EQ(kOdd.closest(40), 80);
}

TEST(SliderScale, GivesEachHundredthAsItIsWritten) {
  EXPECT_EQ(kPercent.value(57), 0.57);
  EXPECT_EQ(kPercent.value(29), 0.29);
  for (int step = 0; step <= 100; ++step)
    EXPECT_EQ(kPercent.closest(kPercent.value(step)), step);
}

TEST(SliderScale, ShowsWhatLiesOutsideAtTheEnd) {
  EXPECT_EQ(kUsual.closest(0.01), 0);
  EXPECT_EQ(kUsual.closest(10000), 119);
  EXPECT_EQ(kUsual.closest(std::numeric_limits<double>::quiet_NaN()), 0);
}

TEST(SliderScale, GoesFromBetweenTwoStepsToTheNextOne) {
  EXPECT_EQ(kUsual.value(kUsual.next(7.83, true)), 8);
  EXPECT_EQ(kUsual.value(kUsual.next(7.83, false)), 7.5);
  EXPECT_EQ(kUsual.value(kUsual.next(8, true)), 8.5);
  EXPECT_EQ(kUsual.value(kUsual.next(8, false)), 7.5);
  EXPECT_EQ(kPercent.next(0.57, true), 58);
  EXPECT_EQ(kPercent.next(0.57, false), 56);
}

TEST(SliderScale, ComesBackFromOutside) {
  EXPECT_EQ(kUsual.value(kUsual.next(80.2, false)), 59.5);
  EXPECT_EQ(kUsual.value(kUsual.next(80.2, true)), 60);
  EXPECT_EQ(kUsual.value(kUsual.next(0.02, true)), 1);
  EXPECT_EQ(kUsual.value(kUsual.next(0.02, false)), 0.5);
}

TEST(SliderScale, StandsWithoutAnEnd) {
  const SliderScale endless{0.5, std::numeric_limits<double>::infinity(), 2};
  EXPECT_GT(endless.last(), 1'000'000);
  EXPECT_EQ(endless.closest(10), 19);
  EXPECT_EQ(endless.value(19), 10);
}

}  // namespace
}  // namespace vantrel
