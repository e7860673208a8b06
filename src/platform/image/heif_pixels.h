#pragma once

// Private to this folder: the pixels of an image that libheif has decoded to interleaved RGB.

#include <libheif/heif.h>

#include <cstddef>
#include <cstdint>
#include <memory>

#include "platform/image/bitmap.h"

namespace vantrel {

/// A plane of decoded samples, `bits` of each in use.
struct HeifPlane {
  uint8_t* bytes;
  size_t stride;
  int64_t width, height;
  int bits;
};

/// Pixels in the layout of a bitmap, and what keeps them alive.
struct HeifPixels {
  HeifPlane plane;
  std::shared_ptr<const std::byte> owner;
};

/// The pixels of `image` in `layout`, Gray or Rgb, over the whole range of its samples: where they
/// are, without a copy, unless Gray is made of them. Throws ImageDamaged when they are not what
/// `layout` says.
[[nodiscard]] HeifPixels heifPixels(const std::shared_ptr<heif_image>& image,
                                    const PixelLayout& layout);

/// Divides the colours by their alpha.
void divideByAlpha(const HeifPlane& plane, const PixelLayout& layout);

}  // namespace vantrel
