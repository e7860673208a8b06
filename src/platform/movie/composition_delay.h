#pragma once

#include <cstdint>
#include <filesystem>
#include <map>
#include <optional>

#include "platform/movie/quicktime_atoms.h"

namespace vantrel {

/// How many ticks later than its file says libavformat's demuxer shows the pictures of a track. It
/// adds what lifts the lowest composition offset that it has read to 0, and takes that from the
/// decoding times of samples in the movie header's tables alone, by what it knew of it then.
struct CompositionDelay {
  /// Once all fragments were read.
  int64_t ofTables = 0, ofFragments = 0;
  /// A time that the fragment with the lowest offset shows, in ticks of the track. Absent if that
  /// is the first, which is read at once; where the file has an index of its fragments, others are
  /// not.
  std::optional<int64_t> timeOfLowest;
};

/// The fragments of a movie and what they do to the times of its tracks.
struct FragmentTimes {
  /// Where the first fragment begins, in bytes; samples of the tables stand before.
  int64_t firstFragment = 0;
  /// By track ID; tracks without a delay are missing.
  std::map<uint32_t, CompositionDelay> delays;

  /// Throws std::system_error when the file cannot be read. Blocking, any thread.
  [[nodiscard]] static FragmentTimes read(const std::filesystem::path& path);

  /// Of a packet of this track that stands at a place of the file.
  [[nodiscard]] int64_t delay(uint32_t trackID, int64_t position) const;
};

}  // namespace vantrel
