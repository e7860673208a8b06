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
  wake();
}

void TrackPace::finish(size_t track) {
  const std::lock_guard lock(m_mutex);
  m_tracks[track].isFinished = true;
  wake();
}

bool TrackPace::mayAdvance(size_t track) const {
  const std::lock_guard lock(m_mutex);
  return isWithin(kLongestLead, m_tracks[track]);
}

bool TrackPace::waitToAdvance(size_t track, const std::stop_token& stop,
                              std::chrono::milliseconds patience) {
  std::unique_lock lock(m_mutex);
  if (isWithin(kLongestLead, m_tracks[track])) return true;
  m_tracks[track].isWaiting = true;
  const bool mayAdvance = m_changed.wait_for(
      lock, stop, patience, [&] { return isWithin(kLeadWhenWoken, m_tracks[track]); });
  m_tracks[track].isWaiting = false;
  return mayAdvance;
}

void TrackPace::wake() {
  const bool isAwaited = std::ranges::any_of(m_tracks, [this](const Track& track) {
    return track.isWaiting && isWithin(kLeadWhenWoken, track);
  });
  if (isAwaited) m_changed.notify_all();
}

bool TrackPace::isWithin(double lead, const Track& track) const {
  return std::ranges::all_of(m_tracks, [&](const Track& other) {
    return other.isFinished || track.seconds - other.seconds < lead;
  });
}

}  // namespace vantrel
