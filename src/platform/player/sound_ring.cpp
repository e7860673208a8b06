#include "platform/player/sound_ring.h"

#include <algorithm>

namespace vantrel {
namespace {

constexpr int kChannels = 2;

size_t floats(int64_t length) {
  return static_cast<size_t>(length * kChannels);
}

}  // namespace

SoundRing::SoundRing(int64_t capacity) : m_samples(floats(capacity)), m_capacity(capacity) {}

void SoundRing::restart(int64_t start) {
  const std::lock_guard lock(m_mutex);
  m_first = m_length = 0;
  m_start = start;
  m_isFinished = false;
  m_takenAt.reset();
}

int64_t SoundRing::room() const {
  const std::lock_guard lock(m_mutex);
  return m_capacity - m_length;
}

int64_t SoundRing::end() const {
  const std::lock_guard lock(m_mutex);
  return m_start + m_length;
}

void SoundRing::put(const float* samples, int64_t length) {
  const std::lock_guard lock(m_mutex);
  for (int64_t done = 0; done < length;) {
    const int64_t place = (m_first + m_length) % m_capacity;
    const int64_t part = std::min(length - done, m_capacity - place);
    float* const target = m_samples.data() + floats(place);
    if (samples) {
      std::copy_n(samples + floats(done), floats(part), target);
    } else {
      std::fill_n(target, floats(part), 0.0F);
    }
    done += part;
    m_length += part;
  }
}

void SoundRing::finish() {
  const std::lock_guard lock(m_mutex);
  m_isFinished = true;
}

void SoundRing::take(float* samples, int64_t length, double now) {
  const std::lock_guard lock(m_mutex);
  const int64_t available = std::min(length, m_length);
  for (int64_t done = 0; done < available;) {
    const int64_t part = std::min(available - done, m_capacity - m_first);
    std::copy_n(m_samples.data() + floats(m_first), floats(part), samples + floats(done));
    m_first = (m_first + part) % m_capacity;
    done += part;
  }
  std::fill_n(samples + floats(available), floats(length - available), 0.0F);
  // A decoder that is late holds the account; the end of the sound does not.
  const int64_t counted = m_isFinished ? length : available;
  m_takenStart = m_start;
  m_takenLength = counted;
  m_start += counted;
  m_length -= available;
  // Until there has been sound, nothing is heard.
  if (m_takenAt || counted > 0) m_takenAt = now;
}

std::optional<double> SoundRing::heard(double now, int sampleRate) const {
  const std::lock_guard lock(m_mutex);
  if (!m_takenAt) return {};
  const auto length = static_cast<double>(m_takenLength);
  const double passed = std::clamp((now - *m_takenAt) * sampleRate, 0.0, length);
  return static_cast<double>(m_takenStart) - length + passed;
}

std::optional<double> SoundRing::lastTaken() const {
  const std::lock_guard lock(m_mutex);
  return m_takenAt;
}

}  // namespace vantrel
