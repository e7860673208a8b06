#include "platform/movie/audio_clock.h"

extern "C" {
#include <libavutil/intreadwrite.h>
#include <libavutil/mathematics.h>
}

#include <algorithm>
#include <limits>

namespace vantrel {
namespace {

/// Damage alone explains times beyond this many ticks.
constexpr int64_t kMostTicks = int64_t{1} << 55;

/// What the muxer takes of one packet, in ticks.
constexpr int64_t kLongestDuration = std::numeric_limits<int32_t>::max();

/// Samples at a packet's end that are not to be heard (the second number of the record).
int64_t discardedAtEnd(const AVPacket& packet) {
  size_t size = 0;
  const uint8_t* record = av_packet_get_side_data(&packet, AV_PKT_DATA_SKIP_SAMPLES, &size);
  return record && size >= 8 ? AV_RL32(record + 4) : 0;
}

}  // namespace

AudioClock::AudioClock(const AVCodecParameters& parameters, AVRational timeBase)
    : m_parameters(parameters), m_timeBase(timeBase) {}

void AudioClock::convert(AVPacket& packet, AVRational source) {
  const AVRational sampleTime{1, m_parameters.sample_rate};
  // FFmpeg's header lets the function change what it only reads.
  const int samples =
      av_get_audio_frame_duration2(const_cast<AVCodecParameters*>(&m_parameters), packet.size);
  int64_t time = timeOf(packet, source, samples);
  if (time < -kMostTicks || time > kMostTicks) time = m_end;
  if (m_start) time = std::max(time, m_last + 1);
  const int64_t duration = av_rescale_q(packet.duration, source, m_timeBase);
  const bool isBelievable = duration > 0 && duration <= kLongestDuration;
  packet.duration = isBelievable ? duration : av_rescale_q(samples, sampleTime, m_timeBase);
  // A last packet without a duration would not be heard: it lasts as long as the one before.
  if (packet.duration <= 0 && m_start) packet.duration = std::min(time - m_last, kLongestDuration);
  packet.pts = packet.dts = time;
  if (!m_start) m_start = time;
  m_last = time;
  const int64_t discarded = av_rescale_q(discardedAtEnd(packet), sampleTime, m_timeBase);
  m_end = std::max(time + 1, time + packet.duration - discarded);
}

/// In ticks; that of an unbroken stream where the packet tells none.
int64_t AudioClock::timeOf(const AVPacket& packet, AVRational source, int samples) {
  const int64_t time = packet.pts != AV_NOPTS_VALUE ? packet.pts : packet.dts;
  if (time < -kMostTicks || time > kMostTicks) return m_end;
  if (samples <= 0) return av_rescale_q(time, source, m_timeBase);
  const AVRational sampleTime{1, m_parameters.sample_rate};
  return av_rescale_delta(source, time, sampleTime, samples, &m_cadence, m_timeBase);
}

}  // namespace vantrel
