#include "platform/movie/movie.h"

#include <algorithm>
#include <iterator>
#include <string_view>

#include "platform/movie/movie_input.h"
#include "platform/movie/movie_tracks.h"

namespace vantrel {
namespace {

bool isQuickTime(const AVFormatContext& context) {
  return std::string_view(context.iformat->name).substr(0, 4) == "mov,";
}

/// Ticks that times of the first track, video before audio, are whole numbers of, but no coarser
/// than a film's.
int32_t timescaleOf(const std::vector<MovieTrack>& tracks) {
  constexpr int32_t kFinest = 600;
  const auto video = std::find_if(tracks.begin(), tracks.end(), [](const MovieTrack& track) {
    return track.kind == MovieTrack::Kind::Video;
  });
  if (tracks.empty()) return kFinest;
  const int32_t own = (video == tracks.end() ? tracks.front() : *video).timescale;
  return own >= kFinest ? own : (kFinest + own - 1) / own * own;
}

/// What the demuxer knows of the time at which the last track ends, from the start of the movie.
MediaTime durationOf(const AVFormatContext& context, int32_t timescale) {
  if (context.duration == AV_NOPTS_VALUE || context.duration <= 0) return {};
  // What lies before 0 is not shown. QuickTime's movie header does not count it.
  const bool countsPreroll = !isQuickTime(context) && context.start_time != AV_NOPTS_VALUE;
  const int64_t preroll = countsPreroll ? std::max<int64_t>(0, -context.start_time) : 0;
  const int64_t end = std::max<int64_t>(0, context.duration - preroll);
  return {av_rescale(end, timescale, AV_TIME_BASE), timescale};
}

}  // namespace

Movie Movie::open(const std::filesystem::path& path, const std::stop_token& stop) {
  MovieInput input = MovieInput::open(path, stop);
  const AVFormatContext& context = input.context();
  Movie movie;
  movie.m_path = path;
  movie.m_tracks = movieTracks(input);
  movie.m_timescale = timescaleOf(movie.m_tracks);
  const bool startsAnywhere = !isQuickTime(context) && context.start_time != AV_NOPTS_VALUE;
  movie.m_startOffset = startsAnywhere ? std::min<int64_t>(0, -context.start_time) : 0;
  movie.m_duration = durationOf(context, movie.m_timescale);
  return movie;
}

std::vector<MovieTrack> Movie::tracks(MovieTrack::Kind kind) const {
  std::vector<MovieTrack> found;
  std::copy_if(m_tracks.begin(), m_tracks.end(), std::back_inserter(found),
               [kind](const MovieTrack& track) { return track.kind == kind; });
  return found;
}

}  // namespace vantrel
