#pragma once

#include <cstdint>
#include <vector>

#include "platform/movie/movie.h"
#include "platform/movie/packet_scan.h"

namespace vantrel {

/// The bytes of a file and how long they last; the duration may be unknown.
struct FileRate {
  int64_t bytes = 0;
  MediaTime duration;

  /// Bits per second; 0 if unknown.
  [[nodiscard]] double bitsPerSecond() const;
};

/// When the last packet of these tracks ends, in ticks of `timescale` from the movie's start, which
/// is at `start` microseconds of the demuxer. Not valid if packets don't tell.
[[nodiscard]] MediaTime scannedDuration(const PacketScan& scan,
                                        const std::vector<MovieTrack>& tracks, int64_t start,
                                        int32_t timescale);

/// Whether a track has no data rate, or one that the file has no room for.
[[nodiscard]] bool lacksRates(const std::vector<MovieTrack>& tracks, const FileRate& file);

/// Gives such tracks the share of the file's rate that they have of the scanned packets, and
/// fragmented ones the frame rate that all packets show; libavformat averages the first few.
void completeRates(std::vector<MovieTrack>& tracks, const FileRate& file, const PacketScan& scan);

/// Whether a video track of a file without boxes is one single picture of an image format.
[[nodiscard]] bool isStill(const MovieTrack& track, const PacketScan& scan);

}  // namespace vantrel
