#include "review/player_opening.h"

#include <QtGlobal>
#include <utility>

#include "base/failure.h"
#include "platform/movie/movie.h"
#include "platform/player/movie_player.h"

namespace vantrel {

MakePlayer openMoviePlayer(const std::filesystem::path& path, const std::stop_token& stop) {
  Movie movie = Movie::open(path, stop);
  if (movie.tracks(MovieTrack::Kind::Video).empty())
    throw Failure(QT_TRANSLATE_NOOP("Failure", "No video track found"));
  return [movie = std::move(movie)] { return std::make_unique<MoviePlayer>(movie); };
}

}  // namespace vantrel
