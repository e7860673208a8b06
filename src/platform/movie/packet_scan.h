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
    /// Where the last of them ends, in `timeBase` and from the demuxer's zero; AV_NOPTS_VALUE if
    /// none has a time.
    int64_t end = AV_NOPTS_VALUE;
    AVRational timeBase{0, 1};
  };
  /// By stream index.
  std::vector<Stream> streams;
  /// Whether the scan reached the end of the file, or damage that ends it.
  bool isComplete = false;
};

/// Reads a file's packets from the start, up to a number of bytes in them. Throws MovieError when
/// the file cannot be opened, std::system_error or Cancelled. Blocking.
[[nodiscard]] PacketScan scanPackets(const std::filesystem::path& path, const std::stop_token& stop,
                                     int64_t maxBytes);

}  // namespace vantrel
