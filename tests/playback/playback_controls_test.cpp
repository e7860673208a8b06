#include "playback/playback_controls.h"

#include <gmock/gmock.h>

#include <QLabel>
#include <QSlider>
#include <QTest>
#include <QToolButton>

#include "playback/playback_state.h"
#include "support/fake_player.h"

namespace vantrel {
namespace {

using ::testing::Contains;
using ::testing::ElementsAre;
using testing::FakePlayer;

class PlaybackControlsTest : public ::testing::Test {
 protected:
  void open() {
    controls.resize(650, 18);
    controls.setPlayer(&player, 45);
    controls.show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&controls));
  }
  static void click(QWidget* widget) { QTest::mouseClick(widget, Qt::LeftButton); }

  FakePlayer player;
  PlaybackControls controls;
};

TEST_F(PlaybackControlsTest, IsDisabledWithoutAPlayer) {
  EXPECT_FALSE(controls.isEnabled());
  EXPECT_EQ(controls.time()->text(), QStringLiteral("0.0 / 0.0 s"));
  EXPECT_EQ(controls.slider()->maximum(), 6);
  open();
  EXPECT_TRUE(controls.isEnabled());
  controls.setPlayer(nullptr, 0);
  EXPECT_FALSE(controls.isEnabled());
  EXPECT_EQ(player.observers(), 0);
}

TEST_F(PlaybackControlsTest, StandsInOneRow) {
  open();
  EXPECT_EQ(controls.playButton()->size(), QSize(18, 18));
  EXPECT_EQ(controls.muteButton()->size(), QSize(18, 18));
  EXPECT_EQ(controls.slider()->x() - controls.playButton()->geometry().right() - 1, 8);
  EXPECT_LT(controls.slider()->x(), controls.time()->x());
  EXPECT_LT(controls.time()->x(), controls.muteButton()->x());
}

TEST_F(PlaybackControlsTest, ShowsTheTimeWithOneDigit) {
  open();
  Q_EMIT player.timeChanged(12.25);
  EXPECT_EQ(controls.time()->text(), QStringLiteral("12.3 / 45.0 s"));
  EXPECT_EQ(controls.slider()->value(), 12.25 * 600);
  EXPECT_EQ(controls.slider()->maximum(), 45 * 600);
  EXPECT_TRUE(player.log.empty());
}

TEST_F(PlaybackControlsTest, NamesItsPartsToAssistiveTools) {
  open();
  EXPECT_EQ(controls.playButton()->accessibleName(), QStringLiteral("Play"));
  EXPECT_EQ(controls.slider()->accessibleName(), QStringLiteral("Playback position"));
  EXPECT_EQ(controls.muteButton()->accessibleName(), QStringLiteral("Mute"));
  EXPECT_EQ(controls.muteButton()->toolTip(), QStringLiteral("Mute"));
  EXPECT_EQ(controls.playButton()->toolTip(), QString());
  click(controls.playButton());
  click(controls.muteButton());
  EXPECT_EQ(controls.playButton()->accessibleName(), QStringLiteral("Pause"));
  EXPECT_EQ(controls.muteButton()->accessibleName(), QStringLiteral("Unmute"));
  EXPECT_EQ(controls.muteButton()->toolTip(), QStringLiteral("Unmute"));
  EXPECT_TRUE(player.isMuted());
}

TEST_F(PlaybackControlsTest, TheSliderScrubs) {
  open();
  click(controls.playButton());
  player.log.clear();
  QSlider* const slider = controls.slider();
  const QPoint start(slider->height() / 2, slider->height() / 2);
  QTest::mousePress(slider, Qt::LeftButton, {}, start);
  QTest::mouseMove(slider, start + QPoint(100, 0));
  EXPECT_THAT(player.log, Contains("pause"));
  EXPECT_THAT(player.log.back(), ::testing::EndsWith("untold"));
  const QString time = controls.time()->text();
  Q_EMIT player.timeChanged(40);
  EXPECT_EQ(controls.time()->text(), time);
  player.log.clear();
  QTest::mouseRelease(slider, Qt::LeftButton, {}, start + QPoint(100, 0));
  ASSERT_EQ(player.log.size(), 1u);
  EXPECT_THAT(player.log[0], ::testing::Not(::testing::EndsWith("untold")));
}

TEST_F(PlaybackControlsTest, AnArrowKeySeeksATenthOfASecond) {
  open();
  QTest::keyClick(controls.slider(), Qt::Key_Right);
  EXPECT_THAT(player.log, ElementsAre("seek 60/600 untold"));
}

TEST_F(PlaybackControlsTest, ListensToThePlayerOnlyWhileItIsShown) {
  open();
  EXPECT_EQ(player.observers(), 1);
  player.setRate(1);
  controls.hide();
  EXPECT_EQ(player.observers(), 0);
  EXPECT_DOUBLE_EQ(player.rate(), 1);
  controls.show();
  EXPECT_EQ(player.observers(), 1);
  EXPECT_TRUE(controls.playback()->isPlaying());
}

TEST_F(PlaybackControlsTest, FollowsAChangedDuration) {
  open();
  controls.setPlayer(&player, 5);
  EXPECT_EQ(controls.time()->text(), QStringLiteral("0.0 / 5.0 s"));
}

}  // namespace
}  // namespace vantrel
