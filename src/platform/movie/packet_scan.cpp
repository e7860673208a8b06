#include "platform/movie/packet_scan.h"

#include <algorithm>

#include "platform/movie/movie_error.h"
#include "platform/movie/movie_input.h"

namespace vantrel {
namespace {

/// Damaged times must not overflow.
constexpr int64_t kLastTime = INT64_MAX / 4;

void count(PacketScan::Stream& stream, const AVPacket& packet) {
  ++stream.packets;
  stream.bytes += packet.size;
  const int64_t length = std::clamp<int64_t>(packet.duration, 0, kLastTime);
  stream.length = av_sat_add64(stream.length, length);
  // The decoding time stands in for a time that is missing.
  const int64_t start = packet.pts == AV_NOPTS_VALUE ? packet.dts : packet.pts;
  if (start == AV_NOPTS_VALUE || start > kLastTime || start < -kLastTime) return;
  const int64_t end = start + length;
  stream.end = stream.end == AV_NOPTS_VALUE ? end : std::max(stream.end, end);
}

}  // namespace

PacketScan scanPackets(const std::filesystem::path& path, const std::stop_token& stop,
                       const PacketRange& range) {
  MovieInput input = MovieInput::open(path, stop);
  AVFormatContext& context = input.context();
  // Where it fails the start is as good a place.
  if (range.from != AV_NOPTS_VALUE) {
    (void)av_seek_frame(&context, -1, range.from, AVSEEK_FLAG_BACKWARD);
  }
  const AvPacketPtr packet = makePacket();
  PacketScan scan;
  scan.fromStart = range.from == AV_NOPTS_VALUE;
  try {
    for (int64_t bytes = 0; bytes < range.maxBytes; bytes += packet->size) {
      scan.reachedEnd = !input.readPacket(*packet);
      if (scan.reachedEnd) break;
      const auto index = static_cast<size_t>(packet->stream_index);
      if (scan.streams.size() <= index) scan.streams.resize(index + 1);
      scan.streams[index].timeBase = context.streams[index]->time_base;
      count(scan.streams[index], *packet);
    }
  } catch (const MovieError&) {
    scan.reachedEnd = true;
  }
  scan.streams.resize(std::max<size_t>(scan.streams.size(), context.nb_streams));
  return scan;
}

}  // namespace vantrel
