#pragma once

#include <cstdint>
#include <filesystem>
#include <stop_token>
#include <vector>

#include "platform/movie/av_ptr.h"

namespace vantrel {

/// What the packets of a file tell without being decoded.
struct PacketScan {
  struct Stream {
    int64_t packets = 0, bytes = 0;
    /// Their durations together, in `timeBase`.
    int64_t length = 0;
    /// Where the last of them ends, in `timeBase` and from the demuxer's zero; AV_NOPTS_VALUE if
    /// none has a time.
    int64_t end = AV_NOPTS_VALUE;
    AVRational timeBase{0, 1};
  };
  /// By stream index.
  std::vector<Stream> streams;
  /// Whether the scan began at the start of the file.
  bool fromStart = true;
  /// Whether it reached the end of the file, or damage that ends it.
  bool reachedEnd = false;

  [[nodiscard]] bool isWhole() const { return fromStart && reachedEnd; }
};

/// Which packets are looked at.
struct PacketRange {
  /// From before this time in microseconds of the demuxer; AV_NOPTS_VALUE: from the start.
  int64_t from = AV_NOPTS_VALUE;
  /// Up to so many bytes in packets.
  int64_t maxBytes = INT64_MAX;
};

/// Reads a file's packets. Throws MovieError when the file cannot be opened, std::system_error or
/// Cancelled. Blocking.
[[nodiscard]] PacketScan scanPackets(const std::filesystem::path& path, const std::stop_token& stop,
                                     const PacketRange& range);

}  // namespace vantrel
