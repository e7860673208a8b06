#pragma once

#include <cstdint>
#include <stop_token>
#include <vector>

#include "platform/image/read_only_file.h"
#include "platform/image/upright_bitmap.h"

namespace vantrel {

/// What the application segments in front of the image data of a JPEG file say.
struct JpegMarkers {
  /// From the first EXIF segment.
  Orientation orientation = Orientation::TopLeft;
  /// Put together from the segments that carry it (ICC.1:2010, annex B.4), in any order; empty when
  /// one is missing, stands there twice, or contradicts another.
  std::vector<uint8_t> iccProfile;

  /// Damage only makes it find less. Throws Cancelled or std::bad_alloc.
  [[nodiscard]] static JpegMarkers scan(const ReadOnlyFile& file, const std::stop_token& stop);
};

}  // namespace vantrel
