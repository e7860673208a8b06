#include "editor/quiet_dialog.h"

#include <gtest/gtest.h>

#include <QStyleOptionSlider>

namespace vantrel {
namespace {

QStyleOptionSlider bar(int value) {
  QStyleOptionSlider option;
  option.rect = QRect(5, 10, 12, 200);
  option.orientation = Qt::Vertical;
  option.minimum = 0;
  option.maximum = 300;
  option.pageStep = 100;
  option.sliderPosition = value;
  return option;
}

QRect handleOf(const QStyleOptionSlider& option) {
  return QuietDialog::scrollBarPart(option, QStyle::SC_ScrollBarSlider);
}

TEST(QuietDialog, ScrollsFromEndToEnd) {
  EXPECT_EQ(handleOf(bar(0)), QRect(5, 10, 12, 50));
  EXPECT_EQ(handleOf(bar(300)), QRect(5, 160, 12, 50));
  EXPECT_EQ(QuietDialog::scrollBarPart(bar(0), QStyle::SC_ScrollBarGroove), bar(0).rect);
  EXPECT_TRUE(QuietDialog::scrollBarPart(bar(0), QStyle::SC_ScrollBarAddLine).isEmpty());
}

TEST(QuietDialog, PagesBesideTheHandle) {
  const QStyleOptionSlider option = bar(150);
  const QRect before = QuietDialog::scrollBarPart(option, QStyle::SC_ScrollBarSubPage);
  const QRect after = QuietDialog::scrollBarPart(option, QStyle::SC_ScrollBarAddPage);
  EXPECT_EQ(before.bottom() + 1, handleOf(option).top());
  EXPECT_EQ(after.top(), handleOf(option).bottom() + 1);
  EXPECT_EQ(before.height() + handleOf(option).height() + after.height(), option.rect.height());
}

TEST(QuietDialog, KeepsTheHandleInReachOfThePointer) {
  QStyleOptionSlider option = bar(0);
  option.maximum = 1'000'000;
  EXPECT_GE(handleOf(option).height(), 24);
  option.maximum = 0;
  EXPECT_EQ(handleOf(option), option.rect);
}

TEST(QuietDialog, ScrollsSidewaysInTheDirectionOfReading) {
  QStyleOptionSlider option = bar(0);
  option.rect = QRect(0, 0, 200, 12);
  option.orientation = Qt::Horizontal;
  EXPECT_EQ(handleOf(option), QRect(0, 0, 50, 12));
  option.direction = Qt::RightToLeft;
  EXPECT_EQ(handleOf(option), QRect(150, 0, 50, 12));
}

}  // namespace
}  // namespace vantrel
