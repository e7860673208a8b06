#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>

#include "platform/image/bitmap.h"

namespace vantrel {

/// Turns parts of a bitmap into pixels for the display: 8-bit sRGB with premultiplied alpha, four
/// bytes a pixel in the order red, green, blue, alpha. Made once for a picture; `render` may be
/// called from several threads at once.
class DisplayRenderer {
 public:
  explicit DisplayRenderer(Bitmap bitmap);
  ~DisplayRenderer();
  DisplayRenderer(const DisplayRenderer&) = delete;
  DisplayRenderer& operator=(const DisplayRenderer&) = delete;

  [[nodiscard]] const Bitmap& bitmap() const { return m_bitmap; }

  /// The size in pixels of `area` reduced by `reduction` ≥ 1: each output pixel is the mean of a
  /// square of reduction × reduction source pixels (fewer at the right and lower border),
  /// alpha-weighted.
  [[nodiscard]] static PixelRect reducedSize(const PixelRect& area, int64_t reduction);

  /// Renders `area`, inside the bitmap, reduced by `reduction`, into `output`, whose rows are
  /// `stride` bytes apart and which holds reducedSize() pixels.
  void render(const PixelRect& area, int64_t reduction, uint8_t* output, size_t stride) const;

 private:
  class Transform;
  Bitmap m_bitmap;
  std::unique_ptr<const Transform> m_transform;
};

}  // namespace vantrel
