#include "platform/player/playback_clock.h"

#include <algorithm>

namespace vantrel {

double PlaybackClock::time(double now) const {
  return m_since ? m_time + std::max(0.0, now - *m_since) : m_time;
}

void PlaybackClock::set(double time) {
  m_time = time;
  m_since.reset();
}

void PlaybackClock::run(double now) {
  if (!m_since) m_since = now;
}

void PlaybackClock::stop(double now) {
  set(time(now));
}

void PlaybackClock::follow(double heard, double now) {
  m_time = std::max(heard, time(now));
  m_since.reset();
}

}  // namespace vantrel
