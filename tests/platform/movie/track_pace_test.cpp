#include "platform/movie/track_pace.h"

#include <gtest/gtest.h>

#include <chrono>
#include <limits>
#include <stop_token>
#include <thread>

namespace vantrel {
namespace {

TEST(TrackPace, LetsASingleTrackGoOnForever) {
  TrackPace pace;
  const size_t track = pace.add();
  pace.reached(track, 1e9);
  EXPECT_TRUE(pace.mayAdvance(track));
}

TEST(TrackPace, HoldsATrackThatIsASecondAheadUntilTheOthersFollow) {
  TrackPace pace;
  const size_t ahead = pace.add(), behind = pace.add();
  pace.reached(ahead, 0.99);
  EXPECT_TRUE(pace.mayAdvance(ahead));
  pace.reached(ahead, 1.0);
  EXPECT_FALSE(pace.mayAdvance(ahead));
  EXPECT_TRUE(pace.mayAdvance(behind));
  pace.reached(behind, 0.5);
  EXPECT_TRUE(pace.mayAdvance(ahead));
}

TEST(TrackPace, LetsATrackGoOnAsSoonAsTheOthersFollowOrEnd) {
  for (const bool ends : {false, true}) {
    TrackPace pace;
    const size_t ahead = pace.add(), behind = pace.add();
    pace.reached(ahead, 1.0);
    const std::jthread other([&] { ends ? pace.finish(behind) : pace.reached(behind, 0.75); });
    EXPECT_TRUE(pace.waitToAdvance(ahead, {}, std::chrono::hours(1)));
  }
}

TEST(TrackPace, EndsItsWaitOnARequestToStop) {
  TrackPace pace;
  const size_t ahead = pace.add();
  (void)pace.add();
  pace.reached(ahead, 1.0);
  std::stop_source stop;
  const std::jthread other([&stop] { stop.request_stop(); });
  EXPECT_FALSE(pace.waitToAdvance(ahead, stop.get_token(), std::chrono::hours(1)));
}

TEST(TrackPace, WaitsForNoTrackThatIsFinished) {
  TrackPace pace;
  const size_t ahead = pace.add(), ended = pace.add();
  pace.reached(ahead, 60);
  EXPECT_FALSE(pace.mayAdvance(ahead));
  pace.finish(ended);
  EXPECT_TRUE(pace.mayAdvance(ahead));
}

TEST(TrackPace, LearnsNothingFromTimesThatAreNotNumbers) {
  TrackPace pace;
  const size_t track = pace.add();
  const size_t other = pace.add();
  pace.reached(track, std::numeric_limits<double>::quiet_NaN());
  EXPECT_TRUE(pace.mayAdvance(track));
  EXPECT_TRUE(pace.mayAdvance(other));
}

}  // namespace
}  // namespace vantrel
