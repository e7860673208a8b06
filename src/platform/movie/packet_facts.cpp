#include "platform/movie/packet_facts.h"

#include <algorithm>

#include "platform/movie/coded_format.h"
#include "platform/movie/picture_codec.h"

namespace vantrel {
namespace {

/// What was scanned of a track; null if nothing was.
const PacketScan::Stream* scanned(const PacketScan& scan, const MovieTrack& track) {
  const auto index = static_cast<size_t>(track.streamIndex);
  if (index >= scan.streams.size() || scan.streams[index].packets == 0) return nullptr;
  return &scan.streams[index];
}

bool lacksRate(const MovieTrack& track, const FileRate& file) {
  // Tables of sample sizes need no check, and tell the rate without pauses.
  const double most = track.quickTime ? 0 : file.bitsPerSecond();
  return track.estimatedDataRate <= 0 || (most > 0 && track.estimatedDataRate > most);
}

void completeDataRate(MovieTrack& track, const FileRate& file, const PacketScan& scan) {
  if (!lacksRate(track, file)) return;
  double all = 0;
  for (const PacketScan::Stream& stream : scan.streams)
    all += static_cast<double>(stream.bytes);
  const PacketScan::Stream* own = scanned(scan, track);
  const double share = own && all > 0 ? static_cast<double>(own->bytes) / all : 0;
  const double seconds = file.duration.isValid() ? file.duration.seconds() : 0;
  const bool isExact = scan.isWhole() && own && seconds > 0;
  track.estimatedDataRate =
      isExact ? static_cast<double>(own->bytes) * 8 / seconds : file.bitsPerSecond() * share;
}

void completeFrameRate(MovieTrack& track, const PacketScan& scan) {
  const PacketScan::Stream* own = scanned(scan, track);
  if (track.kind != MovieTrack::Kind::Video || !track.quickTime || !own || !scan.isWhole()) return;
  const double seconds = static_cast<double>(own->length) * av_q2d(own->timeBase);
  if (seconds > 0) track.nominalFrameRate = static_cast<double>(own->packets) / seconds;
}

}  // namespace

double FileRate::bitsPerSecond() const {
  return duration.isValid() && duration.ticks > 0
             ? static_cast<double>(bytes) * 8 / duration.seconds()
             : 0;
}

MediaTime scannedDuration(const PacketScan& scan, const std::vector<MovieTrack>& tracks,
                          int64_t start, int32_t timescale) {
  int64_t last = 0;
  for (const MovieTrack& track : tracks) {
    const PacketScan::Stream* stream = scanned(scan, track);
    if (!stream) continue;
    const int64_t origin = av_rescale_q(start, {1, AV_TIME_BASE}, stream->timeBase);
    // Streams without times have their packets one behind the other.
    const int64_t end =
        stream->end == AV_NOPTS_VALUE ? stream->length : av_sat_sub64(stream->end, origin);
    last = std::max(last, av_rescale_q(end, stream->timeBase, {1, timescale}));
  }
  return last > 0 ? MediaTime{last, timescale} : MediaTime{};
}

bool lacksRates(const std::vector<MovieTrack>& tracks, const FileRate& file) {
  return std::any_of(tracks.begin(), tracks.end(),
                     [&file](const MovieTrack& track) { return lacksRate(track, file); });
}

void completeRates(std::vector<MovieTrack>& tracks, const FileRate& file, const PacketScan& scan) {
  for (MovieTrack& track : tracks) {
    completeDataRate(track, file, scan);
    completeFrameRate(track, scan);
  }
}

bool isStill(const MovieTrack& track, const PacketScan& scan) {
  const PacketScan::Stream* stream = scanned(scan, track);
  return track.kind == MovieTrack::Kind::Video && !track.quickTime && scan.isWhole() && stream &&
         stream->packets == 1 && isPictureCodec(track.format->parameters->codec_id);
}

}  // namespace vantrel
