#include "platform/movie/sound_reader.h"

#include <algorithm>
#include <cstdlib>

#include "platform/movie/movie_segments.h"
#include "platform/movie/sound_decoder.h"
#include "platform/movie/sound_resampler.h"

namespace vantrel {
namespace {

/// Times that differ from the count of samples by less than this part of a second are rounding, as
/// of Matroska's milliseconds.
constexpr int kToleratedPart = 50;

/// Seconds of sound that are decoded in vain rather than sought past, at the start.
constexpr int64_t kNotWorthSeeking = 1;

}  // namespace

class SoundReader::Decoder {
 public:
  Decoder(const Movie& movie, const MovieTrack& track, int sampleRate, const std::stop_token& stop)
      : m_sound(movie, track, stop),
        m_segments(movieSegments(movie, track, m_sound.stream().time_base)),
        m_sampleRate(sampleRate),
        m_resampler(sampleRate) {}

  std::optional<SoundBlock> next() {
    for (; m_segment < m_segments.size(); ++m_segment) {
      if (m_segments[m_segment].isFrozen) continue;
      if (!m_isInSegment) enterSegment(m_segments[m_segment].mediaStart);
      if (auto block = nextInSegment()) return block;
      m_isInSegment = false;
    }
    return {};
  }

  void seek(MediaTime time) {
    const int64_t wanted =
        av_rescale_q_rnd(time.ticks, {1, time.timescale}, timeBase(), AV_ROUND_NEAR_INF);
    const auto behind = std::ranges::find_if(
        m_segments, [&](const MovieSegment& segment) { return segment.movieStart > wanted; });
    m_segment = static_cast<size_t>(std::max<ptrdiff_t>(0, behind - m_segments.begin() - 1));
    if (m_segment >= m_segments.size()) return;
    const MovieSegment& segment = m_segments[m_segment];
    m_next = 0;
    enterSegment(segment.mediaStart + std::max<int64_t>(0, wanted - segment.movieStart));
  }

 private:
  [[nodiscard]] AVRational timeBase() const { return m_sound.stream().time_base; }
  [[nodiscard]] int64_t samples(int64_t ticks) const {
    return av_rescale_q(ticks, timeBase(), {1, m_sampleRate});
  }

  void enterSegment(int64_t mediaTime) {
    const bool isNear = av_compare_ts(mediaTime, timeBase(), kNotWorthSeeking, {1, 1}) <= 0;
    if (!m_isAtStart || !isNear) m_sound.seek(mediaTime);
    m_isAtStart = false;
    m_from = mediaTime;
    m_isInSegment = true;
    m_isRunning = false;
  }

  std::optional<SoundBlock> nextInSegment() {
    const MovieSegment& segment = m_segments[m_segment];
    while (AvFramePtr frame = m_sound.next()) {
      if (segment.hasEnd() && frame->pts >= segment.mediaEnd) break;
      if (auto block = convert(*frame, segment)) return block;
    }
    if (!m_isRunning) return {};
    m_isRunning = false;
    return blockOf(m_resampler.finish());
  }

  /// None where nothing of the frame is heard, or nothing comes out yet.
  std::optional<SoundBlock> convert(const AVFrame& frame, const MovieSegment& segment) {
    const AVRational tick{1, frame.sample_rate};
    const auto sampleAt = [&](int64_t time) {
      return std::clamp<int64_t>(av_rescale_q(time - frame.pts, timeBase(), tick), 0,
                                 frame.nb_samples);
    };
    const auto begin = static_cast<int>(sampleAt(m_from));
    const auto end =
        static_cast<int>(segment.hasEnd() ? sampleAt(segment.mediaEnd) : frame.nb_samples);
    if (begin >= end) return {};
    const int64_t time = frame.pts + av_rescale_q(begin, tick, timeBase());
    const int64_t start = samples(segment.toMovie(time));
    if (!m_isRunning || !m_resampler.fits(frame) ||
        std::abs(start - m_next - m_resampler.delay()) > m_sampleRate / kToleratedPart) {
      m_isRunning = m_resampler.start(frame);
      if (!m_isRunning) return {};
      m_next = std::max(start, m_next);
    }
    return blockOf(m_resampler.convert(frame, begin, end));
  }

  std::optional<SoundBlock> blockOf(std::vector<float> sound) {
    if (sound.empty()) return {};
    SoundBlock block{m_next, std::move(sound)};
    m_next = block.end();
    return block;
  }

  SoundDecoder m_sound;
  std::vector<MovieSegment> m_segments;
  int m_sampleRate;
  SoundResampler m_resampler;

  /// Whether the decoder is where the track begins.
  bool m_isAtStart = true;
  size_t m_segment = 0;
  bool m_isInSegment = false;
  /// What lies before this time of the media is not wanted.
  int64_t m_from = 0;
  /// Whether the resampler goes on from the frame before.
  bool m_isRunning = false;
  /// Where the next sample stands that comes out.
  int64_t m_next = 0;
};

SoundReader::SoundReader(const Movie& movie, const MovieTrack& track, int sampleRate,
                         const std::stop_token& stop)
    : m_decoder(std::make_unique<Decoder>(movie, track, sampleRate, stop)) {}

SoundReader::~SoundReader() = default;

std::optional<SoundBlock> SoundReader::next() {
  return m_decoder->next();
}

void SoundReader::seek(MediaTime time) {
  m_decoder->seek(time);
}

}  // namespace vantrel
