#pragma once

#include <cstddef>
#include <mutex>
#include <vector>

namespace vantrel {

/// Keeps the tracks of a movie that is being written together in time, so that their samples lie
/// close to each other in the file. The track that is furthest behind may always go on. Any thread.
class TrackPace final {
 public:
  /// How far a track may be ahead of the others that are not finished, in seconds.
  static constexpr double kLongestLead = 1.0;

  /// Adds a track that stands at the movie's start, and gives its number.
  [[nodiscard]] size_t add();
  /// A time that is not finite tells nothing.
  void reached(size_t track, double seconds);
  void finish(size_t track);

  [[nodiscard]] bool mayAdvance(size_t track) const;

 private:
  struct Track {
    double seconds = 0;
    bool isFinished = false;
  };
  mutable std::mutex m_mutex;
  std::vector<Track> m_tracks;
};

}  // namespace vantrel
