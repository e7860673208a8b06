#pragma once

// Private to this folder.

#include <array>
#include <cstdint>
#include <vector>

#include "platform/gl/picture_placement.h"
#include "platform/image/bitmap.h"

namespace vantrel {

/// A part of a picture and the texture that it is drawn from.
struct TileQuad {
  uint32_t texture = 0;
  /// The source pixels to draw.
  PixelRect region;
  /// The texels that the texture holds, each `reduction` source pixels wide and high.
  PixelRect texels;
  int64_t reduction = 1;
};

/// A corner of what is visible of a quad, as the graphics card gets it. Its numbers are small, so
/// that 32 bits are enough wherever in the picture the tile lies.
struct TileCorner {
  /// Device pixels, y downwards.
  std::array<float, 2> device;
  /// In texels from the top left corner of the texture.
  std::array<float, 2> texel;
  /// Texels to take the mean of for a device pixel, from 1 to 2; the same at all corners.
  std::array<float, 2> footprint;
  /// The first texel, counted from firstPixel() of the picture; the same at all corners.
  std::array<float, 2> origin;
};

/// The source pixel, at or a little before the first visible one, from which the pixels of
/// `sourcePixelTable` and the origins of unreduced quads are counted.
[[nodiscard]] int64_t firstPixel(const PlacedAxis& axis);

/// Top left, top right, bottom left, bottom right; none where nothing is visible.
[[nodiscard]] std::vector<TileCorner> cornersOf(const TileQuad& quad,
                                                const PicturePlacement& placement);

/// For each visible device pixel of an axis the source pixel that it shows when magnified.
[[nodiscard]] std::vector<float> sourcePixelTable(const PlacedAxis& axis);

}  // namespace vantrel
