#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <stop_token>
#include <vector>

#include "platform/movie/media_time.h"

namespace vantrel {

class Movie;
struct MovieTrack;

/// A run of sound as the movie plays it: two channels, left and right in turn, from −1 to 1.
struct SoundBlock {
  /// Of its first sample, counted in samples of one channel from the movie's start.
  int64_t start = 0;
  std::vector<float> samples;

  /// In samples of one channel.
  [[nodiscard]] int64_t length() const { return static_cast<int64_t>(samples.size() / 2); }
  [[nodiscard]] int64_t end() const { return start + length(); }
};

/// The decoded sound of an audio track at one sample rate, edit lists obeyed. Where the movie is
/// silent, between edits or in front of the first, there is no block. One thread at a time; a
/// request to stop may come from any.
class SoundReader final {
 public:
  /// `sampleRate` is that of the blocks, in Hz. Opens the file again. Throws MovieError if nothing
  /// decodes the track, std::system_error or Cancelled.
  SoundReader(const Movie& movie, const MovieTrack& track, int sampleRate,
              const std::stop_token& stop = {});
  ~SoundReader();
  SoundReader(const SoundReader&) = delete;
  SoundReader& operator=(const SoundReader&) = delete;

  /// The next run, at or behind the end of the one before; none at the end. What cannot be decoded
  /// is left out. Throws MovieError for what cannot be read, std::system_error or Cancelled.
  [[nodiscard]] std::optional<SoundBlock> next();

  /// `next` then begins with this time of the movie, to a sample, or else with the first sound
  /// behind it. Throws as `next` does.
  void seek(MediaTime time);

 private:
  class Decoder;
  std::unique_ptr<Decoder> m_decoder;
};

}  // namespace vantrel
