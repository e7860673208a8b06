#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "platform/movie/chunk_offsets.h"
#include "platform/movie/quicktime_finish.h"

namespace vantrel {

/// The whole `moov` box of a finished movie, for its place in front of the media.
/// @param moov  as written, whole
/// @param headerOffset  where the new one stands in the finished file
/// @param media  stretches of the written file that follow it there, one after the other
/// Throws DamagedBoxes.
[[nodiscard]] std::vector<uint8_t> finishedMovieHeader(std::span<const uint8_t> moov,
                                                       const QuickTimeFinish& finish,
                                                       uint64_t headerOffset,
                                                       std::span<const MediaStretch> media);

}  // namespace vantrel
