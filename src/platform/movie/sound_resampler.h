#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "platform/movie/av_ptr.h"

extern "C" {
#include <libswresample/swresample.h>
}

namespace vantrel {

using SwrContextPtr = std::unique_ptr<SwrContext, AvDelete<swr_free>>;

/// Turns decoded sound into two interleaved channels of floats at one rate. One thread.
class SoundResampler final {
 public:
  /// In Hz.
  explicit SoundResampler(int sampleRate) : m_sampleRate(sampleRate) {}

  /// Whether what was put in so far has the frame's format.
  [[nodiscard]] bool fits(const AVFrame& frame) const;
  /// Samples of one channel, at the rate of the output, that have gone in and not come out.
  [[nodiscard]] int64_t delay() const;

  /// Starts afresh for sound as in `frame`. Throws std::bad_alloc; false for what it cannot turn.
  [[nodiscard]] bool start(const AVFrame& frame);
  /// Puts in the samples from `begin` to `end` of each channel of a frame that fits, and gives what
  /// comes out.
  [[nodiscard]] std::vector<float> convert(const AVFrame& frame, int begin, int end);
  /// What is left; `start` must follow.
  [[nodiscard]] std::vector<float> finish();

 private:
  [[nodiscard]] std::vector<float> run(const uint8_t** input, int count);

  int m_sampleRate;
  SwrContextPtr m_context;
  int m_inputRate = 0;
  int m_inputFormat = AV_SAMPLE_FMT_NONE;
  int m_inputChannels = 0;
};

}  // namespace vantrel
