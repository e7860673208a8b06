#pragma once

#include <cstddef>
#include <cstdint>
#include <stop_token>
#include <vector>

#include "platform/image/bitmap.h"
#include "platform/image/display_renderer.h"

namespace vantrel {

/// Renders a whole picture at the size at which a display shows it. It remembers the last whole
/// reduction, so that a window that is resized a little costs little. One thread at a time; it uses
/// all cores itself.
class ScaledRenderer {
 public:
  explicit ScaledRenderer(Bitmap bitmap) : m_renderer(std::move(bitmap)) {}

  [[nodiscard]] const Bitmap& bitmap() const { return m_renderer.bitmap(); }

  /// Renders the picture `width` × `height` pixels large, from 1 up to the bitmap's own size, each
  /// pixel the mean of the area that it covers, as DisplayRenderer's pixels into rows `stride`
  /// bytes apart. `stop` is checked every few milliseconds; throws Cancelled or std::bad_alloc.
  void render(int64_t width, int64_t height, uint8_t* output, size_t stride,
              const std::stop_token& stop);

 private:
  void reduce(int64_t reduction, const std::stop_token& stop);

  DisplayRenderer m_renderer;
  // The picture reduced by m_reduction, without padding between rows; empty while 0.
  int64_t m_reduction = 0;
  PixelRect m_reducedSize;
  std::vector<uint8_t> m_reduced;
};

}  // namespace vantrel
