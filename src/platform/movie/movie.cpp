#include "platform/movie/movie.h"

#include <algorithm>
#include <iterator>

namespace vantrel {

std::vector<MovieTrack> Movie::tracks(MovieTrack::Kind kind) const {
  std::vector<MovieTrack> found;
  std::copy_if(m_tracks.begin(), m_tracks.end(), std::back_inserter(found),
               [kind](const MovieTrack& track) { return track.kind == kind; });
  return found;
}

}  // namespace vantrel
