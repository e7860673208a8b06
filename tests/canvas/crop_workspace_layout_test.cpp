#include "canvas/crop_workspace_layout.h"

#include <gtest/gtest.h>

namespace vantrel {
namespace {

TEST(CropWorkspaceLayout, LimitsTheWidthOfTheBar) {
  const auto widthIn = [](double width) {
    return CropWorkspaceLayout{{width, 500}}.playbackWidth();
  };
  EXPECT_EQ(widthIn(0), 240);
  EXPECT_EQ(widthIn(200), 240);
  EXPECT_EQ(widthIn(288), 240);
  EXPECT_EQ(widthIn(289), 241);
  EXPECT_EQ(widthIn(650), 602);
  EXPECT_EQ(widthIn(698), 650);
  EXPECT_EQ(widthIn(1000), 650);
}

TEST(CropWorkspaceLayout, FloatsTheBarAboveTheBottom) {
  const CropWorkspaceLayout layout{{1001, 700}, 48};
  EXPECT_EQ(layout.playbackCenter(), QPointF(500.5, 656));
}

TEST(CropWorkspaceLayout, KeepsTheBarAndItsMarginsClear) {
  EXPECT_EQ((CropWorkspaceLayout{{1000, 700}, 48}.framingInsets()), QMarginsF(0, 0, 0, 88));
  EXPECT_EQ((CropWorkspaceLayout{{1000, 700}, 0}.framingInsets()), QMarginsF(0, 0, 0, 40));
}

}  // namespace
}  // namespace vantrel
