#pragma once

#include <cmath>
#include <cstdint>

#include "platform/movie/video_picture_reader.h"

namespace vantrel {

/// Behind the last tick at which it is shown, in ticks of its time.
[[nodiscard]] inline int64_t endOf(const TimedVideoPicture& shown) {
  return shown.time.ticks + shown.duration.ticks;
}

[[nodiscard]] inline double endSeconds(const TimedVideoPicture& shown) {
  return MediaTime{endOf(shown), shown.time.timescale}.seconds();
}

/// In nanoseconds, rounded down; zero for what is longer than any movie.
[[nodiscard]] inline MediaTime mediaTime(double seconds) {
  constexpr int32_t kNanoseconds = 1'000'000'000;
  constexpr double kLongest = 1e9;
  if (!(std::abs(seconds) < kLongest)) return {0, kNanoseconds};
  return {static_cast<int64_t>(std::floor(seconds * kNanoseconds)), kNanoseconds};
}

}  // namespace vantrel
