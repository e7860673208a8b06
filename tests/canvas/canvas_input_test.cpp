#include "canvas/canvas_input.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace vantrel {
namespace {

using CanvasInput::keyAction;
using CanvasInput::KeyAction;
using CanvasInput::pinchFactor;
using CanvasInput::scrollDistance;
using CanvasInput::wheelFactor;

CanvasInput::WheelMotion notches(double horizontal, double vertical) {
  return {{}, (QPointF(horizontal, vertical) * 120).toPoint()};
}

CanvasInput::WheelMotion points(int horizontal, int vertical) {
  return {{horizontal, vertical}, {horizontal * 8, vertical * 8}};
}

TEST(CanvasInput, PinchesByTheMagnification) {
  EXPECT_EQ(pinchFactor(0), 1);
  EXPECT_DOUBLE_EQ(pinchFactor(0.25), 1.25);
  EXPECT_DOUBLE_EQ(pinchFactor(-0.5), 0.5);
  EXPECT_EQ(pinchFactor(-0.95), 0.1);
  EXPECT_EQ(pinchFactor(-7), 0.1);
}

TEST(CanvasInput, PinchesNothingForWhatIsNoNumber) {
  EXPECT_EQ(pinchFactor(std::numeric_limits<double>::quiet_NaN()), 1);
  EXPECT_EQ(pinchFactor(std::numeric_limits<double>::infinity()), 1);
}

TEST(CanvasInput, ZoomsExponentiallyByNotches) {
  EXPECT_NEAR(wheelFactor(notches(0, 1)), 1.1275, 1e-4);
  EXPECT_DOUBLE_EQ(wheelFactor(notches(0, -1)), 1 / wheelFactor(notches(0, 1)));
  EXPECT_DOUBLE_EQ(wheelFactor(notches(0, 0.25)), std::exp(0.03));
}

TEST(CanvasInput, ZoomsExponentiallyByPoints) {
  EXPECT_NEAR(wheelFactor(points(0, 87)), 2, 0.01);
  EXPECT_DOUBLE_EQ(wheelFactor(points(0, -10)), std::exp(-0.08));
  EXPECT_DOUBLE_EQ(wheelFactor(points(4, 5)), std::exp(0.04));
}

TEST(CanvasInput, ZoomsNothingByAHorizontalMotion) {
  EXPECT_EQ(wheelFactor(points(30, 0)), 1);
  EXPECT_EQ(wheelFactor(notches(2, 0)), 1);
  EXPECT_EQ(wheelFactor({}), 1);
}

TEST(CanvasInput, StaysFiniteForAnyTurn) {
  const int most = std::numeric_limits<int>::max();
  for (const int turn : {most, -most}) {
    for (const CanvasInput::WheelMotion& motion :
         {CanvasInput::WheelMotion{{0, turn}, {}}, CanvasInput::WheelMotion{{}, {0, turn}}}) {
      EXPECT_TRUE(std::isfinite(wheelFactor(motion)));
      EXPECT_GT(wheelFactor(motion), 0);
      EXPECT_TRUE(std::isfinite(scrollDistance(motion).y()));
    }
  }
}

TEST(CanvasInput, ScrollsPreciseMotionAsItIs) {
  EXPECT_EQ(scrollDistance(points(7, 31)), QPointF(-7, -31));
  EXPECT_EQ(scrollDistance(points(0, -3), 10), QPointF(0, 3));
}

TEST(CanvasInput, ScrollsANotchByLines) {
  EXPECT_EQ(scrollDistance(notches(0, 1)), QPointF(0, -60));
  EXPECT_EQ(scrollDistance(notches(-2, 0)), QPointF(120, 0));
  EXPECT_EQ(scrollDistance(notches(0, -0.5)), QPointF(0, 30));
  EXPECT_EQ(scrollDistance(notches(0, 1), 1), QPointF(0, -20));
}

TEST(CanvasInput, ArmsThePanWithTheSpaceBar) {
  for (const Qt::KeyboardModifiers modifiers :
       {Qt::KeyboardModifiers(Qt::NoModifier), Qt::KeyboardModifiers(Qt::ShiftModifier),
        Qt::ShiftModifier | Qt::AltModifier}) {
    for (const bool previewOnly : {false, true}) {
      EXPECT_EQ(keyAction({Qt::Key_Space, modifiers, true}, false, previewOnly), KeyAction::armPan);
      EXPECT_EQ(keyAction({Qt::Key_Space, modifiers, false}, false, previewOnly),
                KeyAction::disarmPan);
    }
  }
}

TEST(CanvasInput, LeavesTheSpaceBarToTypingAndShortcuts) {
  for (const bool isPress : {false, true}) {
    EXPECT_EQ(keyAction({Qt::Key_Space, {}, isPress}, true, false), KeyAction::pass);
    EXPECT_EQ(keyAction({Qt::Key_Space, Qt::ControlModifier, isPress}, false, false),
              KeyAction::pass);
    EXPECT_EQ(
        keyAction({Qt::Key_Space, Qt::ControlModifier | Qt::ShiftModifier, isPress}, false, true),
        KeyAction::pass);
  }
}

TEST(CanvasInput, LeavesPreviewWithEscape) {
  EXPECT_EQ(keyAction({Qt::Key_Escape, {}, true}, false, true), KeyAction::exitPreview);
  EXPECT_EQ(keyAction({Qt::Key_Escape, Qt::ControlModifier, true}, true, true),
            KeyAction::exitPreview);
  EXPECT_EQ(keyAction({Qt::Key_Escape, {}, false}, false, true), KeyAction::pass);
  EXPECT_EQ(keyAction({Qt::Key_Escape, {}, true}, false, false), KeyAction::pass);
}

TEST(CanvasInput, PassesEveryOtherKey) {
  for (const int key : {Qt::Key_Left, Qt::Key_Return, Qt::Key_Tab, Qt::Key_A, Qt::Key_F1}) {
    for (const bool isPress : {false, true}) {
      EXPECT_EQ(keyAction({key, {}, isPress}, false, true), KeyAction::pass);
    }
  }
}

}  // namespace
}  // namespace vantrel
