#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <vector>

namespace vantrel {

/// What the index of a QuickTime or ISO base media file promises, held against the file.
struct QuickTimeExtent {
  struct Track {
    uint32_t trackID = 0;
    /// Samples in chunks and fragments. Of audio whose samples all have one size a demuxer may join
    /// any number into one packet.
    uint64_t sampleCount = 0;
    /// Whether the tables make sense and every chunk ends inside the file. The media of fragments
    /// stand under `boxesAreWhole`.
    bool isWhole = true;
  };

  /// Whether each box of the file itself that holds media or tells where they are ends inside the
  /// file, and fragments are made of boxes. Unknown bytes behind the last such box do not count,
  /// but in a fragmented movie, where they may have been a fragment.
  bool boxesAreWhole = true;
  /// Empty when the movie header is missing.
  std::vector<Track> tracks;

  /// Null if there is none.
  [[nodiscard]] const Track* track(uint32_t trackID) const;

  /// Absent for a file of another kind. Reads the sample tables piece by piece and no media. Throws
  /// std::system_error when the file cannot be read. Blocking, any thread.
  [[nodiscard]] static std::optional<QuickTimeExtent> read(const std::filesystem::path& path);
};

}  // namespace vantrel
