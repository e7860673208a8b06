#pragma once

#include <cstdint>
#include <optional>

#include "platform/movie/av_ptr.h"

namespace vantrel {

/// Counts the times of packets of sound in ticks of another time base. Where the source's ticks are
/// coarser than a sample, packets that follow each other keep the exact spacing of their samples.
/// Times rise from packet to packet, whatever the source says.
class AudioClock final {
 public:
  AudioClock(const AVCodecParameters& parameters, AVRational timeBase);

  /// Sets the times and the duration of the next packet, whose own count in `source`.
  void convert(AVPacket& packet, AVRational source);

  /// Of the packets so far, in ticks; absent before the first one.
  [[nodiscard]] std::optional<int64_t> start() const { return m_start; }
  /// Where the last packet's shown samples end.
  [[nodiscard]] int64_t end() const { return m_end; }

 private:
  [[nodiscard]] int64_t timeOf(const AVPacket& packet, AVRational source, int samples);

  const AVCodecParameters& m_parameters;
  AVRational m_timeBase{0, 1};
  std::optional<int64_t> m_start;
  int64_t m_last = 0, m_end = 0;
  /// The end of the last packet in samples; AV_NOPTS_VALUE before the first one.
  int64_t m_cadence = AV_NOPTS_VALUE;
};

}  // namespace vantrel
