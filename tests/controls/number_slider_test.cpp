#include "controls/number_slider.h"

#include <gtest/gtest.h>

#include <QAccessible>
#include <limits>

namespace vantrel {
namespace {

/// Seconds in tenths, from 0 to 5.
class NumberSliderTest : public ::testing::Test {
 protected:
  NumberSliderTest() {
    slider.setRange(0, 50);
    slider.setSingleStep(5);
    slider.setValue(12);
  }

  NumberSlider slider{
      10, [](double seconds) { return QString::number(seconds) + QStringLiteral(" s"); }};
  QAccessibleInterface* item = QAccessible::queryAccessibleInterface(&slider);
};

TEST_F(NumberSliderTest, TellsAssistiveToolsTheNumberAndHowItIsSaid) {
  ASSERT_NE(item, nullptr);
  EXPECT_EQ(item->role(), QAccessible::Slider);
  EXPECT_EQ(item->text(QAccessible::Value), QStringLiteral("1.2 s"));
  QAccessibleValueInterface* const value = item->valueInterface();
  ASSERT_NE(value, nullptr);
  EXPECT_EQ(value->currentValue().toDouble(), 1.2);
  EXPECT_EQ(value->minimumValue().toDouble(), 0);
  EXPECT_EQ(value->maximumValue().toDouble(), 5);
  EXPECT_EQ(value->minimumStepSize().toDouble(), 0.5);
}

TEST_F(NumberSliderTest, TakesTheClosestNumberThatItCan) {
  QAccessibleValueInterface* const value = item->valueInterface();
  value->setCurrentValue(3.26);
  EXPECT_EQ(slider.value(), 33);
  value->setCurrentValue(1e9);
  EXPECT_EQ(slider.value(), 50);
  value->setCurrentValue(-1);
  EXPECT_EQ(slider.value(), 0);
}

TEST_F(NumberSliderTest, StaysWhereItIsWithoutANumberAndWhenDisabled) {
  slider.choose(std::numeric_limits<double>::quiet_NaN());
  EXPECT_EQ(slider.value(), 12);
  slider.setEnabled(false);
  slider.choose(3);
  EXPECT_EQ(slider.value(), 12);
}

}  // namespace
}  // namespace vantrel
