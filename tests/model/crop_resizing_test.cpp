#include <gtest/gtest.h>

#include <limits>

#include "model/crop_margins.h"
#include "model/printers.h"

namespace vantrel {
namespace {

using Edge = CropMargins::Edge;

constexpr int64_t kHighest = std::numeric_limits<int64_t>::max();
constexpr int64_t kLowest = std::numeric_limits<int64_t>::min();
constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
const std::vector<Edge> kBottomRight{Edge::right, Edge::bottom};
const std::vector<Edge> kTopLeft{Edge::left, Edge::top};

/// The output width for a wanted one, in a source 1921 pixels wide.
double resizedWidth(int64_t wanted, int64_t multiple) {
  const QSizeF source(1921, 1081);
  return CropMargins().resized(wanted, 100, source, multiple).rectangle(source).width();
}

TEST(CropMarginsResized, RoundsTheSizeDownToTheGrid) {
  EXPECT_EQ(resizedWidth(101, 2), 100);
  EXPECT_EQ(resizedWidth(101, 1), 101);
}

TEST(CropMarginsResized, HoldsTheSizeWithinOneStepAndTheSource) {
  EXPECT_EQ(resizedWidth(1, 2), 2);
  EXPECT_EQ(resizedWidth(-5, 2), 2);
  EXPECT_EQ(resizedWidth(-5, 1), 1);
  EXPECT_EQ(resizedWidth(kLowest, 2), 2);
  EXPECT_EQ(resizedWidth(5000, 2), 1920);
  EXPECT_EQ(resizedWidth(5000, 1), 1921);
  EXPECT_EQ(resizedWidth(kHighest, 2), 1920);
}

TEST(CropMarginsResized, ResizesBothAxes) {
  EXPECT_EQ((CropMargins{100, 100, 100, 100}.resized(50, 30, {300, 300}, 2)),
            (CropMargins{125, 135, 125, 135}));
}

TEST(CropMarginsResized, LeavesASourceBelowTheStepWhole) {
  EXPECT_EQ(CropMargins().resized(9, 9, {1, 1}, 2), CropMargins());
}

TEST(CropMarginsResized, KeepsACentreOnAHalfPixel) {
  const CropMargins crop{10, 0, 189, 0};
  EXPECT_EQ(crop.resized(50, 100, {300, 100}, 1), (CropMargins{36, 0, 214, 0}));
}

TEST(CropMarginsResized, RoundsAHalfAwayFromZero) {
  const QPointF center(15.5, 25.5);
  EXPECT_EQ(CropMargins().resized(10, 10, {100, 100}, 1, center), (CropMargins{11, 21, 79, 69}));
}

TEST(CropMarginsResized, IsPushedBackIntoTheSource) {
  EXPECT_EQ((CropMargins{800, 0, 0, 0}.resized(400, 10, {1000, 10}, 2)),
            (CropMargins{600, 0, 0, 0}));
  EXPECT_EQ((CropMargins{0, 0, 800, 0}.resized(400, 10, {1000, 10}, 2)),
            (CropMargins{0, 0, 600, 0}));
}

TEST(CropMarginsResized, TakesACentreFarOutside) {
  EXPECT_EQ(CropMargins().resized(10, 10, {100, 100}, 1, QPointF(1e300, -1e300)),
            (CropMargins{90, 0, 0, 90}));
}

TEST(CropMarginsResizedDeathTest, CentreMustBeANumber) {
  EXPECT_DEATH(std::ignore = CropMargins().resized(1, 1, {9, 9}, 1, QPointF(kNaN, 1)), "centred");
  EXPECT_DEATH(std::ignore = CropMargins().resized(1, 1, {9, 9}, 1, QPointF(1, kInfinity)),
               "centred");
}

/// 200 × 100 pixels in a source of 1000 × 1000.
constexpr CropMargins kCrop{100, 100, 700, 800};
const QSizeF kSource(1000, 1000);

TEST(CropMarginsKeepingRatio, GrowsAlongTheDiagonal) {
  EXPECT_EQ(kCrop.resizedKeepingRatio(20, 10, kBottomRight, kSource, 2),
            (CropMargins{100, 100, 680, 790}));
  EXPECT_EQ(kCrop.resizedKeepingRatio(-20, -10, kTopLeft, kSource, 2),
            (CropMargins{80, 90, 700, 800}));
}

TEST(CropMarginsKeepingRatio, ReadsOnlyLeftAndTop) {
  EXPECT_EQ(kCrop.resizedKeepingRatio(20, 10, {}, kSource, 2), (CropMargins{100, 100, 680, 790}));
  EXPECT_EQ(kCrop.resizedKeepingRatio(20, -10, {Edge::top}, kSource, 2),
            (CropMargins{100, 90, 680, 800}));
  EXPECT_EQ(kCrop.resizedKeepingRatio(-20, 10, {Edge::bottom, Edge::left}, kSource, 2),
            (CropMargins{80, 100, 700, 790}));
}

TEST(CropMarginsKeepingRatio, MovementAcrossTheDiagonalCancels) {
  EXPECT_EQ(kCrop.resizedKeepingRatio(10, -20, kBottomRight, kSource, 2), kCrop);
}

TEST(CropMarginsKeepingRatio, MovementAlongOneAxisCounts) {
  // (250 × 200 + 100 × 100) ÷ 50,000 = 1.2
  EXPECT_EQ(kCrop.resizedKeepingRatio(50, 0, kBottomRight, kSource, 2),
            (CropMargins{100, 100, 660, 780}));
}

TEST(CropMarginsKeepingRatio, RoundsEachSideToTheNearestStep) {
  // 250 × 125: 62.5 steps of 2 go away from zero.
  EXPECT_EQ(kCrop.resizedKeepingRatio(50, 25, kBottomRight, kSource, 2),
            (CropMargins{100, 100, 650, 774}));
  EXPECT_EQ(kCrop.resizedKeepingRatio(50, 25, kBottomRight, kSource, 1),
            (CropMargins{100, 100, 650, 775}));
}

TEST(CropMarginsKeepingRatio, StopsAtTheFirstBorder) {
  EXPECT_EQ(kCrop.resizedKeepingRatio(1e9, 1e9, kBottomRight, kSource, 2),
            (CropMargins{100, 100, 0, 450}));
  EXPECT_EQ(kCrop.resizedKeepingRatio(-1e9, -1e9, kTopLeft, kSource, 2),
            (CropMargins{0, 50, 700, 800}));
}

TEST(CropMarginsKeepingRatio, RoomOffTheGridIsRoundedDown) {
  const CropMargins square{0, 0, 1, 1};
  EXPECT_EQ(square.resizedKeepingRatio(50, 50, kBottomRight, {101, 101}, 2), square);
}

TEST(CropMarginsKeepingRatio, DoesNotFlipOverTheAnchor) {
  EXPECT_EQ(kCrop.resizedKeepingRatio(-900, -900, kBottomRight, kSource, 2),
            (CropMargins{100, 100, 896, 898}));
  EXPECT_EQ(kCrop.resizedKeepingRatio(900, 900, kTopLeft, kSource, 2),
            (CropMargins{296, 198, 700, 800}));
}

TEST(CropMarginsKeepingRatio, SmallestScaleLeavesOneStepOnTheSmallerSide) {
  const CropMargins crop{100, 100, 600, 800};
  EXPECT_EQ(crop.resizedKeepingRatio(-1e6, -1e6, kBottomRight, kSource, 2).rectangle(kSource),
            QRectF(100, 100, 6, 2));
}

TEST(CropMarginsKeepingRatio, LeavesAnEmptyCropAsItIs) {
  const CropMargins noWidth{600, 0, 600, 0}, noHeight{0, 500, 0, 500};
  EXPECT_EQ(noWidth.resizedKeepingRatio(5, 5, kBottomRight, kSource, 2), noWidth);
  EXPECT_EQ(noHeight.resizedKeepingRatio(5, 5, kBottomRight, kSource, 2), noHeight);
}

TEST(CropMarginsKeepingRatio, LeavesACropBelowTheStepAsItIs) {
  const CropMargins crop{100, 0, 600, 0};
  EXPECT_EQ(crop.resizedKeepingRatio(-50, 0, kBottomRight, {1000, 1}, 2), crop);
}

TEST(CropMarginsKeepingRatio, TakesAnyDistance) {
  EXPECT_EQ(kCrop.resizedKeepingRatio(kInfinity, kInfinity, kBottomRight, kSource, 2),
            (CropMargins{100, 100, 0, 450}));
  EXPECT_EQ(kCrop.resizedKeepingRatio(-kInfinity, 0, kBottomRight, kSource, 2),
            (CropMargins{100, 100, 896, 898}));
  EXPECT_EQ(kCrop.resizedKeepingRatio(kInfinity, -kInfinity, kBottomRight, kSource, 2), kCrop);
  EXPECT_EQ(kCrop.resizedKeepingRatio(kNaN, 0, kBottomRight, kSource, 2), kCrop);
}

}  // namespace
}  // namespace vantrel
