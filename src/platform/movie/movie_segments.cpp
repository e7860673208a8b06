#include "platform/movie/movie_segments.h"

#include <algorithm>

namespace vantrel {
namespace {

/// More than any real film, and far enough from the limits of its type for sums.
constexpr int64_t kLongest = int64_t{1} << 52;

int64_t bounded(int64_t ticks) {
  return std::clamp(ticks, -kLongest, kLongest);
}

MovieSegment wholeMedia(const Movie& movie, AVRational timeBase) {
  MovieSegment segment;
  segment.mediaStart = bounded(-av_rescale_q(movie.startOffset(), {1, AV_TIME_BASE}, timeBase));
  return segment;
}

}  // namespace

std::vector<MovieSegment> movieSegments(const Movie& movie, const MovieTrack& track,
                                        AVRational timeBase) {
  const auto& edits = track.quickTime ? track.quickTime->edits : std::vector<QuickTimeEdit>();
  if (edits.empty() || movie.timescale() <= 0) return {wholeMedia(movie, timeBase)};
  const AVRational movieTick{1, movie.timescale()};
  // Ticks of the stream in one of the movie, rounded up.
  const int64_t coarseness =
      av_rescale_q_rnd(1, movieTick, timeBase, static_cast<AVRounding>(AV_ROUND_UP));
  std::vector<MovieSegment> segments;
  int64_t start = 0;
  for (const QuickTimeEdit& edit : edits) {
    const int64_t end = bounded(start + bounded(std::max<int64_t>(0, edit.segmentDuration)));
    if (edit.mediaTime >= 0) {
      MovieSegment segment;
      segment.mediaStart = bounded(edit.mediaTime);
      segment.movieStart = bounded(av_rescale_q(start, movieTick, timeBase));
      // A last edit of no length lasts as long as the fragments that follow.
      const bool isOpen = edit.segmentDuration == 0 && &edit == &edits.back();
      if (!isOpen) {
        const int64_t movieEnd = bounded(av_rescale_q(end, movieTick, timeBase));
        segment.mediaEnd = segment.mediaStart + (movieEnd - segment.movieStart);
      }
      segment.tolerance = coarseness - 1;
      segment.isFrozen = edit.mediaRate == 0 && !isOpen;
      segments.push_back(segment);
    }
    start = end;
  }
  return segments;
}

}  // namespace vantrel
