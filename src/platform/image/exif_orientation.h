#pragma once

#include <cstddef>
#include <span>

#include "platform/image/upright_bitmap.h"

namespace vantrel {

/// The orientation that a block of EXIF metadata (a TIFF structure, with or without "Exif\0\0" in
/// front of it) gives for the main picture; TopLeft when there is none or the block is damaged.
[[nodiscard]] Orientation exifOrientation(std::span<const std::byte> block);

}  // namespace vantrel
