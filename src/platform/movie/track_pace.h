#pragma once

#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <mutex>
#include <vector>

namespace vantrel {

/// Keeps the tracks of a movie that is being written together in time, so that their samples lie
/// close to each other in the file. The track that is furthest behind may always go on. Any thread.
class TrackPace final {
 public:
  /// How long an input waits until it says that it is not ready: asking again and again every few
  /// milliseconds costs processor time, and waiting for long keeps what is cancelled from ending.
  static constexpr std::chrono::milliseconds kPatience{20};
  /// How far a track may be ahead of the others that are not finished, in seconds.
  static constexpr double kLongestLead = 1.0;

  /// Adds a track that stands at the movie's start, and gives its number.
  [[nodiscard]] size_t add();
  /// A time that is not finite tells nothing.
  void reached(size_t track, double seconds);
  void finish(size_t track);

  /// Whether the track may go on, now or within the time given.
  [[nodiscard]] bool mayAdvance(size_t track, std::chrono::milliseconds patience = {}) const;

 private:
  struct Track {
    double seconds = 0;
    bool isFinished = false;
  };
  [[nodiscard]] bool isInPace(size_t track) const;

  mutable std::mutex m_mutex;
  mutable std::condition_variable m_changed;
  std::vector<Track> m_tracks;
};

}  // namespace vantrel
