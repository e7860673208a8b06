#include "platform/movie/audio_output.h"

#include <utility>

#include "platform/movie/sample_content.h"

namespace vantrel {
namespace {

/// Invalid for what is no time, and for damage.
MediaTime mediaTime(int64_t ticks, AVRational timeBase) {
  const int64_t whole = ticks == AV_NOPTS_VALUE ? INT64_MIN : av_rescale(ticks, timeBase.num, 1);
  if (whole == INT64_MIN) return {};
  return {whole, timeBase.den};
}

void shift(int64_t& time, int64_t ticks) {
  if (time != AV_NOPTS_VALUE) time = av_sat_add64(time, ticks);
}

}  // namespace

AudioOutput::AudioOutput(ReadingState& state, const Movie& movie, const MovieTrack& track)
    : m_state(state), m_demuxer(movie, track, state.stopToken()) {
  m_demuxer.requireWholeFile();
  const AVRational timeBase = m_demuxer.stream().time_base;
  const auto segments = movieSegments(movie, track, timeBase);
  if (!segments.empty()) m_segment = segments.front();
  m_shift = av_rescale_q(movie.startOffset(), {1, AV_TIME_BASE}, timeBase);
}

std::optional<MovieSample> AudioOutput::copyNextSample() {
  if (!m_state.isReading() || m_isCompleted) return {};
  try {
    AvPacketPtr packet = makePacket();
    if (m_demuxer.read(*packet)) return sample(std::move(packet));
  } catch (...) {
    m_state.fail(std::current_exception());
    return {};
  }
  m_isCompleted = true;
  m_state.completeOutput();
  return {};
}

MovieSample AudioOutput::sample(AvPacketPtr packet) const {
  const AVRational timeBase = m_demuxer.stream().time_base;
  int64_t time = packet->pts;
  if (m_segment) shift(time, m_segment->movieStart - m_segment->mediaStart);
  const MediaTime duration = mediaTime(packet->duration, timeBase);
  shift(packet->pts, m_shift);
  shift(packet->dts, m_shift);
  auto content = std::make_unique<MovieSample::Content>();
  content->packet = std::move(packet);
  content->timeBase = timeBase;
  return {mediaTime(time, timeBase), duration.ticks > 0 ? duration : MediaTime{},
          std::move(content)};
}

}  // namespace vantrel
