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

}  // namespace vantrel
