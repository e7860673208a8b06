#pragma once

#include <cstdint>
#include <mutex>
#include <optional>
#include <vector>

namespace vantrel {

/// Sound on its way from the decoder to the device, with the account of what has been heard: two
/// channels, counted in samples of one channel from the movie's start. Any thread.
class SoundRing final {
 public:
  /// Holds `capacity` samples of each channel.
  explicit SoundRing(int64_t capacity);

  /// Empties it; what comes next stands at `start`.
  void restart(int64_t start);
  /// Samples of a channel that would fit in.
  [[nodiscard]] int64_t room() const;
  /// Where the next sample is to stand that is put in.
  [[nodiscard]] int64_t end() const;
  /// Adds sound that fits; nothing for `samples` null: silence.
  void put(const float* samples, int64_t length);
  /// Nothing more will come: silence follows.
  void finish();

  /// Takes sound out, silence where there is none. `now` is in monotonic seconds.
  void take(float* samples, int64_t length, double now);
  /// What is heard, in samples: what was taken out last begins to be heard when it has been taken
  /// for as long as it lasts. Absent while nothing has been taken since the restart.
  [[nodiscard]] std::optional<double> heard(double now, int sampleRate) const;
  /// Monotonic seconds of the last time that sound was taken.
  [[nodiscard]] std::optional<double> lastTaken() const;

 private:
  mutable std::mutex m_mutex;
  // Under m_mutex.
  std::vector<float> m_samples;
  int64_t m_capacity;
  int64_t m_first = 0;
  /// Of the sample at m_first, and how many there are.
  int64_t m_start = 0, m_length = 0;
  bool m_isFinished = false;
  std::optional<double> m_takenAt;
  /// What the last call of `take` gave of the movie: its place and length.
  int64_t m_takenStart = 0, m_takenLength = 0;
};

}  // namespace vantrel
