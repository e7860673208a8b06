#include "platform/gl/tile_source.h"

#include <algorithm>
#include <utility>

#include "base/cancelled.h"

namespace vantrel {
namespace {

/// Rendered between two looks at the stop token.
constexpr int64_t kPixelsPerPiece = 256 * 1024;

}  // namespace

TileSource::TileSource(Bitmap bitmap)
    : m_bitmap(std::move(bitmap)), m_pyramid(m_bitmap.width(), m_bitmap.height()) {}

const DisplayRenderer& TileSource::renderer() const {
  std::call_once(m_isPrepared,
                 [this] { m_renderer = std::make_unique<DisplayRenderer>(m_bitmap); });
  return *m_renderer;
}

TilePixels TileSource::render(const TileId& tile, const std::stop_token& stop) const {
  const PixelRect texels = m_pyramid.texels(tile);
  const PixelRect source = m_pyramid.texelSource(tile);
  const size_t stride = static_cast<size_t>(texels.width) * kBytesPerTexel;
  TilePixels result{static_cast<int>(texels.width), static_cast<int>(texels.height), {}};
  result.rgba.resize(stride * static_cast<size_t>(texels.height));

  const int64_t reduction = int64_t{1} << tile.level;
  const int64_t pieceTexels = std::max<int64_t>(1, kPixelsPerPiece / reduction / reduction);
  const int64_t across = std::min(texels.width, pieceTexels);
  const int64_t down = std::max<int64_t>(1, pieceTexels / across);
  for (int64_t y = 0; y < texels.height; y += down) {
    for (int64_t x = 0; x < texels.width; x += across) {
      throwIfCancelled(stop);
      const int64_t left = x * reduction;
      const int64_t top = y * reduction;
      renderer().render(
          {source.x + left, source.y + top, std::min(across * reduction, source.width - left),
           std::min(down * reduction, source.height - top)},
          reduction,
          result.rgba.data() + static_cast<size_t>(y) * stride +
              static_cast<size_t>(x * kBytesPerTexel),
          stride);
    }
  }
  return result;
}

}  // namespace vantrel
