#include "platform/gl/tile_quads.h"

#include <algorithm>

namespace vantrel {

int64_t firstPixel(const PlacedAxis& axis) {
  return axis.visibleSource().begin;
}

std::vector<TileCorner> cornersOf(const TileQuad& quad, const PicturePlacement& placement) {
  const PixelRect device = placement.device(quad.region);
  if (device.width == 0) return {};
  const auto side = static_cast<double>(quad.reduction);
  const auto texel = [side](const PlacedAxis& axis, int64_t at, int64_t origin) {
    return static_cast<float>(axis.source(static_cast<double>(at)) / side -
                              static_cast<double>(origin));
  };
  const auto footprint = [side](const PlacedAxis& axis) {
    return static_cast<float>(std::clamp(1 / (axis.scale * side), 1.0, 2.0));
  };
  TileCorner corner{};
  corner.footprint = {footprint(placement.x), footprint(placement.y)};
  corner.origin = {static_cast<float>(quad.texels.x - firstPixel(placement.x)),
                   static_cast<float>(quad.texels.y - firstPixel(placement.y))};
  std::vector<TileCorner> corners;
  for (const int64_t y : {device.y, device.y + device.height}) {
    for (const int64_t x : {device.x, device.x + device.width}) {
      corner.device = {static_cast<float>(x), static_cast<float>(y)};
      corner.texel = {texel(placement.x, x, quad.texels.x), texel(placement.y, y, quad.texels.y)};
      corners.push_back(corner);
    }
  }
  return corners;
}

std::vector<float> sourcePixelTable(const PlacedAxis& axis) {
  const int64_t first = firstPixel(axis);
  std::vector<float> table;
  for (const int64_t pixel : axis.sourcePixels()) {
    table.push_back(static_cast<float>(pixel - first));
  }
  return table;
}

}  // namespace vantrel
