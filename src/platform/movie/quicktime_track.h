#pragma once

#include <optional>

#include "platform/movie/box_file.h"
#include "platform/movie/quicktime_atoms.h"

namespace vantrel {

/// What the boxes of a `trak` say. Absent when it lacks a track or media header. Throws
/// std::system_error.
[[nodiscard]] std::optional<QuickTimeTrack> readQuickTimeTrack(BoxFile& file, const FileBox& trak);

/// The same number unless it stands for "unknown", which is all bits set, or is beyond what signed
/// numbers hold; then 0. `wide` tells that it came from 64 bits.
[[nodiscard]] uint64_t knownDuration(uint64_t ticks, bool wide);

}  // namespace vantrel
