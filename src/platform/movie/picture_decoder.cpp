#include "platform/movie/picture_decoder.h"

#include <algorithm>
#include <cmath>

namespace vantrel {
namespace {

/// Seconds of pictures that are decoded in vain rather than sought past, at the start.
constexpr int64_t kNotWorthSeeking = 1;

void setDuration(AVFrame& frame, int64_t duration) {
#if LIBAVUTIL_VERSION_INT >= AV_VERSION_INT(57, 30, 100)
  frame.duration = duration;
#else
  frame.pkt_duration = duration;
#endif
}

/// Ticks of the stream that a picture lasts on average; 0 if unknown.
int64_t averageDuration(const MovieTrack& track, AVRational timeBase) {
  if (track.nominalFrameRate <= 0) return 0;
  return std::llround(1 / (track.nominalFrameRate * av_q2d(timeBase)));
}

/// Where the last picture ends, in ticks of the stream; AV_NOPTS_VALUE, which is before all
/// pictures, if the container does not say.
int64_t mediaEnd(const MovieTrack& track, AVRational timeBase) {
  const MediaTime end = track.mediaEnd;
  return end.isValid() ? av_rescale_q(end.ticks, {1, end.timescale}, timeBase) : AV_NOPTS_VALUE;
}

}  // namespace

PictureDecoder::PictureDecoder(const Movie& movie, const MovieTrack& track,
                               const std::stop_token& stop)
    : m_frames(movie, track, stop),
      m_segments(movieSegments(movie, track, m_frames.stream().time_base)),
      m_averageDuration(averageDuration(track, m_frames.stream().time_base)),
      m_mediaEnd(mediaEnd(track, m_frames.stream().time_base)) {}

std::optional<DecodedPicture> PictureDecoder::next() {
  for (; m_segment < m_segments.size(); ++m_segment) {
    if (!m_isInSegment) enterSegment(m_segments[m_segment].mediaStart);
    if (auto picture = nextInSegment()) return picture;
    m_isInSegment = false;
  }
  m_frames.requireFewLost();
  return {};
}

void PictureDecoder::seek(MediaTime time, MediaTime lead) {
  if (m_segments.empty()) return;
  const AVRational timeBase = m_frames.stream().time_base;
  const int64_t wanted = av_rescale_q_rnd(time.ticks, {1, time.timescale}, timeBase, AV_ROUND_DOWN);
  const int64_t before = av_rescale_q(lead.ticks, {1, lead.timescale}, timeBase);
  const auto behind =
      std::find_if(m_segments.begin(), m_segments.end(),
                   [wanted](const MovieSegment& segment) { return segment.movieStart > wanted; });
  const auto index = static_cast<size_t>(std::max<ptrdiff_t>(0, behind - m_segments.begin() - 1));
  const MovieSegment& segment = m_segments[index];
  int64_t mediaTime = segment.mediaStart + std::max<int64_t>(0, wanted - segment.movieStart);
  if (segment.hasEnd()) {
    const int64_t latest = segment.mediaEnd - segment.tolerance - 1;
    mediaTime = std::min(mediaTime, std::max(segment.mediaStart, latest));
  }
  if (segment.isFrozen) mediaTime = segment.mediaStart;
  m_wantedFrom = wanted - before;
  m_soughtTime = mediaTime;
  const bool goesOn = canGoOnTo(index, mediaTime);
  m_frames.passOverUntil(mediaTime - before);
  if (goesOn) return;
  m_segment = index;
  approach(mediaTime);
}

bool PictureDecoder::canGoOnTo(size_t segment, int64_t mediaTime) const {
  return m_isInSegment && m_segment == segment && !m_segments[segment].isFrozen && m_ahead &&
         m_ahead->pts <= mediaTime && !hasMissedBehind(*m_ahead) &&
         !m_frames.isSeekShorter(m_ahead->pts, mediaTime);
}

bool PictureDecoder::hasMissedBehind(const AVFrame& frame) const {
  return m_frames.latestPassedOver() > frame.pts;
}

void PictureDecoder::enterSegment(int64_t mediaTime) {
  m_frames.passOverUntil(INT64_MIN);
  approach(mediaTime);
}

void PictureDecoder::approach(int64_t mediaTime) {
  // Also when this throws.
  m_isInSegment = false;
  m_ahead.reset();
  const AVStream& stream = m_frames.stream();
  const int64_t ahead = mediaTime - (stream.start_time == AV_NOPTS_VALUE ? 0 : stream.start_time);
  const bool isNear = av_compare_ts(ahead, stream.time_base, kNotWorthSeeking, {1, 1}) <= 0;
  if (!m_isAtStart || !isNear) m_frames.seek(mediaTime);
  m_isAtStart = false;
  m_ahead = m_frames.next();
  m_isInSegment = true;
}

std::optional<DecodedPicture> PictureDecoder::nextInSegment() {
  const MovieSegment& segment = m_segments[m_segment];
  while (m_ahead) {
    AvFramePtr frame = std::move(m_ahead);
    const int64_t start = frame->pts;
    // What begins within the doubt about the end belongs to what follows.
    if (segment.hasEnd() && start > segment.mediaStart &&
        start >= segment.mediaEnd - segment.tolerance) {
      break;
    }
    m_ahead = m_frames.next();
    const bool isLast = !m_ahead;
    const auto time =
        shown({start, isLast ? start + durationOfLast(*frame) : m_ahead->pts}, isLast);
    if (!time || time->end <= m_wantedFrom) continue;
    if (hasMissedBehind(*frame)) {
      // Its packets tell other durations than its times.
      enterSegment(m_soughtTime);
      continue;
    }
    if (segment.isFrozen) m_ahead.reset();
    return picture(std::move(frame), *time);
  }
  return {};
}

std::optional<PictureDecoder::Span> PictureDecoder::shown(Span media, bool isLast) const {
  const MovieSegment& segment = m_segments[m_segment];
  if (media.end <= segment.mediaStart) return {};
  if (segment.hasEnd()) {
    // An end in the movie's coarser ticks that is only rounded leaves the picture its own.
    const int64_t excess = media.end - segment.mediaEnd;
    const bool isTooLong = excess > segment.tolerance;
    const bool isTooShort = isLast && excess < -segment.tolerance;
    if (isTooLong || isTooShort || segment.isFrozen) media.end = segment.mediaEnd;
  }
  Span time{segment.toMovie(std::max(media.start, segment.mediaStart)), segment.toMovie(media.end)};
  if (m_segment + 1 < m_segments.size()) {
    time.end = std::min(time.end, m_segments[m_segment + 1].movieStart);
  }
  if (time.end <= time.start) return {};
  return time;
}

int64_t PictureDecoder::durationOfLast(const AVFrame& frame) const {
  if (m_mediaEnd > frame.pts) return m_mediaEnd - frame.pts;
  const int64_t duration = FrameDecoder::durationOf(frame);
  return std::max<int64_t>(1, duration > 0 ? duration : m_averageDuration);
}

DecodedPicture PictureDecoder::picture(AvFramePtr frame, Span movieTime) const {
  const AVRational timeBase = m_frames.stream().time_base;
  const auto inSeconds = [timeBase](int64_t ticks) {
    return MediaTime{av_rescale(ticks, timeBase.num, 1), timeBase.den};
  };
  DecodedPicture result;
  result.time = inSeconds(movieTime.start);
  result.duration = inSeconds(movieTime.end - movieTime.start);
  frame->pts = result.time.ticks;
  setDuration(*frame, result.duration.ticks);
  result.frame = std::move(frame);
  return result;
}

}  // namespace vantrel
