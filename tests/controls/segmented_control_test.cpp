#include "controls/segmented_control.h"

#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QAccessible>
#include <QApplication>
#include <QHBoxLayout>
#include <QHelpEvent>
#include <QSignalSpy>
#include <QTest>
#include <QToolTip>
#include <memory>

namespace vantrel {
namespace {

class SegmentedControlTest : public ::testing::Test {
 protected:
  void SetUp() override {
    auto* const layout = new QHBoxLayout(&window);
    control = new SegmentedControl(
        QStringLiteral("Size"),
        {QStringLiteral("Small"), QStringLiteral("Middle"), QStringLiteral("Large")}, &window);
    layout->addWidget(control);
    control->setSelected(0);
    window.show();
    window.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
  }
  QList<int> chosen() {
    QList<int> indices;
    for (const QList<QVariant>& call : *spy)
      indices << call.first().toInt();
    spy->clear();
    return indices;
  }

  QWidget window;
  SegmentedControl* control = nullptr;
  std::unique_ptr<QSignalSpy> spy;
};

TEST_F(SegmentedControlTest, IsChosenFromWithTheMouse) {
  spy = std::make_unique<QSignalSpy>(control, &SegmentedControl::chosen);
  QTest::mouseClick(control->segment(2), Qt::LeftButton, {}, QPoint(1, 1));
  EXPECT_EQ(control->selected(), 2);
  EXPECT_FALSE(control->segment(0)->isChecked());
  QTest::mouseClick(control->segment(1), Qt::LeftButton);
  EXPECT_EQ(chosen(), (QList<int>{2, 1}));
}

TEST_F(SegmentedControlTest, TellsNothingOfWhatTheProgramSelects) {
  spy = std::make_unique<QSignalSpy>(control, &SegmentedControl::chosen);
  control->setSelected(1);
  EXPECT_EQ(control->selected(), 1);
  EXPECT_TRUE(chosen().isEmpty());
}

TEST_F(SegmentedControlTest, HasNothingToChooseInADisabledSegment) {
  spy = std::make_unique<QSignalSpy>(control, &SegmentedControl::chosen);
  control->setSegmentEnabled(1, false);
  QTest::mouseClick(control->segment(1), Qt::LeftButton);
  EXPECT_EQ(control->selected(), 0);
  control->segment(0)->setFocus();
  QTest::keyClick(control->segment(0), Qt::Key_Right);
  EXPECT_EQ(control->selected(), 2);
  EXPECT_EQ(chosen(), QList<int>{2});
}

TEST_F(SegmentedControlTest, IsOneStopOfTheKeyboardAtWhatHolds) {
  spy = std::make_unique<QSignalSpy>(control, &SegmentedControl::chosen);
  control->setSelected(1);
  window.setFocus();
  QTest::keyClick(&window, Qt::Key_Tab);
  EXPECT_TRUE(control->segment(1)->hasFocus());
  QTest::keyClick(control->segment(1), Qt::Key_Left);
  EXPECT_TRUE(control->segment(0)->hasFocus());
  EXPECT_EQ(chosen(), QList<int>{0});
}

TEST_F(SegmentedControlTest, ShowsWhatHoldsAndTheFocus) {
  const QImage first = control->grab().toImage();
  control->setSelected(1);
  const QImage second = control->grab().toImage();
  EXPECT_NE(first, second);
  QTest::keyClick(&window, Qt::Key_Tab);
  control->segment(1)->setFocus(Qt::TabFocusReason);
  EXPECT_NE(control->grab().toImage(), second);
  control->setEnabled(false);
  EXPECT_NE(control->grab().toImage(), second);
}

TEST_F(SegmentedControlTest, IsAGroupOfRadioButtonsToAssistiveTools) {
  QAccessibleInterface* const group = QAccessible::queryAccessibleInterface(control);
  ASSERT_NE(group, nullptr);
  EXPECT_EQ(group->role(), QAccessible::Grouping);
  EXPECT_EQ(group->text(QAccessible::Name), QStringLiteral("Size"));
  ASSERT_EQ(group->childCount(), 3);
  for (int index = 0; index < 3; ++index) {
    QAccessibleInterface* const item = group->child(index);
    EXPECT_EQ(item->role(), QAccessible::RadioButton);
    EXPECT_EQ(item->text(QAccessible::Name), control->segment(index)->text());
    EXPECT_EQ(item->state().checked, index == 0);
  }
}

TEST_F(SegmentedControlTest, IsChosenFromByAssistiveTools) {
  spy = std::make_unique<QSignalSpy>(control, &SegmentedControl::chosen);
  QAccessibleInterface* const item = QAccessible::queryAccessibleInterface(control->segment(1));
  item->actionInterface()->doAction(item->actionInterface()->actionNames().first());
  EXPECT_EQ(control->selected(), 1);
  EXPECT_EQ(chosen(), QList<int>{1});
}

TEST_F(SegmentedControlTest, ShowsItsToolTipOnEachSegment) {
  control->setToolTip(QStringLiteral("How large"));
  control->setSegmentEnabled(0, false);
  for (const int index : {0, 1}) {
    QAbstractButton* const segment = control->segment(index);
    QHelpEvent help(QEvent::ToolTip, {5, 5}, segment->mapToGlobal(QPoint(5, 5)));
    QApplication::sendEvent(segment, &help);
    EXPECT_EQ(QToolTip::text(), QStringLiteral("How large"));
    QToolTip::hideText();
    ASSERT_TRUE(QTest::qWaitFor([] { return !QToolTip::isVisible(); }));
  }
}

}  // namespace
}  // namespace vantrel
