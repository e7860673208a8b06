#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <stop_token>
#include <string>
#include <vector>

#include "platform/movie/quicktime_atoms.h"

namespace vantrel {

/// How one track of a written movie is to be changed.
struct QuickTimeTrackChange {
  uint32_t trackID = 0;
  bool enabled = true;
  /// `mdhd`'s language as it is to stand; absent: as written.
  std::optional<uint16_t> language;
  /// Takes the place of the track's own; absent: the track has none.
  std::optional<std::string> extendedLanguageTag;
  /// Whole boxes that take the place of the track's own; empty: the track has none.
  std::vector<uint8_t> userData, metadata;
  /// Takes the place of the edit list; absent: as written, empty: none. Segment durations count in
  /// the finished movie's timescale, media times in the written track's.
  std::optional<std::vector<QuickTimeEdit>> edits;
  /// The end of the last shown sample, in ticks of the track and on the track's own media time
  /// line, which starts with the first sample's decoding time; absent: as written. The length of
  /// the last sample, `mdhd`, `tkhd` and, where `edits` is absent, the last edit then follow.
  std::optional<int64_t> mediaEnd;
};

/// How a written movie is to be changed.
struct QuickTimeFinish {
  /// Ticks per second of the movie header; 0: as written. Durations and edits that stay are
  /// converted.
  uint32_t movieTimescale = 0;
  /// Matched by id. Tracks that are not named stay as they are.
  std::vector<QuickTimeTrackChange> tracks;
};

/// Copies the movie at `source`, which FFmpeg's mov muxer wrote (ftyp, mdat, moov), to the new file
/// `destination` with the movie header in front and changed as told. Chunk offsets follow, in 64
/// bits where one passes 4 GiB. Drops `tapt`, of the movie header's own metadata everything, and of
/// the tracks that are named the vendor in their sample description.
/// Flushes to disk. Throws std::system_error, MovieError for boxes that make no sense, or
/// Cancelled; the destination is then the caller's to delete. Blocking, any thread.
void finishQuickTimeMovie(const std::filesystem::path& source,
                          const std::filesystem::path& destination, const QuickTimeFinish& finish,
                          const std::stop_token& stop = {});

}  // namespace vantrel
