#include "controls/pixel_stepper.h"

#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QAccessible>
#include <QSignalSpy>

#include "controls/field_window.h"

namespace vantrel {
namespace {

TEST(PixelStepper, StepsAsAHalfGoesDown) {
  PixelStepper stepper(QStringLiteral("Width"));
  stepper.show();
  QSignalSpy stepped(&stepper, &PixelStepper::stepped);
  QTest::mousePress(stepper.upButton(), Qt::LeftButton);
  ASSERT_EQ(stepped.count(), 1);
  EXPECT_EQ(stepped.first().first().toInt(), 1);
  QTest::mouseRelease(stepper.upButton(), Qt::LeftButton);
  QTest::mouseClick(stepper.downButton(), Qt::LeftButton);
  ASSERT_EQ(stepped.count(), 2);
  EXPECT_EQ(stepped.last().first().toInt(), -1);
}

TEST(PixelStepper, RepeatsWhileItIsHeld) {
  PixelStepper stepper(QStringLiteral("Width"));
  stepper.show();
  QSignalSpy stepped(&stepper, &PixelStepper::stepped);
  QTest::mousePress(stepper.downButton(), Qt::LeftButton);
  EXPECT_TRUE(QTest::qWaitFor([&] { return stepped.count() >= 3; }));
  QTest::mouseRelease(stepper.downButton(), Qt::LeftButton);
}

TEST(PixelStepper, DoesNothingDisabled) {
  PixelStepper stepper(QStringLiteral("Width"));
  stepper.show();
  stepper.setEnabled(false);
  QSignalSpy stepped(&stepper, &PixelStepper::stepped);
  QTest::mouseClick(stepper.upButton(), Qt::LeftButton);
  EXPECT_EQ(stepped.count(), 0);
}

TEST(PixelStepper, EndsTheTypingBeforeTheStep) {
  FieldWindow fields(1);
  PixelStepper stepper(QStringLiteral("Left"), &fields.window);
  stepper.show();
  ASSERT_TRUE(fields.isReady());
  int64_t stepsBefore = -1;
  QObject::connect(&stepper, &PixelStepper::stepped, &fields.window,
                   [&] { stepsBefore = fields.steps(); });
  QTest::mouseClick(&fields.width, Qt::LeftButton);
  QTest::keyClicks(&fields.width, QStringLiteral("900"));
  QTest::mouseClick(stepper.upButton(), Qt::LeftButton);
  EXPECT_FALSE(fields.width.isEditing());
  EXPECT_EQ(fields.size().width(), 900);
  EXPECT_EQ(stepsBefore, 1);
}

TEST(PixelStepper, TakesNoFocusAndHasTwoNamedButtons) {
  PixelStepper stepper(QStringLiteral("Width"));
  EXPECT_EQ(stepper.focusPolicy(), Qt::NoFocus);
  EXPECT_EQ(stepper.size(), QSize(15, 22));
  EXPECT_EQ(stepper.toolTip(), QStringLiteral("Pixels"));
  for (QAbstractButton* const half : {stepper.upButton(), stepper.downButton()}) {
    EXPECT_EQ(half->focusPolicy(), Qt::NoFocus);
    EXPECT_EQ(QAccessible::queryAccessibleInterface(half)->role(), QAccessible::PushButton);
  }
  EXPECT_EQ(stepper.upButton()->accessibleName(), QStringLiteral("Increase Width"));
  EXPECT_EQ(stepper.downButton()->accessibleName(), QStringLiteral("Decrease Width"));
}

}  // namespace
}  // namespace vantrel
