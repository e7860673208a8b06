#pragma once

#include <atomic>
#include <condition_variable>
#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <thread>

#include "platform/movie/movie.h"
#include "platform/movie/sound_reader.h"
#include "platform/player/sound_output.h"
#include "platform/player/sound_ring.h"

namespace vantrel {

/// Decodes the sound of a movie ahead and plays it. Main thread; nothing blocks. Where there is no
/// sound, or none to be had, it is silent, and says so.
class SoundFeed final {
 public:
  enum class State {
    /// Neither started nor stopped yet, or sound is on its way.
    Starting,
    Heard,
    /// No track, no device, a device that has gone, or nothing that can be decoded.
    Silent
  };
  /// As SoundOutput::open.
  using Open = std::function<std::unique_ptr<SoundOutput>(SoundOutput::Fill)>;

  /// How long sound may take to come, and a device to ask for more, in seconds.
  static constexpr double kPatience = 0.5;

  /// `track` absent: always silent.
  SoundFeed(const Movie& movie, std::optional<MovieTrack> track, Open open = &SoundOutput::open);
  ~SoundFeed();
  SoundFeed(const SoundFeed&) = delete;
  SoundFeed& operator=(const SoundFeed&) = delete;

  /// Plays from this time of the movie, in seconds, as soon as sound is there.
  void start(double time);
  void stop();
  void setMuted(bool muted) { m_isMuted = muted; }

  /// Since the last start.
  [[nodiscard]] State state();
  /// Seconds of the movie that are heard at this moment; absent unless Heard. Does not go back
  /// until the next start.
  [[nodiscard]] std::optional<double> time();

 private:
  struct Wish {
    /// Seconds; absent: to be quiet.
    std::optional<double> start;
    /// Grows with each wish.
    int64_t number = 0;
  };

  void wish(std::optional<double> start);
  void run(const std::stop_token& stop);
  void openAll(const std::stop_token& stop);
  void obey(const Wish& wish, const std::stop_token& stop);
  [[nodiscard]] bool isNewest(int64_t wishNumber) const;
  /// Until the ring holds `wanted` samples, or a newer wish comes.
  void fill(int64_t wishNumber, int64_t wanted);
  /// None at the end, and where the file cannot be read on: there silence follows.
  [[nodiscard]] std::optional<SoundBlock> nextBlock();
  void putBlock();
  void give(float* samples, int frames);

  const Movie m_movie;
  const std::optional<MovieTrack> m_track;
  const Open m_open;

  // Main thread.
  double m_startTime = 0, m_startedAt = 0, m_lastTime = 0;
  bool m_isSilent = false;

  // Under m_mutex.
  mutable std::mutex m_mutex;
  std::condition_variable_any m_wished;
  Wish m_wish;

  // Any thread.
  SoundRing m_ring;
  std::atomic<bool> m_isMuted = false;
  std::atomic<bool> m_hasFailed = false;
  /// The device's, in Hz.
  std::atomic<int> m_rate = 1;
  /// The wish that the ring's account belongs to.
  std::atomic<int64_t> m_obeyed = 0;

  // The sound thread.
  std::unique_ptr<SoundReader> m_reader;
  std::unique_ptr<SoundOutput> m_output;
  /// Where the reader is to go before it reads on.
  std::optional<MediaTime> m_sought;
  /// What of the last block has not gone into the ring.
  SoundBlock m_block;
  bool m_isStarted = false, m_isDone = false;

  std::jthread m_thread;
};

}  // namespace vantrel
