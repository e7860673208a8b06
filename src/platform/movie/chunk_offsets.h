#pragma once

#include <cstdint>
#include <span>

#include "platform/movie/box_tree.h"

namespace vantrel {

/// A stretch of a file, in bytes from its start.
struct MediaStretch {
  uint64_t begin = 0, end = 0;
};

/// Changes the chunk offsets of all tracks of a movie header for a file in which the header stands
/// at `headerOffset` and the stretches of `media` follow it one after the other. An offset table in
/// which one passes 32 bits becomes one of 64 bits, which makes the header longer and so may bring
/// others to that. Throws DamagedBoxes for offsets outside the media.
void moveChunks(BoxTree& moov, uint64_t headerOffset, std::span<const MediaStretch> media);

}  // namespace vantrel
