#pragma once

#include <cstdint>
#include <stop_token>

#include "platform/image/read_only_file.h"
#include "platform/image/upright_bitmap.h"

namespace vantrel {

/// Pictures that a PNG file holds: the frames that a chunk acTL before the image data announces,
/// otherwise 1. Looks no further than the beginning of the image data. Throws Cancelled.
[[nodiscard]] int pngImageCount(const ReadOnlyFile& file, const std::stop_token& stop);

/// What a walk over the chunks of a PNG file tells before anything is decoded.
struct PngChunks {
  /// Bytes of compressed image data.
  uint64_t imageBytes = 0;
  /// From the first chunk eXIf whose checksum is right, wherever it stands.
  Orientation orientation = Orientation::TopLeft;

  /// Throws ImageDamaged when the chunks do not lead to IEND, Cancelled, or std::bad_alloc.
  [[nodiscard]] static PngChunks scan(const ReadOnlyFile& file, const std::stop_token& stop);
};

}  // namespace vantrel
