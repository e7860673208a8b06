#pragma once

// Private to this folder.

#include <functional>
#include <vector>

#include "platform/gl/picture_placement.h"
#include "platform/gl/tile_pyramid.h"

namespace vantrel {

/// The tiles that show what is visible of a picture as sharp as it can be, those in the middle
/// first.
struct TilePlan {
  int level = 0;
  std::vector<TileId> tiles;

  /// Takes the coarsest level with at least one texel for each device pixel, or one that is coarser
  /// where that would take more than `mostBytes`.
  [[nodiscard]] static TilePlan of(const TilePyramid& pyramid, const PicturePlacement& placement,
                                   int64_t mostBytes);
};

/// The tiles of `level` that are visible, those in the middle first.
[[nodiscard]] std::vector<TileId> visibleTiles(const TilePyramid& pyramid,
                                               const PicturePlacement& placement, int level);
/// The same tiles, those next to the middle of what is visible first.
[[nodiscard]] std::vector<TileId> middleFirst(const TilePyramid& pyramid,
                                              const PicturePlacement& placement,
                                              const std::vector<TileId>& tiles);

/// A part of the picture that is drawn from a tile: that of the tile `region`, which is `tile` or
/// lies in it.
struct TilePatch {
  TileId tile;
  TileId region;
  friend bool operator==(const TilePatch&, const TilePatch&) = default;
};

/// What to draw of the tiles that are ready, no place twice: each tile of the plan, or else the
/// next finer tiles where they cover it, or else the next coarser one, or else what there is of
/// finer ones.
[[nodiscard]] std::vector<TilePatch> patches(const TilePyramid& pyramid, const TilePlan& plan,
                                             const std::function<bool(const TileId&)>& isReady);

}  // namespace vantrel
