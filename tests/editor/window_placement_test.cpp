#include "editor/window_placement.h"

#include <gtest/gtest.h>

namespace vantrel {
namespace {

constexpr QRect kRoom{100, 20, 1400, 900};
constexpr QSize kSize{1000, 700};

TEST(WindowPlacement, CascadesALittle) {
  EXPECT_EQ(WindowPlacement::cascaded({200, 50, 1000, 700}, kSize, kRoom), QPoint(228, 78));
}

TEST(WindowPlacement, BeginsAgainWhereACascadeWouldLeaveTheScreen) {
  EXPECT_EQ(WindowPlacement::cascaded({480, 50, 1000, 700}, kSize, kRoom), kRoom.topLeft());
  EXPECT_EQ(WindowPlacement::cascaded({200, 200, 1000, 700}, kSize, kRoom), kRoom.topLeft());
}

TEST(WindowPlacement, HoldsATornWindowUnderThePointer) {
  EXPECT_EQ(WindowPlacement::under({400, 100}, kSize, kRoom), QPoint(320, 88));
}

TEST(WindowPlacement, KeepsATornWindowOnTheScreen) {
  EXPECT_EQ(WindowPlacement::under({0, 0}, kSize, kRoom), QPoint(100, 20));
  EXPECT_EQ(WindowPlacement::under({1490, 910}, kSize, kRoom), QPoint(500, 220));
  EXPECT_EQ(WindowPlacement::under({900, 500}, {2000, 1500}, kRoom), kRoom.topLeft());
}

}  // namespace
}  // namespace vantrel
