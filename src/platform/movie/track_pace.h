#pragma once

#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <mutex>
#include <stop_token>
#include <vector>

namespace vantrel {

/// Keeps the tracks of a movie that is being written together in time, so that their samples lie
/// close to each other in the file. The track that is furthest behind may always go on. Any thread.
class TrackPace final {
 public:
  /// How long an input waits until it says that it is not ready: asking again and again every few
  /// milliseconds costs processor time.
  static constexpr std::chrono::milliseconds kPatience{100};
  /// How far a track may be ahead of the others that are not finished, in seconds.
  static constexpr double kLongestLead = 1.0;
  /// How far at most it is ahead when it is woken: one sample at a time is not worth it.
  static constexpr double kLeadWhenWoken = 0.5;

  /// Adds a track that stands at the movie's start, and gives its number.
  [[nodiscard]] size_t add();
  /// A time that is not finite tells nothing.
  void reached(size_t track, double seconds);
  void finish(size_t track);

  [[nodiscard]] bool mayAdvance(size_t track) const;
  /// Waits until it may, for so long at most. False too once there is a request to stop.
  [[nodiscard]] bool waitToAdvance(size_t track, const std::stop_token& stop,
                                   std::chrono::milliseconds patience = kPatience);

 private:
  struct Track {
    double seconds = 0;
    bool isFinished = false;
    bool isWaiting = false;
  };
  [[nodiscard]] bool isWithin(double lead, const Track& track) const;
  void wake();

  mutable std::mutex m_mutex;
  std::condition_variable_any m_changed;
  // Under m_mutex.
  std::vector<Track> m_tracks;
};

}  // namespace vantrel
