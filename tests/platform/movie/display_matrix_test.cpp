#include "platform/movie/display_matrix.h"

#include <gtest/gtest.h>

#include <cmath>

namespace vantrel {
namespace {

DisplayMatrix matrixOf(double a, double b, double c, double d, double x = 0, double y = 0) {
  const auto fixed = [](double value) { return static_cast<int32_t>(std::lround(value * 65536)); };
  return {fixed(a), fixed(b), 0, fixed(c), fixed(d), 0, fixed(x), fixed(y), 1 << 30};
}

AffineTransform turned(double a, double b, double c, double d) {
  return {a, b, c, d, 0, 0};
}

TEST(DisplayMatrix, KeepsAllEightOrientations) {
  const double eight[][4] = {{1, 0, 0, 1},  {0, 1, -1, 0}, {-1, 0, 0, -1}, {0, -1, 1, 0},
                             {-1, 0, 0, 1}, {1, 0, 0, -1}, {0, 1, 1, 0},   {0, -1, -1, 0}};
  for (const auto& [a, b, c, d] : eight) {
    EXPECT_EQ(nearestQuarterTurn(matrixOf(a, b, c, d)), turned(a, b, c, d));
  }
}

TEST(DisplayMatrix, KeepsTheShift) {
  EXPECT_EQ(nearestQuarterTurn(matrixOf(0, 1, -1, 0, 240, -3.5)),
            (AffineTransform{0, 1, -1, 0, 240, -3.5}));
}

TEST(DisplayMatrix, TakesTheNearestOfOtherTurns) {
  const auto turn = [](double degrees) {
    const double angle = degrees * std::acos(-1) / 180;
    return matrixOf(std::cos(angle), std::sin(angle), -std::sin(angle), std::cos(angle));
  };
  EXPECT_EQ(nearestQuarterTurn(turn(44)), turned(1, 0, 0, 1));
  EXPECT_EQ(nearestQuarterTurn(turn(46)), turned(0, 1, -1, 0));
  EXPECT_EQ(nearestQuarterTurn(turn(134)), turned(0, 1, -1, 0));
  EXPECT_EQ(nearestQuarterTurn(turn(136)), turned(-1, 0, 0, -1));
  EXPECT_EQ(nearestQuarterTurn(turn(-50)), turned(0, -1, 1, 0));
}

TEST(DisplayMatrix, LeavesScaleOut) {
  EXPECT_EQ(nearestQuarterTurn(matrixOf(0, 0.25, -3, 0)), turned(0, 1, -1, 0));
  EXPECT_EQ(nearestQuarterTurn(matrixOf(-2, 0, 0, 2)), turned(-1, 0, 0, 1));
}

TEST(DisplayMatrix, TurnsNothingThatItFlattens) {
  EXPECT_EQ(nearestQuarterTurn(matrixOf(0, 0, 0, 0)), turned(1, 0, 0, 1));
  EXPECT_EQ(nearestQuarterTurn(matrixOf(0, 0, 0, 1)), turned(1, 0, 0, 1));
  EXPECT_EQ(nearestQuarterTurn(matrixOf(1, 1, 1, 1)), turned(1, 0, 0, 1));
}

}  // namespace
}  // namespace vantrel
