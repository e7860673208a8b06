#include "playback/playback_state.h"

#include <gmock/gmock.h>

#include <QSignalSpy>
#include <cmath>
#include <limits>
#include <memory>

#include "support/fake_player.h"

namespace vantrel {
namespace {

using ::testing::ElementsAre;
using testing::FakePlayer;
using ::testing::IsEmpty;

constexpr double kDuration = 10;

class PlaybackStateTest : public ::testing::Test {
 protected:
  PlaybackStateTest() {
    state.setDuration(kDuration);
    state.connectTo(&player);
    player.log.clear();
  }

  void start() {
    state.togglePlayback();
    ASSERT_TRUE(state.isPlaying());
    player.log.clear();
  }
  void playToTheEnd() {
    start();
    player.time = kDuration;
    player.setRate(0);
    Q_EMIT player.ended();
  }

  FakePlayer player;
  PlaybackState state;
};

TEST_F(PlaybackStateTest, StartsPausedWhereThePlayerIs) {
  FakePlayer other;
  other.time = 3.5;
  state.connectTo(&other);
  EXPECT_EQ(state.player(), &other);
  EXPECT_DOUBLE_EQ(state.position(), 3.5);
  EXPECT_FALSE(state.isPlaying());
}

TEST_F(PlaybackStateTest, ShowsARunningPlayerAsPlayingAtOnce) {
  FakePlayer other;
  other.setRate(1);
  other.setMuted(true);
  state.connectTo(&other);
  EXPECT_TRUE(state.isPlaying());
  EXPECT_TRUE(state.isMuted());
}

TEST_F(PlaybackStateTest, ANewPlayerStartsFromZeroIfItsTimeIsUnknown) {
  Q_EMIT player.timeChanged(4);
  FakePlayer other;
  other.time = std::numeric_limits<double>::quiet_NaN();
  state.connectTo(&other);
  EXPECT_DOUBLE_EQ(state.position(), 0);
}

TEST_F(PlaybackStateTest, ConnectingTheSamePlayerTwiceObservesItOnce) {
  const int observers = player.observers();
  state.connectTo(&player);
  EXPECT_EQ(player.observers(), observers);
}

TEST_F(PlaybackStateTest, AnotherPlayerTakesThePlaceOfTheFirst) {
  FakePlayer other;
  state.connectTo(&other);
  EXPECT_EQ(player.observers(), 0);
  Q_EMIT player.timeChanged(7);
  player.setRate(1);
  EXPECT_DOUBLE_EQ(state.position(), 0);
  EXPECT_FALSE(state.isPlaying());
}

TEST_F(PlaybackStateTest, DisconnectingStopsListeningAndForgetsMuteAndPlaying) {
  player.setMuted(true);
  start();
  state.disconnectPlayer();
  EXPECT_EQ(state.player(), nullptr);
  EXPECT_FALSE(state.isMuted());
  EXPECT_FALSE(state.isPlaying());
  EXPECT_EQ(player.observers(), 0);
  EXPECT_TRUE(player.isMuted());
  EXPECT_DOUBLE_EQ(player.rate(), 1);
}

TEST_F(PlaybackStateTest, ConnectingToNothingDisconnects) {
  Q_EMIT player.timeChanged(4);
  state.connectTo(nullptr);
  EXPECT_EQ(state.player(), nullptr);
  EXPECT_DOUBLE_EQ(state.position(), 0);
  state.togglePlayback();
  state.toggleMute();
  EXPECT_FALSE(state.isPlaying());
  EXPECT_FALSE(state.isMuted());
}

TEST_F(PlaybackStateTest, ThePositionStaysWhenThePlayerIsDisconnected) {
  Q_EMIT player.timeChanged(4);
  state.disconnectPlayer();
  EXPECT_DOUBLE_EQ(state.position(), 4);
}

TEST_F(PlaybackStateTest, APlayerThatIsDestroyedLeavesNothingBehind) {
  auto other = std::make_unique<FakePlayer>();
  state.connectTo(other.get());
  state.setScrubbing(true);
  other.reset();
  state.setScrubbing(false);
  state.togglePlayback();
  EXPECT_EQ(state.player(), nullptr);
}

TEST_F(PlaybackStateTest, FollowsTheTimeOfThePlayer) {
  QSignalSpy changes(&state, &PlaybackState::positionChanged);
  Q_EMIT player.timeChanged(1.25);
  EXPECT_DOUBLE_EQ(state.position(), 1.25);
  Q_EMIT player.timeChanged(std::numeric_limits<double>::infinity());
  EXPECT_DOUBLE_EQ(state.position(), 1.25);
  EXPECT_EQ(changes.count(), 1);
}

TEST_F(PlaybackStateTest, PlaysAndPauses) {
  state.togglePlayback();
  EXPECT_TRUE(state.isPlaying());
  state.togglePlayback();
  EXPECT_FALSE(state.isPlaying());
  EXPECT_THAT(player.log, ElementsAre("play", "pause"));
}

TEST_F(PlaybackStateTest, TheEndShowsTheDurationAndPause) {
  playToTheEnd();
  EXPECT_DOUBLE_EQ(state.position(), kDuration);
  EXPECT_FALSE(state.isPlaying());
}

TEST_F(PlaybackStateTest, PlayingAtTheEndStartsOver) {
  playToTheEnd();
  state.togglePlayback();
  EXPECT_THAT(player.log, ElementsAre("seek 0/600"));
  EXPECT_TRUE(state.isPlaying());
  EXPECT_DOUBLE_EQ(state.position(), kDuration);
  player.land(true);
  EXPECT_THAT(player.log, ElementsAre("seek 0/600", "play"));
  EXPECT_DOUBLE_EQ(state.position(), 0);
  EXPECT_TRUE(state.isPlaying());
}

TEST_F(PlaybackStateTest, PlayingWithinASixHundredthOfTheEndStartsOver) {
  player.time = kDuration - 1.0 / 600;
  state.togglePlayback();
  EXPECT_THAT(player.log, ElementsAre("seek 0/600"));
}

TEST_F(PlaybackStateTest, PlayingJustBeforeTheEndPlaysOn) {
  player.time = kDuration - 1.0 / 300;
  state.togglePlayback();
  EXPECT_THAT(player.log, ElementsAre("play"));
}

TEST_F(PlaybackStateTest, WithoutADurationTheEndIsKnownByItsSignalAlone) {
  state.setDuration(0);
  player.time = 3;
  state.togglePlayback();
  EXPECT_THAT(player.log, ElementsAre("play"));
}

TEST_F(PlaybackStateTest, AStartOverThatDoesNotFinishPauses) {
  playToTheEnd();
  state.togglePlayback();
  player.land(false);
  EXPECT_FALSE(state.isPlaying());
  EXPECT_THAT(player.log, ElementsAre("seek 0/600"));
}

TEST_F(PlaybackStateTest, APressWhileStartingOverPausesForGood) {
  playToTheEnd();
  state.togglePlayback();
  state.togglePlayback();
  EXPECT_FALSE(state.isPlaying());
  player.land(true);
  EXPECT_FALSE(state.isPlaying());
  EXPECT_DOUBLE_EQ(state.position(), kDuration);
  EXPECT_THAT(player.log, ElementsAre("seek 0/600", "pause"));
}

TEST_F(PlaybackStateTest, AStartOverIsForgottenWhenThePlayerGoes) {
  playToTheEnd();
  state.togglePlayback();
  state.disconnectPlayer();
  player.land(true);
  EXPECT_THAT(player.log, ElementsAre("seek 0/600"));
}

TEST_F(PlaybackStateTest, TheButtonShowsPauseWhileStartingOverWhateverTheRateSays) {
  playToTheEnd();
  state.togglePlayback();
  Q_EMIT player.rateChanged();
  EXPECT_TRUE(state.isPlaying());
}

TEST_F(PlaybackStateTest, AStateThatIsGoneIsNotTold) {
  auto other = std::make_unique<PlaybackState>();
  other->setDuration(kDuration);
  player.time = kDuration;
  other->connectTo(&player);
  other->togglePlayback();
  other.reset();
  player.land(true);
  EXPECT_THAT(player.log, ElementsAre("seek 0/600"));
}

TEST_F(PlaybackStateTest, ALoopStartsOverAtTheEnd) {
  state.setLooping(true);
  playToTheEnd();
  EXPECT_THAT(player.log, ElementsAre("seek 0/600"));
  EXPECT_TRUE(state.isPlaying());
  player.land(true);
  EXPECT_THAT(player.log, ElementsAre("seek 0/600", "play"));
  EXPECT_TRUE(state.isPlaying());
  state.togglePlayback();
  player.time = 5;
  player.log.clear();
  state.togglePlayback();
  EXPECT_THAT(player.log, ElementsAre("play")) << "it is no longer at the end";
}

TEST_F(PlaybackStateTest, APauseEndsALoopThatStartsOver) {
  state.setLooping(true);
  playToTheEnd();
  state.togglePlayback();
  player.land(true);
  EXPECT_THAT(player.log, ElementsAre("seek 0/600", "pause"));
  EXPECT_FALSE(state.isPlaying());
}

TEST_F(PlaybackStateTest, ALoopChosenAtTheEndWaitsForTheNext) {
  playToTheEnd();
  state.setLooping(true);
  EXPECT_THAT(player.log, IsEmpty());
}

TEST_F(PlaybackStateTest, TakingHoldOfTheSliderPauses) {
  start();
  state.setScrubbing(true);
  EXPECT_THAT(player.log, ElementsAre("pause"));
  EXPECT_FALSE(state.isPlaying());
}

TEST_F(PlaybackStateTest, TheTimeDoesNotMoveASliderThatIsHeld) {
  state.setScrubbing(true);
  state.setSeekPosition(2);
  Q_EMIT player.timeChanged(7);
  EXPECT_DOUBLE_EQ(state.position(), 2);
}

TEST_F(PlaybackStateTest, EachPositionOfTheSliderIsSought) {
  state.setScrubbing(true);
  player.log.clear();
  state.setSeekPosition(2);
  state.setSeekPosition(2.0005);
  EXPECT_THAT(player.log, ElementsAre("seek 1200/600 untold", "seek 1200/600 untold"));
}

TEST_F(PlaybackStateTest, LettingGoPlaysOnOnlyWhenTheSeekHasLanded) {
  start();
  state.setScrubbing(true);
  state.setSeekPosition(5);
  player.log.clear();
  state.setScrubbing(false);
  EXPECT_THAT(player.log, ElementsAre("seek 3000/600"));
  player.land(true);
  player.land(true);
  EXPECT_THAT(player.log, ElementsAre("seek 3000/600", "play"));
  EXPECT_TRUE(state.isPlaying());
}

TEST_F(PlaybackStateTest, LettingGoOfAPausedMovieLeavesItPaused) {
  state.setScrubbing(true);
  player.log.clear();
  state.setScrubbing(false);
  player.land(true);
  EXPECT_THAT(player.log, ElementsAre("seek 0/600"));
}

TEST_F(PlaybackStateTest, ASeekThatDoesNotFinishStaysPaused) {
  start();
  state.setScrubbing(true);
  state.setScrubbing(false);
  player.log.clear();
  player.land(false);
  EXPECT_THAT(player.log, IsEmpty());
  EXPECT_FALSE(state.isPlaying());
}

TEST_F(PlaybackStateTest, AnOldSeekThatLandsInANewScrubDoesNothing) {
  start();
  state.setScrubbing(true);
  state.setScrubbing(false);
  state.setScrubbing(true);
  player.log.clear();
  player.land(true);
  EXPECT_THAT(player.log, IsEmpty());
  EXPECT_FALSE(state.isPlaying());
}

TEST_F(PlaybackStateTest, AScrubEndsAStartOver) {
  playToTheEnd();
  state.togglePlayback();
  state.setScrubbing(true);
  player.land(true);
  EXPECT_FALSE(state.isPlaying());
  EXPECT_DOUBLE_EQ(player.rate(), 0);
}

TEST_F(PlaybackStateTest, SeekingAfterTheEndLeavesTheEnd) {
  playToTheEnd();
  player.time = 2;
  state.setSeekPosition(2);
  player.log.clear();
  state.togglePlayback();
  EXPECT_THAT(player.log, ElementsAre("play"));
}

TEST_F(PlaybackStateTest, TheSliderKeepsWithinTheMovie) {
  state.setSeekPosition(kDuration + 5);
  EXPECT_DOUBLE_EQ(state.seekPosition(), kDuration);
  state.setSeekPosition(-1);
  EXPECT_DOUBLE_EQ(state.seekPosition(), 0);
  Q_EMIT player.timeChanged(kDuration + 1);
  EXPECT_DOUBLE_EQ(state.seekPosition(), kDuration);
}

TEST_F(PlaybackStateTest, WithoutADurationTheSliderHasAHundredthOfASecond) {
  state.setDuration(0);
  state.setSeekPosition(5);
  EXPECT_DOUBLE_EQ(state.seekPosition(), 0.01);
}

TEST_F(PlaybackStateTest, ADurationThatIsUnknownCountsAsNone) {
  state.setDuration(std::numeric_limits<double>::quiet_NaN());
  EXPECT_DOUBLE_EQ(state.duration(), 0);
}

TEST_F(PlaybackStateTest, SeekingWithoutAPlayerMovesThePositionAlone) {
  state.disconnectPlayer();
  state.setSeekPosition(3);
  EXPECT_DOUBLE_EQ(state.position(), 3);
  EXPECT_EQ(player.unanswered(), 0u);
}

TEST_F(PlaybackStateTest, MutesAndShowsWhatThePlayerThenSays) {
  state.toggleMute();
  EXPECT_TRUE(player.isMuted());
  EXPECT_TRUE(state.isMuted());
  player.obeysMute = false;
  state.toggleMute();
  EXPECT_TRUE(state.isMuted());
}

TEST_F(PlaybackStateTest, FollowsAMuteFromElsewhere) {
  player.setMuted(true);
  EXPECT_TRUE(state.isMuted());
}

TEST_F(PlaybackStateTest, FollowsARateFromElsewhere) {
  player.setRate(1);
  EXPECT_TRUE(state.isPlaying());
  player.setRate(0);
  EXPECT_FALSE(state.isPlaying());
}

}  // namespace
}  // namespace vantrel
