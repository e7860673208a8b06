#pragma once

#include <vector>

#include "platform/movie/movie.h"
#include "platform/movie/movie_input.h"

namespace vantrel {

/// The video and audio tracks of an opened file, in its order; decodes the first picture of each
/// video track. Throws std::system_error or Cancelled.
[[nodiscard]] std::vector<MovieTrack> movieTracks(MovieInput& input);

}  // namespace vantrel
