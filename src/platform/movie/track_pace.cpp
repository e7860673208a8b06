#include "platform/movie/track_pace.h"

#include <algorithm>
#include <cmath>

namespace vantrel {

size_t TrackPace::add() {
  const std::lock_guard lock(m_mutex);
  m_tracks.emplace_back();
  return m_tracks.size() - 1;
}

void TrackPace::reached(size_t track, double seconds) {
  if (!std::isfinite(seconds)) return;
  const std::lock_guard lock(m_mutex);
  m_tracks[track].seconds = seconds;
  m_changed.notify_all();
}

void TrackPace::finish(size_t track) {
  const std::lock_guard lock(m_mutex);
  m_tracks[track].isFinished = true;
  m_changed.notify_all();
}

bool TrackPace::mayAdvance(size_t track, std::chrono::milliseconds patience) const {
  std::unique_lock lock(m_mutex);
  return m_changed.wait_for(lock, patience, [&] { return isInPace(track); });
}

bool TrackPace::isInPace(size_t track) const {
  const double seconds = m_tracks[track].seconds;
  return std::all_of(m_tracks.begin(), m_tracks.end(), [seconds](const Track& other) {
    return other.isFinished || seconds - other.seconds < kLongestLead;
  });
}

}  // namespace vantrel
