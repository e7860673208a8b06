#include "platform/movie/movie.h"

#include <algorithm>
#include <iterator>
#include <optional>
#include <string_view>

#include "platform/movie/movie_input.h"
#include "platform/movie/movie_tracks.h"
#include "platform/movie/packet_facts.h"

namespace vantrel {
namespace {

/// Bytes of packets that show how a file's data is spread among its tracks.
constexpr int64_t kEnoughForRates = int64_t{16} << 20;

bool isMatroska(const AVFormatContext& context) {
  return std::string_view(context.iformat->name).substr(0, 8) == "matroska";
}

/// Ticks that the times of the first track, video before audio, are whole numbers of, but no
/// coarser than a film's.
int32_t timescaleOf(const std::vector<MovieTrack>& tracks) {
  constexpr int32_t kCoarsest = 600;
  const auto video = std::find_if(tracks.begin(), tracks.end(), [](const MovieTrack& track) {
    return track.kind == MovieTrack::Kind::Video;
  });
  if (tracks.empty()) return kCoarsest;
  const int32_t own = (video == tracks.end() ? tracks.front() : *video).timescale;
  return own >= kCoarsest ? own : (kCoarsest + own - 1) / own * own;
}

/// Microseconds from the demuxer's zero to the movie's start. QuickTime movies have a time line of
/// their own; in others what lies before zero is not shown, but for transmissions, whose zero may
/// come anywhere.
int64_t movieStart(const MovieInput& input) {
  const int64_t start = input.context().start_time;
  if (input.boxes() || start == AV_NOPTS_VALUE) return 0;
  return input.isTransmission() ? start : std::max<int64_t>(0, start);
}

/// Ticks of the movie that a track is shown for; 0 if its boxes don't tell.
int64_t shownLength(const QuickTimeTrack& track, uint32_t movieTimescale) {
  int64_t length = 0;
  for (const QuickTimeEdit& edit : track.edits)
    length = av_sat_add64(length, edit.segmentDuration);
  if (length > 0) return length;
  const auto media = static_cast<int64_t>(std::min<uint64_t>(track.mediaDuration, INT64_MAX));
  return av_rescale_rnd(media, movieTimescale, track.timescale, AV_ROUND_UP);
}

/// The longest track as shown, or what the movie header says where tracks don't tell. Not valid if
/// the rest of the file has to be looked at.
MediaTime headerDuration(const QuickTimeMovie& movie, int32_t timescale) {
  int64_t longest = 0;
  for (const QuickTimeTrack& track : movie.tracks)
    longest = std::max(longest, shownLength(track, movie.timescale));
  const auto whole = static_cast<int64_t>(std::min<uint64_t>(movie.duration, INT64_MAX));
  // A fragmented movie may tell the length of its first part only.
  if (movie.isFragmented ? whole <= longest : longest == 0 && whole == 0) return {};
  return {movie.isFragmented || longest == 0 ? whole : longest, timescale};
}

/// What libavformat knows. Not valid where it guesses, or where the file counts from the demuxer's
/// zero or from its own start, nobody knows.
MediaTime demuxerDuration(const MovieInput& input, int32_t timescale) {
  const AVFormatContext& context = input.context();
  if (context.duration == AV_NOPTS_VALUE || context.duration <= 0 ||
      context.duration_estimation_method == AVFMT_DURATION_FROM_BITRATE) {
    return {};
  }
  const int64_t start = context.start_time == AV_NOPTS_VALUE ? 0 : context.start_time;
  if (start > 0 && isMatroska(context)) return {};
  const int64_t notShown = std::max<int64_t>(0, movieStart(input) - start);
  const int64_t length = std::max<int64_t>(0, context.duration - notShown);
  return {av_rescale(length, timescale, AV_TIME_BASE), timescale};
}

/// Not valid for a length that only damage explains, and with which others could not reckon.
MediaTime plausible(const MediaTime& duration) {
  constexpr double kMaxSeconds = INT32_MAX;
  return duration.isValid() && duration.seconds() < kMaxSeconds ? duration : MediaTime{};
}

MediaTime knownDuration(const MovieInput& input, int32_t timescale) {
  return plausible(input.boxes() ? headerDuration(*input.boxes(), timescale)
                                 : demuxerDuration(input, timescale));
}

/// The packets among which is the last one.
PacketRange lastPackets(const AVFormatContext& context) {
  PacketRange range;
  if (isMatroska(context) && context.duration > 0) range.from = context.duration;
  return range;
}

}  // namespace

Movie Movie::open(const std::filesystem::path& path, const std::stop_token& stop) {
  MovieInput input = MovieInput::open(path, stop);
  Movie movie;
  movie.m_path = path;
  movie.m_tracks = movieTracks(input);
  movie.m_timescale =
      input.boxes() ? static_cast<int32_t>(input.boxes()->timescale) : timescaleOf(movie.m_tracks);
  const int64_t start = movieStart(input);
  movie.m_startOffset = -start;
  movie.m_duration = knownDuration(input, movie.m_timescale);
  if (movie.m_tracks.empty()) return movie;

  std::optional<PacketScan> scan;
  if (!movie.m_duration.isValid()) {
    scan = scanPackets(path, stop, lastPackets(input.context()));
    movie.m_duration = plausible(scannedDuration(*scan, movie.m_tracks, start, movie.m_timescale));
  }
  const FileRate fileRate{input.fileSize(), movie.m_duration};
  const bool isComplete = !lacksRates(movie.m_tracks, fileRate);
  if (isComplete && !scan) return movie;
  if (!isComplete && (!scan || !scan->isWhole()))
    scan = scanPackets(path, stop, {AV_NOPTS_VALUE, kEnoughForRates});
  completeRates(movie.m_tracks, fileRate, *scan);
  std::erase_if(movie.m_tracks, [&scan](const MovieTrack& track) { return isStill(track, *scan); });
  return movie;
}

std::vector<MovieTrack> Movie::tracks(MovieTrack::Kind kind) const {
  std::vector<MovieTrack> found;
  std::copy_if(m_tracks.begin(), m_tracks.end(), std::back_inserter(found),
               [kind](const MovieTrack& track) { return track.kind == kind; });
  return found;
}

}  // namespace vantrel
