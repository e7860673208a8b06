#include "playback/zoom_controls.h"

#include <gmock/gmock.h>

#include <QPushButton>
#include <QSignalSpy>
#include <QSlider>
#include <QTest>
#include <QToolButton>

#include "platform/desktop/key_names.h"

namespace vantrel {
namespace {

class ZoomControlsTest : public ::testing::Test {
 protected:
  void SetUp() override {
    controls.show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&controls));
  }

  ZoomControls controls{0.1, 10};
};

TEST_F(ZoomControlsTest, StandsInOneRow) {
  EXPECT_EQ(controls.zoomOutButton()->size(), QSize(24, 24));
  EXPECT_EQ(controls.zoomInButton()->size(), QSize(24, 24));
  EXPECT_EQ(controls.slider()->width(), 160);
  EXPECT_EQ(controls.percentageButton()->width(), 64);
  EXPECT_GE(controls.fitButton()->width(), 48);
  const auto gap = [](const QWidget* left, const QWidget* right) {
    return right->x() - left->x() - left->width();
  };
  EXPECT_EQ(gap(controls.zoomOutButton(), controls.slider()), 6);
  EXPECT_EQ(gap(controls.slider(), controls.zoomInButton()), 6);
  EXPECT_EQ(gap(controls.zoomInButton(), controls.percentageButton()), 12);
  EXPECT_EQ(gap(controls.percentageButton(), controls.fitButton()), 12);
}

TEST_F(ZoomControlsTest, ShowsThePercentageRoundedAwayFromZero) {
  EXPECT_EQ(ZoomControls::percentage(0.125), QStringLiteral("13%"));
  EXPECT_EQ(ZoomControls::percentage(0.1), QStringLiteral("10%"));
  EXPECT_EQ(ZoomControls::percentage(10), QStringLiteral("1000%"));
  controls.setZoom(0.5208);
  EXPECT_EQ(controls.percentageButton()->text(), QStringLiteral("52%"));
}

TEST_F(ZoomControlsTest, StepsEndAtTheEndsOfTheRange) {
  controls.setZoom(0.1);
  EXPECT_FALSE(controls.zoomOutButton()->isEnabled());
  EXPECT_TRUE(controls.zoomInButton()->isEnabled());
  controls.setZoom(0.10001);
  EXPECT_TRUE(controls.zoomOutButton()->isEnabled());
  controls.setZoom(10);
  EXPECT_FALSE(controls.zoomInButton()->isEnabled());
  EXPECT_TRUE(controls.zoomOutButton()->isEnabled());
}

TEST_F(ZoomControlsTest, TellsWhatTheUserWants) {
  QSignalSpy steps(&controls, &ZoomControls::stepRequested);
  QSignalSpy actual(&controls, &ZoomControls::actualSizeRequested);
  QSignalSpy fits(&controls, &ZoomControls::fitRequested);
  QTest::mouseClick(controls.zoomOutButton(), Qt::LeftButton);
  QTest::mouseClick(controls.zoomInButton(), Qt::LeftButton);
  QTest::mouseClick(controls.percentageButton(), Qt::LeftButton);
  QTest::mouseClick(controls.fitButton(), Qt::LeftButton);
  ASSERT_EQ(steps.count(), 2);
  EXPECT_FALSE(steps[0][0].toBool());
  EXPECT_TRUE(steps[1][0].toBool());
  EXPECT_EQ(actual.count(), 1);
  EXPECT_EQ(fits.count(), 1);
}

TEST_F(ZoomControlsTest, TheSliderChoosesAZoomLinearly) {
  QSignalSpy chosen(&controls, &ZoomControls::zoomChosen);
  controls.setZoom(2);
  EXPECT_EQ(chosen.count(), 0);
  EXPECT_EQ(controls.slider()->minimum(), 100);
  EXPECT_EQ(controls.slider()->maximum(), 10000);
  EXPECT_EQ(controls.slider()->value(), 2000);
  QTest::keyClick(controls.slider(), Qt::Key_Right);
  ASSERT_EQ(chosen.count(), 1);
  EXPECT_DOUBLE_EQ(chosen[0][0].toDouble(), 2.01);
}

TEST_F(ZoomControlsTest, IsExplainedByTooltips) {
  EXPECT_EQ(controls.zoomOutButton()->toolTip(), QStringLiteral("Zoom out"));
  EXPECT_EQ(controls.zoomOutButton()->accessibleName(), QStringLiteral("Zoom out"));
  EXPECT_EQ(controls.zoomInButton()->toolTip(), QStringLiteral("Zoom in"));
  EXPECT_EQ(controls.zoomInButton()->accessibleName(), QStringLiteral("Zoom in"));
  EXPECT_EQ(controls.slider()->toolTip(), QStringLiteral("Adjust canvas zoom"));
  EXPECT_EQ(controls.slider()->accessibleName(), QStringLiteral("Canvas zoom"));
  EXPECT_EQ(
      controls.percentageButton()->toolTip(),
      QStringLiteral("Actual size (%1)").arg(keyText(QKeySequence(QStringLiteral("Ctrl+1")))));
  EXPECT_EQ(
      controls.fitButton()->toolTip(),
      QStringLiteral("Fit to window (%1)").arg(keyText(QKeySequence(QStringLiteral("Ctrl+0")))));
}

TEST_F(ZoomControlsTest, IsDisabledAsAWhole) {
  controls.setEnabled(false);
  const QList<QWidget*> items{controls.zoomOutButton(), controls.slider(), controls.zoomInButton(),
                              controls.percentageButton(), controls.fitButton()};
  for (const QWidget* item : items)
    EXPECT_FALSE(item->isEnabled());
}

}  // namespace
}  // namespace vantrel
