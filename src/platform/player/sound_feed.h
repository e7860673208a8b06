#pragma once

#include <optional>

#include "platform/movie/movie.h"

namespace vantrel {

/// Plays no sound yet, and says so. Main thread.
class SoundFeed final {
 public:
  enum class State { Starting, Heard, Silent };

  SoundFeed(const Movie&, std::optional<MovieTrack>) {}

  void start(double) {}
  void stop() {}
  void setMuted(bool) {}
  [[nodiscard]] State state() { return State::Silent; }
  [[nodiscard]] std::optional<double> time() { return {}; }
};

}  // namespace vantrel
