#include "canvas/canvas_pan.h"

#include <gtest/gtest.h>

namespace vantrel {
namespace {

TEST(CanvasPan, BeginsByTheRightOrTheMiddleButton) {
  for (const Qt::MouseButton button : {Qt::RightButton, Qt::MiddleButton}) {
    CanvasPan pan;
    EXPECT_TRUE(pan.begin(button, {10, 20}, {300, 400}));
    EXPECT_TRUE(pan.isPanning());
    EXPECT_EQ(pan.hand(), CanvasPan::Hand::closed);
  }
}

TEST(CanvasPan, BeginsByAnyButtonOnlyWithTheSpaceBarHeld) {
  for (const Qt::MouseButton button : {Qt::LeftButton, Qt::BackButton, Qt::ForwardButton}) {
    CanvasPan pan;
    EXPECT_FALSE(pan.begin(button, {10, 20}, {300, 400}));
    EXPECT_FALSE(pan.isPanning());
    EXPECT_EQ(pan.hand(), CanvasPan::Hand::none);
    pan.setSpaceHeld(true);
    EXPECT_TRUE(pan.begin(button, {10, 20}, {300, 400}));
  }
}

TEST(CanvasPan, KeepsTheCanvasUnderTheHand) {
  CanvasPan pan;
  EXPECT_FALSE(pan.drag({1, 1}));
  pan.begin(Qt::MiddleButton, {10, 20}, {300, 400});
  EXPECT_EQ(pan.drag({15.5, 18}), QPointF(294.5, 402));
  EXPECT_EQ(pan.drag({1000, 20}), QPointF(-690, 400));
  EXPECT_EQ(pan.drag({10, 20}), QPointF(300, 400));
}

TEST(CanvasPan, GoesOnWhenTheSpaceBarIsReleased) {
  CanvasPan pan;
  pan.setSpaceHeld(true);
  pan.begin(Qt::LeftButton, {10, 20}, {300, 400});
  pan.setSpaceHeld(false);
  EXPECT_EQ(pan.drag({11, 20}), QPointF(299, 400));
  EXPECT_EQ(pan.hand(), CanvasPan::Hand::closed);
}

TEST(CanvasPan, MayEndAtAnyTime) {
  CanvasPan pan;
  pan.end();
  pan.begin(Qt::RightButton, {10, 20}, {300, 400});
  pan.end();
  pan.end();
  EXPECT_FALSE(pan.isPanning());
  EXPECT_FALSE(pan.drag({11, 20}));
  EXPECT_EQ(pan.hand(), CanvasPan::Hand::none);
}

TEST(CanvasPan, ShowsTheHandOfWhatGoesOn) {
  CanvasPan pan;
  pan.setSpaceHeld(true);
  EXPECT_TRUE(pan.isSpaceHeld());
  EXPECT_EQ(pan.hand(), CanvasPan::Hand::open);
  pan.setScrolling(true);
  EXPECT_EQ(pan.hand(), CanvasPan::Hand::closed);
  EXPECT_FALSE(pan.isPanning());
  pan.setScrolling(false);
  EXPECT_EQ(pan.hand(), CanvasPan::Hand::open);
  pan.setSpaceHeld(false);
  EXPECT_EQ(pan.hand(), CanvasPan::Hand::none);
}

}  // namespace
}  // namespace vantrel
