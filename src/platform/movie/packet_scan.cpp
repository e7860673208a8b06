#include "platform/movie/packet_scan.h"

#include <algorithm>
#include <cstdlib>

#include "platform/movie/movie_error.h"
#include "platform/movie/movie_input.h"

namespace vantrel {
namespace {

/// Where a packet ends; its decoding time stands in for a time that is missing.
int64_t endOf(const AVPacket& packet, int64_t before) {
  const int64_t start = packet.pts == AV_NOPTS_VALUE ? packet.dts : packet.pts;
  const int64_t length = std::max<int64_t>(0, packet.duration);
  // Damaged times must not overflow.
  constexpr int64_t kLimit = INT64_MAX / 4;
  if (start == AV_NOPTS_VALUE || std::abs(start) > kLimit || length > kLimit) return before;
  return before == AV_NOPTS_VALUE ? start + length : std::max(before, start + length);
}

}  // namespace

PacketScan scanPackets(const std::filesystem::path& path, const std::stop_token& stop,
                       int64_t maxBytes) {
  MovieInput input = MovieInput::open(path, stop);
  const AVFormatContext& context = input.context();
  const AvPacketPtr packet = makePacket();
  PacketScan scan;
  try {
    for (int64_t bytes = 0; bytes < maxBytes && !scan.isComplete; bytes += packet->size) {
      scan.isComplete = !input.readPacket(*packet);
      if (scan.isComplete) break;
      const auto index = static_cast<size_t>(packet->stream_index);
      if (scan.streams.size() <= index) scan.streams.resize(index + 1);
      PacketScan::Stream& stream = scan.streams[index];
      ++stream.packets;
      stream.bytes += packet->size;
      stream.end = endOf(*packet, stream.end);
      stream.timeBase = context.streams[index]->time_base;
    }
  } catch (const MovieError&) {
    scan.isComplete = true;
  }
  scan.streams.resize(std::max<size_t>(scan.streams.size(), context.nb_streams));
  return scan;
}

}  // namespace vantrel
