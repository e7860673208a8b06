#include "platform/player/playback_clock.h"

#include <gtest/gtest.h>

namespace vantrel {
namespace {

TEST(PlaybackClock, StandsUntilItRuns) {
  PlaybackClock clock;
  clock.set(3);
  EXPECT_DOUBLE_EQ(clock.time(100), 3);
  clock.run(100);
  EXPECT_TRUE(clock.isRunning());
  EXPECT_DOUBLE_EQ(clock.time(101.5), 4.5);
}

TEST(PlaybackClock, StopsWhereItIs) {
  PlaybackClock clock;
  clock.run(10);
  clock.stop(12);
  EXPECT_FALSE(clock.isRunning());
  EXPECT_DOUBLE_EQ(clock.time(20), 2);
}

TEST(PlaybackClock, RunningTwiceIsRunningOnce) {
  PlaybackClock clock;
  clock.run(10);
  clock.run(15);
  EXPECT_DOUBLE_EQ(clock.time(16), 6);
}

TEST(PlaybackClock, FollowsWhatIsHeardButNeverBack) {
  PlaybackClock clock;
  clock.set(5);
  clock.follow(5.25, 100);
  EXPECT_DOUBLE_EQ(clock.time(100), 5.25);
  clock.follow(5.2, 101);
  EXPECT_DOUBLE_EQ(clock.time(101), 5.25);
}

TEST(PlaybackClock, GoesOnFromWhatWasHeardLast) {
  PlaybackClock clock;
  clock.follow(5, 100);
  clock.run(101);
  EXPECT_DOUBLE_EQ(clock.time(102), 6);
}

TEST(PlaybackClock, ATimeBeforeTheStartIsTheStart) {
  PlaybackClock clock;
  clock.run(100);
  EXPECT_DOUBLE_EQ(clock.time(99), 0);
}

}  // namespace
}  // namespace vantrel
