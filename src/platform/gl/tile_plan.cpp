#include "platform/gl/tile_plan.h"

#include <algorithm>
#include <cmath>
#include <optional>
#include <utility>

namespace vantrel {
namespace {

/// Added to a number of levels before it is rounded down, against the rounding of its logarithm.
constexpr double kRounding = 1e-6;
/// How many levels finer the tiles may be that stand in for one, unless they belong to the
/// overview.
constexpr int kFinerLevels = 2;

int levelFor(const TilePyramid& pyramid, const PicturePlacement& placement) {
  const double reduction = 1 / std::max(placement.x.scale, placement.y.scale);
  const double level = std::floor(std::log2(reduction) + kRounding);
  return static_cast<int>(std::clamp<double>(level, 0, pyramid.lastLevel()));
}

double distance(const PicturePlacement& placement, const PixelRect& source) {
  const auto along = [](const PlacedAxis& axis, int64_t begin, int64_t length) {
    const double middle = static_cast<double>(axis.visible.begin + axis.visible.end) / 2;
    const double offset = static_cast<double>(begin) + static_cast<double>(length) / 2;
    return axis.start + offset * axis.scale - middle;
  };
  return std::hypot(along(placement.x, source.x, source.width),
                    along(placement.y, source.y, source.height));
}

/// The columns or rows of a level that some source pixels lie in.
Interval tileRange(const Interval& source, int level) {
  const int64_t side = TilePyramid::kTileSide << level;
  return {source.begin / side, (source.end - 1) / side + 1};
}

/// No less than what the visible tiles of a level take.
int64_t visibleBytes(const PicturePlacement& placement, int level) {
  constexpr int64_t kSide = TilePyramid::kTileSide + 2 * TilePyramid::kBorder;
  const Interval columns = tileRange(placement.x.visibleSource(), level);
  const Interval rows = tileRange(placement.y.visibleSource(), level);
  return (columns.end - columns.begin) * (rows.end - rows.begin) * kSide * kSide * kBytesPerTexel;
}

/// Appends patches that cover `tile` with finer ones as far as they are ready.
void addFiner(const TilePyramid& pyramid, const TileId& tile, int finest,
              const std::function<bool(const TileId&)>& isReady, std::vector<TilePatch>& result) {
  for (const TileId& child : pyramid.children(tile)) {
    if (isReady(child)) {
      result.push_back({child, child});
    } else if (child.level > finest) {
      addFiner(pyramid, child, finest, isReady, result);
    }
  }
}

std::optional<TileId> readyAncestor(const TilePyramid& pyramid, const TileId& tile,
                                    const std::function<bool(const TileId&)>& isReady) {
  for (int level = tile.level + 1; level <= pyramid.lastLevel(); ++level) {
    const TileId ancestor = TilePyramid::ancestor(tile, level);
    if (isReady(ancestor)) return ancestor;
  }
  return std::nullopt;
}

}  // namespace

TilePlan TilePlan::of(const TilePyramid& pyramid, const PicturePlacement& placement,
                      int64_t mostBytes) {
  int level = levelFor(pyramid, placement);
  while (level < pyramid.lastLevel() && visibleBytes(placement, level) > mostBytes)
    ++level;
  return {level, visibleTiles(pyramid, placement, level)};
}

std::vector<TileId> visibleTiles(const TilePyramid& pyramid, const PicturePlacement& placement,
                                 int level) {
  const Interval columns = tileRange(placement.x.visibleSource(), level);
  const Interval rows = tileRange(placement.y.visibleSource(), level);
  std::vector<TileId> tiles;
  for (int64_t row = rows.begin; row < rows.end; ++row) {
    for (int64_t column = columns.begin; column < columns.end; ++column) {
      const TileId tile{level, column, row};
      if (placement.device(pyramid.source(tile)).width > 0) tiles.push_back(tile);
    }
  }
  return middleFirst(pyramid, placement, tiles);
}

std::vector<TileId> middleFirst(const TilePyramid& pyramid, const PicturePlacement& placement,
                                const std::vector<TileId>& tiles) {
  std::vector<std::pair<double, TileId>> ranked;
  ranked.reserve(tiles.size());
  for (const TileId& tile : tiles) {
    ranked.emplace_back(distance(placement, pyramid.source(tile)), tile);
  }
  std::stable_sort(ranked.begin(), ranked.end(),
                   [](const auto& a, const auto& b) { return a.first < b.first; });
  std::vector<TileId> result;
  result.reserve(ranked.size());
  for (const auto& [rank, tile] : ranked)
    result.push_back(tile);
  return result;
}

std::vector<TilePatch> patches(const TilePyramid& pyramid, const TilePlan& plan,
                               const std::function<bool(const TileId&)>& isReady) {
  const int finest = std::min(plan.level - kFinerLevels, pyramid.overviewLevel());
  std::vector<TilePatch> result;
  for (const TileId& tile : plan.tiles) {
    if (isReady(tile)) {
      result.push_back({tile, tile});
      continue;
    }
    const std::vector<TileId> children = pyramid.children(tile);
    const bool isCovered =
        !children.empty() && std::all_of(children.begin(), children.end(), isReady);
    const std::optional<TileId> ancestor =
        isCovered ? std::nullopt : readyAncestor(pyramid, tile, isReady);
    if (ancestor) {
      result.push_back({*ancestor, tile});
    } else {
      addFiner(pyramid, tile, finest, isReady, result);
    }
  }
  return result;
}

}  // namespace vantrel
