#include "model/crop_margins.h"

#include <gtest/gtest.h>

#include <limits>

#include "model/printers.h"

namespace vantrel {
namespace {

using Edge = CropMargins::Edge;

constexpr int64_t kHighest = std::numeric_limits<int64_t>::max();
constexpr int64_t kLowest = std::numeric_limits<int64_t>::min();

CropMargins afterSet(CropMargins crop, Edge edge, int64_t to, const QSizeF& in, int64_t multiple) {
  crop.set(edge, to, in, multiple);
  return crop;
}

TEST(CropMargins, CutNothingAtFirst) {
  EXPECT_EQ(CropMargins(), (CropMargins{0, 0, 0, 0}));
}

TEST(CropMargins, AreReadAndWrittenByEdgeInOrder) {
  CropMargins crop{1, 2, 3, 4};
  int64_t expected = 1;
  for (const Edge edge : CropMargins::kEdges) {
    EXPECT_EQ(std::as_const(crop)[edge], expected);
    crop[edge] = -expected;
    ++expected;
  }
  EXPECT_EQ(crop, (CropMargins{-1, -2, -3, -4}));
}

TEST(CropMargins, DifferInAnyField) {
  for (const Edge edge : CropMargins::kEdges) {
    CropMargins crop{1, 2, 3, 4};
    crop[edge] += 1;
    EXPECT_NE(crop, (CropMargins{1, 2, 3, 4}));
  }
}

TEST(CropMarginsRectangle, IsWhatTheMarginsLeave) {
  EXPECT_EQ((CropMargins{10, 20, 30, 40}.rectangle({200, 100})), QRectF(10, 20, 160, 40));
}

TEST(CropMarginsRectangle, TruncatesTheSource) {
  EXPECT_EQ(CropMargins().rectangle({200.9, 100.5}), QRectF(0, 0, 200, 100));
}

TEST(CropMarginsRectangle, HasNoNegativeSizeButItsOwnPosition) {
  EXPECT_EQ((CropMargins{80, -5, 30, 200}.rectangle({100, 100})), QRectF(80, -5, 0, 0));
}

TEST(CropMarginsFullImage, CutsAnOddLastColumnAndRowOfAVideo) {
  const CropMargins crop = CropMargins::fullImage({1921, 1081}, 2);
  EXPECT_EQ(crop, (CropMargins{0, 0, 1, 1}));
  EXPECT_EQ(crop.rectangle({1921, 1081}), QRectF(0, 0, 1920, 1080));
}

TEST(CropMarginsFullImage, CutsNothingOfAnImageOrOfAnEvenVideo) {
  EXPECT_EQ(CropMargins::fullImage({1921, 1081}, 1), CropMargins());
  EXPECT_EQ(CropMargins::fullImage({1920, 1080}, 2), CropMargins());
}

TEST(CropMarginsFullImage, TruncatesTheSource) {
  EXPECT_EQ(CropMargins::fullImage({1920.9, 1081.9}, 2), (CropMargins{0, 0, 0, 1}));
}

TEST(CropMarginsSet, RaisesANegativeMarginToZero) {
  EXPECT_EQ(afterSet({7, 0, 0, 0}, Edge::left, -5, {100, 100}, 1), CropMargins());
  EXPECT_EQ(afterSet({7, 0, 0, 0}, Edge::left, kLowest, {100, 100}, 2), CropMargins());
}

TEST(CropMarginsSet, LeavesOneStepOfPixels) {
  EXPECT_EQ(afterSet({0, 0, 100, 0}, Edge::left, 5000, {1000, 500}, 2),
            (CropMargins{898, 0, 100, 0}));
  EXPECT_EQ(afterSet({0, 0, 100, 0}, Edge::left, kHighest, {1000, 500}, 1),
            (CropMargins{899, 0, 100, 0}));
}

TEST(CropMarginsSet, OddSpanMovesTheEdgeInward) {
  EXPECT_EQ(afterSet({}, Edge::left, 0, {101, 100}, 2), (CropMargins{1, 0, 0, 0}));
  EXPECT_EQ(afterSet({0, 0, 1, 0}, Edge::left, 0, {100, 100}, 2), (CropMargins{1, 0, 1, 0}));
}

TEST(CropMarginsSet, LargestMarginIsOnTheGrid) {
  EXPECT_EQ(afterSet({0, 0, 1, 0}, Edge::left, 97, {100, 100}, 2), (CropMargins{97, 0, 1, 0}));
  EXPECT_EQ(afterSet({0, 0, 1, 0}, Edge::left, 96, {100, 100}, 2), (CropMargins{97, 0, 1, 0}));
}

TEST(CropMarginsSet, LeavesASourceBelowTheStepAsItIs) {
  EXPECT_EQ(afterSet({}, Edge::left, 0, {1, 100}, 2), CropMargins());
  EXPECT_EQ(afterSet({}, Edge::bottom, 9, {100, 1}, 2), CropMargins());
}

TEST(CropMarginsSet, NeverCorrectsWithAStepOfOne) {
  for (int64_t to = 0; to < 101; ++to) {
    EXPECT_EQ(afterSet({}, Edge::top, to, {7, 101}, 1), (CropMargins{0, to, 0, 0}))
        << "wanted " << to;
  }
  EXPECT_EQ(afterSet({}, Edge::top, 101, {7, 101}, 1), (CropMargins{0, 100, 0, 0}));
}

TEST(CropMarginsSet, UsesTheExtentAndTheOppositeMarginOfItsAxis) {
  const CropMargins crop{10, 20, 30, 40};
  const QSizeF source(200, 100);
  EXPECT_EQ(afterSet(crop, Edge::left, 500, source, 2), (CropMargins{168, 20, 30, 40}));
  EXPECT_EQ(afterSet(crop, Edge::top, 500, source, 2), (CropMargins{10, 58, 30, 40}));
  EXPECT_EQ(afterSet(crop, Edge::right, 500, source, 2), (CropMargins{10, 20, 188, 40}));
  EXPECT_EQ(afterSet(crop, Edge::bottom, 500, source, 2), (CropMargins{10, 20, 30, 78}));
}

TEST(CropMarginsSet, TruncatesTheSource) {
  EXPECT_EQ(afterSet({}, Edge::right, 500, {100.99, 50}, 1), (CropMargins{0, 0, 99, 0}));
}

TEST(CropMarginsTranslated, KeepsTheSize) {
  EXPECT_EQ((CropMargins{10, 20, 30, 40}.translated(5, -6)), (CropMargins{15, 14, 25, 46}));
}

TEST(CropMarginsTranslated, StopsAtTheBorder) {
  EXPECT_EQ((CropMargins{0, 0, 20, 0}.translated(50, 0)), (CropMargins{20, 0, 0, 0}));
  EXPECT_EQ((CropMargins{10, 20, 30, 40}.translated(-50, -50)), (CropMargins{0, 0, 40, 60}));
}

TEST(CropMarginsTranslated, SlidesAlongASide) {
  EXPECT_EQ((CropMargins{10, 20, 0, 40}.translated(7, 7)), (CropMargins{10, 27, 0, 33}));
}

TEST(CropMarginsTranslated, TakesAnyDistance) {
  const CropMargins crop{10, 20, 30, 40};
  EXPECT_EQ(crop.translated(kHighest, kLowest), (CropMargins{40, 0, 0, 60}));
  EXPECT_EQ(crop.translated(kLowest, kHighest), (CropMargins{0, 60, 40, 0}));
  EXPECT_EQ(crop.translated(-kHighest, kHighest), (CropMargins{0, 60, 40, 0}));
}

TEST(CropMarginsDeathTest, SizeMustBeANumberWithin64Bits) {
  constexpr double kInfinity = std::numeric_limits<double>::infinity();
  constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
  EXPECT_DEATH(std::ignore = CropMargins().rectangle({kInfinity, 1}), "within 64 bits");
  EXPECT_DEATH(std::ignore = CropMargins().rectangle({1, kNaN}), "within 64 bits");
  EXPECT_DEATH(std::ignore = CropMargins::fullImage({-kInfinity, 1}, 2), "within 64 bits");
  EXPECT_DEATH(afterSet({}, Edge::left, 0, {kNaN, 1}, 2), "within 64 bits");
  EXPECT_DEATH(std::ignore = CropMargins().resized(1, 1, {0x1p63, 1}, 1, QPointF()),
               "within 64 bits");
  EXPECT_DEATH(std::ignore = CropMargins().resizedKeepingRatio(1, 1, {}, {1, kInfinity}, 1),
               "within 64 bits");
}

TEST(CropMarginsDeathTest, StepMustBePositive) {
  EXPECT_DEATH(std::ignore = CropMargins::fullImage({1, 1}, 0), "pixel step");
  EXPECT_DEATH(afterSet({}, Edge::left, 0, {1, 1}, 0), "pixel step");
  EXPECT_DEATH(std::ignore = CropMargins().resized(1, 1, {1, 1}, 0), "pixel step");
  EXPECT_DEATH(std::ignore = CropMargins().resizedKeepingRatio(1, 1, {}, {1, 1}, 0), "pixel step");
}

TEST(CropMarginsDeathTest, OverflowEndsTheProcess) {
  EXPECT_DEATH(std::ignore = (CropMargins{kLowest, 0, 0, 0}.rectangle({1, 1})), "overflow");
  EXPECT_DEATH(std::ignore = (CropMargins{kLowest, 0, 0, 0}.translated(1, 1)), "overflow");
  EXPECT_DEATH(afterSet({0, 0, kLowest, 0}, Edge::left, 0, {1, 1}, 1), "overflow");
}

}  // namespace
}  // namespace vantrel
