#pragma once

#include <cstdint>
#include <limits>
#include <vector>

#include "platform/movie/av_ptr.h"
#include "platform/movie/movie.h"

namespace vantrel {

/// A stretch of a track's media that the movie shows, in ticks of the stream.
struct MovieSegment {
  static constexpr int64_t kOpenEnd = std::numeric_limits<int64_t>::max();

  int64_t mediaStart = 0;
  /// Behind the last tick; kOpenEnd: as far as the media go.
  int64_t mediaEnd = kOpenEnd;
  /// Where `mediaStart` stands in the movie.
  int64_t movieStart = 0;
  /// The end is known to less than so many ticks, because the movie counts in coarser ones.
  int64_t tolerance = 0;
  /// One picture, the one at `mediaStart`, is shown all the time.
  bool isFrozen = false;

  [[nodiscard]] bool hasEnd() const { return mediaEnd != kOpenEnd; }
  [[nodiscard]] int64_t toMovie(int64_t mediaTime) const {
    return movieStart + (mediaTime - mediaStart);
  }
};

/// What a movie shows of a track, in the movie's order: its edits without the empty ones (QuickTime
/// File Format, "Edit List Atoms"), or all media from the movie's start on where there are none.
/// Rates other than 0 count as 1. `timeBase` is the stream's.
[[nodiscard]] std::vector<MovieSegment> movieSegments(const Movie& movie, const MovieTrack& track,
                                                      AVRational timeBase);

}  // namespace vantrel
