#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "platform/movie/movie_metadata.h"
#include "platform/movie/video_color.h"

namespace vantrel {

/// One entry of an edit list (`elst`).
struct QuickTimeEdit {
  /// In ticks of the movie's timescale.
  int64_t segmentDuration = 0;
  /// In ticks of the track's timescale; -1 is an empty edit.
  int64_t mediaTime = 0;
  /// 16.16 fixed point.
  int32_t mediaRate = 0x10000;
  friend bool operator==(const QuickTimeEdit&, const QuickTimeEdit&) = default;
};

/// What the boxes of one track say. Durations that are not known are 0. Boxes that are carried as
/// they are have their header with them.
struct QuickTimeTrack {
  uint32_t trackID = 0;
  bool enabled = true;
  /// "vide", "soun" and so on.
  std::string handler;
  /// Ticks of the track per second, and its length in them (`mdhd`).
  uint32_t timescale = 0;
  uint64_t mediaDuration = 0;
  /// Length in the movie, in ticks of the movie (`tkhd`).
  uint64_t duration = 0;
  /// `mdhd`'s packed ISO 639-2 code or old language number, as it stands.
  uint16_t language = 0;
  std::optional<std::string> extendedLanguageTag;
  std::vector<QuickTimeEdit> edits;
  /// Whole `udta` and `meta` boxes in the form that QuickTime movies use, empty if there is none.
  std::vector<uint8_t> userData, metadata;
  /// The items of `metadata`.
  std::vector<MovieMetadataItem> items;
  /// The colour of each sample description, in their order.
  std::vector<ColorTags> descriptions;
  /// Number of samples in the sample tables; of a fragmented movie those outside the fragments.
  uint64_t sampleCount = 0;
};

/// What the movie header of a QuickTime or ISO base media file says.
struct QuickTimeMovie {
  uint32_t timescale = 0;
  /// In ticks of `timescale` (`mvhd`, or `mehd` in a fragmented movie where that is longer).
  uint64_t duration = 0;
  bool isFragmented = false;
  std::vector<QuickTimeTrack> tracks;

  /// Reads the movie header; absent for any file of another kind, or whose boxes make no sense.
  /// Reads no more of the file than its boxes need, whatever sizes they claim. Throws
  /// std::system_error when the file cannot be read. Blocking, any thread.
  [[nodiscard]] static std::optional<QuickTimeMovie> read(const std::filesystem::path& path);

  /// Null if there is none.
  [[nodiscard]] const QuickTimeTrack* track(uint32_t trackID) const;
};

/// The `udta` box of a track with this name. Empty for no name.
[[nodiscard]] std::vector<uint8_t> quickTimeUserDataBox(const std::string& trackName);

/// The `meta` box of a video track with these items. Empty for no items.
[[nodiscard]] std::vector<uint8_t> quickTimeMetadataBox(
    const std::vector<MovieMetadataItem>& items);

}  // namespace vantrel
