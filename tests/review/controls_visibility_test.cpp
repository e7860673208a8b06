#include "review/controls_visibility.h"

#include <gtest/gtest.h>

namespace vantrel {
namespace {

ControlsVisibility playing() {
  ControlsVisibility controls;
  controls.setPlaying(true);
  return controls;
}

TEST(ControlsVisibility, TheyAreShownAsLongAsNothingPlays) {
  ControlsVisibility controls;
  EXPECT_FALSE(controls.awaitRest());
  controls.rest(false);
  EXPECT_TRUE(controls.areShown());
}

TEST(ControlsVisibility, TheyGoWhenAllRestsWhileItPlays) {
  ControlsVisibility controls = playing();
  EXPECT_TRUE(controls.areShown());
  EXPECT_TRUE(controls.awaitRest());
  controls.rest(false);
  EXPECT_FALSE(controls.areShown());
  EXPECT_FALSE(controls.awaitRest());
}

TEST(ControlsVisibility, AMovementBringsThemBack) {
  ControlsVisibility controls = playing();
  controls.rest(false);
  controls.stir();
  EXPECT_TRUE(controls.areShown());
  EXPECT_TRUE(controls.awaitRest());
}

TEST(ControlsVisibility, APauseBringsThemBackForGood) {
  ControlsVisibility controls = playing();
  controls.rest(false);
  controls.setPlaying(false);
  EXPECT_TRUE(controls.areShown());
  EXPECT_FALSE(controls.awaitRest());
}

TEST(ControlsVisibility, PlayingOnIsNoMovement) {
  ControlsVisibility controls = playing();
  controls.rest(false);
  controls.setPlaying(true);
  EXPECT_FALSE(controls.areShown());
}

TEST(ControlsVisibility, TheyStayWhileTheyAreInUse) {
  ControlsVisibility controls = playing();
  controls.rest(true);
  EXPECT_TRUE(controls.areShown());
  EXPECT_TRUE(controls.awaitRest());
  controls.rest(false);
  EXPECT_FALSE(controls.areShown());
}

}  // namespace
}  // namespace vantrel
