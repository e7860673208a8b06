#pragma once

#include <optional>

namespace vantrel {

/// Tells where in the movie the playback stands: it goes on with a monotonic clock, or with what is
/// heard. A plain value, fed with monotonic seconds.
class PlaybackClock final {
 public:
  [[nodiscard]] bool isRunning() const { return m_since.has_value(); }
  /// Seconds of the movie.
  [[nodiscard]] double time(double now) const;

  /// Stands still there.
  void set(double time);
  /// Goes on from where it stands.
  void run(double now);
  void stop(double now);
  /// What is heard leads: goes on from `heard`, but never back.
  void follow(double heard, double now);

 private:
  double m_time = 0;
  /// Since when it has gone on from there; absent while it stands.
  std::optional<double> m_since;
};

}  // namespace vantrel
