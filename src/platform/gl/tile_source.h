#pragma once

// Private to this folder.

#include <memory>
#include <mutex>
#include <stop_token>

#include "platform/gl/tile_pyramid.h"
#include "platform/image/bitmap.h"
#include "platform/image/display_renderer.h"

namespace vantrel {

/// Renders the tiles of a bitmap that is not empty. Any number of threads may render at once.
class TileSource {
 public:
  explicit TileSource(Bitmap bitmap);

  [[nodiscard]] const Bitmap& bitmap() const { return m_bitmap; }
  [[nodiscard]] const TilePyramid& pyramid() const { return m_pyramid; }

  /// `stop` is looked at every few milliseconds, however many source pixels make up the tile. The
  /// first call also reads the bitmap's colour profile. Throws Cancelled or std::bad_alloc.
  [[nodiscard]] TilePixels render(const TileId& tile, const std::stop_token& stop) const;

 private:
  [[nodiscard]] const DisplayRenderer& renderer() const;

  const Bitmap m_bitmap;
  const TilePyramid m_pyramid;
  mutable std::once_flag m_isPrepared;
  mutable std::unique_ptr<const DisplayRenderer> m_renderer;
};

}  // namespace vantrel
