#pragma once

#include <vector>

#include "platform/movie/movie.h"
#include "platform/movie/movie_input.h"

namespace vantrel {

/// The video and audio tracks of an opened file, in its order.
[[nodiscard]] std::vector<MovieTrack> movieTracks(MovieInput& input);

}  // namespace vantrel
