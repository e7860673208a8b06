#include "controls/edit_slider.h"

#include <gtest/gtest.h>

#include <QAccessible>
#include <QSignalSpy>
#include <QTest>
#include <QVBoxLayout>
#include <QWheelEvent>
#include <functional>
#include <memory>

#include "model/edit_history.h"

namespace vantrel {
namespace {

/// A slider on the bitrate, 200 points wide and more, in a window of its own.
class EditSliderTest : public ::testing::Test {
 protected:
  EditSliderTest() {
    auto* const layout = new QVBoxLayout(&window);
    slider = new EditSlider(history, &window);
    layout->addWidget(slider);
    QObject::connect(slider, &EditSlider::numberChosen, &history, &EditHistory::setBitrate);
    QObject::connect(&history, &EditHistory::encodingChanged, slider, [this] { update(); });
    history.setBitrate(20);
    history.reset(history.value());
    update();
    window.resize(300, 60);
    window.show();
    window.activateWindow();
    slider->setFocus();
  }
  void SetUp() override { ASSERT_TRUE(QTest::qWaitForWindowActive(&window)); }

  void update() { slider->showNumber(history.bitrate(), {0.5, 40, 2}); }
  int steps() const { return history.manager().count(); }
  /// In the middle of the knob when it stands there.
  QPoint place(double number) const {
    const int travel = slider->width() - 2 * kKnobReach;
    return {kKnobReach + static_cast<int>(travel * (number - 0.5) / 39.5), slider->height() / 2};
  }
  void move(const QPoint& to) {
    QMouseEvent event(QEvent::MouseMove, to, slider->mapToGlobal(to), Qt::NoButton, Qt::LeftButton,
                      {});
    QCoreApplication::sendEvent(slider, &event);
  }
  void press(double number) { QTest::mousePress(slider, Qt::LeftButton, {}, place(number)); }
  void release(double number) { QTest::mouseRelease(slider, Qt::LeftButton, {}, place(number)); }

  static constexpr int kKnobReach = 8;
  EditHistory history;
  QWidget window;
  EditSlider* slider = nullptr;
};

TEST_F(EditSliderTest, ADragIsOneEdit) {
  press(20);
  EXPECT_EQ(history.bitrate(), 20);
  move(place(26));
  const double on = history.bitrate();
  EXPECT_NEAR(on, 26, 2);
  move(place(33));
  EXPECT_GT(history.bitrate(), on);
  EXPECT_EQ(steps(), 0);
  release(33);
  EXPECT_EQ(steps(), 1);
  history.undo();
  EXPECT_EQ(history.bitrate(), 20);
}

TEST_F(EditSliderTest, AClickBesideTheKnobIsOneEdit) {
  press(32);
  EXPECT_NEAR(history.bitrate(), 32, 2);
  release(32);
  EXPECT_EQ(steps(), 1);
}

TEST_F(EditSliderTest, ADragThatEndsWhereItBeganIsNoEdit) {
  for (const double start : {20.0, 7.83}) {
    history.setBitrate(start);
    history.reset(history.value());
    press(start);
    move(place(35));
    EXPECT_GT(history.bitrate(), 30);
    move(place(start));
    EXPECT_EQ(history.bitrate(), start);
    release(start);
    EXPECT_EQ(steps(), 0);
  }
}

TEST_F(EditSliderTest, HoldingTheKnobMovesNothing) {
  QTest::mousePress(slider, Qt::LeftButton, {}, place(20) + QPoint(5, 0));
  QTest::mouseRelease(slider, Qt::LeftButton, {}, place(20) + QPoint(5, 0));
  EXPECT_EQ(history.bitrate(), 20);
  EXPECT_EQ(steps(), 0);
}

TEST_F(EditSliderTest, EachKeyIsOneEdit) {
  QTest::keyClick(slider, Qt::Key_Right);
  EXPECT_EQ(history.bitrate(), 20.5);
  QTest::keyClick(slider, Qt::Key_Right);
  EXPECT_EQ(history.bitrate(), 21);
  QTest::keyClick(slider, Qt::Key_Left);
  EXPECT_EQ(history.bitrate(), 20.5);
  EXPECT_EQ(steps(), 3);
  QTest::keyClick(slider, Qt::Key_End);
  EXPECT_EQ(history.bitrate(), 40);
  QTest::keyClick(slider, Qt::Key_Right);
  EXPECT_EQ(steps(), 4);
}

TEST_F(EditSliderTest, LeavesANumberBetweenOrBeyondItsStepsAlone) {
  for (const double number : {7.83, 0.01, 900.0}) {
    history.setBitrate(number);
    EXPECT_EQ(slider->number(), number);
    EXPECT_EQ(history.bitrate(), number);
  }
  QTest::keyClick(slider, Qt::Key_Left);
  EXPECT_EQ(history.bitrate(), 39.5);
  history.setBitrate(7.83);
  QTest::keyClick(slider, Qt::Key_Right);
  EXPECT_EQ(history.bitrate(), 8);
}

TEST_F(EditSliderTest, EndsADragInWhichItIsTakenAway) {
  const auto disable = [this](bool off) { slider->setEnabled(!off); };
  const auto hide = [this](bool off) { slider->setVisible(!off); };
  for (const std::function<void(bool)>& takeAway : {std::function<void(bool)>(disable), {hide}}) {
    history.setBitrate(20);
    history.reset(history.value());
    press(20);
    move(place(30));
    takeAway(true);
    EXPECT_EQ(steps(), 1);
    takeAway(false);
    history.setBitrate(5);
    EXPECT_EQ(steps(), 2);
  }
}

TEST_F(EditSliderTest, LeavesTheWheelToWhatItLiesIn) {
  QWheelEvent event(place(20), slider->mapToGlobal(place(20)), {}, QPoint(0, 120), Qt::NoButton, {},
                    Qt::NoScrollPhase, false);
  QCoreApplication::sendEvent(slider, &event);
  EXPECT_FALSE(event.isAccepted());
  EXPECT_EQ(history.bitrate(), 20);
}

TEST_F(EditSliderTest, TellsAssistiveToolsTheNumber) {
  QAccessibleInterface* const item = QAccessible::queryAccessibleInterface(slider);
  ASSERT_NE(item, nullptr);
  EXPECT_EQ(item->role(), QAccessible::Slider);
  QAccessibleValueInterface* const value = item->valueInterface();
  ASSERT_NE(value, nullptr);
  history.setBitrate(7.83);
  EXPECT_EQ(value->currentValue().toDouble(), 7.83);
  EXPECT_EQ(value->minimumValue().toDouble(), 0.5);
  EXPECT_EQ(value->maximumValue().toDouble(), 40);
  EXPECT_EQ(value->minimumStepSize().toDouble(), 0.5);
  history.reset(history.value());
  value->setCurrentValue(12.5);
  EXPECT_EQ(history.bitrate(), 12.5);
  EXPECT_EQ(steps(), 1);
}

TEST(EditSlider, OutlivesItsHistoryInMidDrag) {
  auto history = std::make_unique<EditHistory>();
  EditSlider slider(*history);
  slider.showNumber(5, {0.5, 40, 2});
  slider.setSliderDown(true);
  history.reset();
  slider.setSliderDown(false);
}

}  // namespace
}  // namespace vantrel
