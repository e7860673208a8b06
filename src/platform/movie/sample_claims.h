#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>

#include "platform/movie/quicktime_atoms.h"

namespace vantrel {

/// How many samples the tables of `movie`, where there is one, and the fragments of its file
/// (`trun`) claim to describe. Throws std::system_error when the file cannot be read. Blocking, any
/// thread.
[[nodiscard]] uint64_t claimedSamples(const std::filesystem::path& path,
                                      const std::optional<QuickTimeMovie>& movie);

/// Whether each track that the movie header of a file with fragments describes has a number
/// (`tkhd`): without one, libavformat counts up from -1094995529 at every run of samples. Throws
/// std::system_error when the file cannot be read. Blocking, any thread.
[[nodiscard]] bool fragmentsHaveNumberedTracks(const std::filesystem::path& path);

}  // namespace vantrel
