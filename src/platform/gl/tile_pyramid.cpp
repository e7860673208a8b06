#include "platform/gl/tile_pyramid.h"

#include <algorithm>
#include <utility>

namespace vantrel {
namespace {

constexpr int64_t kMostOverviewTexels = int64_t{2} << 20;
constexpr int64_t kMostOverviewTiles = 64;

/// The number of steps that cover `length`, the last one perhaps in part.
int64_t steps(int64_t length, int64_t step) {
  return (length - 1) / step + 1;
}

int64_t reduction(int level) {
  return int64_t{1} << level;
}

}  // namespace

TilePyramid::TilePyramid(int64_t width, int64_t height) : m_width(width), m_height(height) {
  while (reduction(m_lastLevel) < std::max(width, height))
    ++m_lastLevel;
  const auto isSmall = [this](int level) {
    const int64_t across = steps(m_width, reduction(level));
    const int64_t down = steps(m_height, reduction(level));
    return across <= kMostOverviewTexels / down &&
           columns(level) * rows(level) <= kMostOverviewTiles;
  };
  while (!isSmall(m_overviewLevel))
    ++m_overviewLevel;
}

int64_t TilePyramid::columns(int level) const {
  return steps(m_width, kTileSide * reduction(level));
}

int64_t TilePyramid::rows(int level) const {
  return steps(m_height, kTileSide * reduction(level));
}

bool TilePyramid::contains(const TileId& tile) const {
  return tile.level >= 0 && tile.level <= m_lastLevel && tile.column >= 0 && tile.row >= 0 &&
         tile.column < columns(tile.level) && tile.row < rows(tile.level);
}

std::vector<TileId> TilePyramid::tiles(int level) const {
  std::vector<TileId> result;
  for (int64_t row = 0; row < rows(level); ++row) {
    for (int64_t column = 0; column < columns(level); ++column) {
      result.push_back({level, column, row});
    }
  }
  return result;
}

TileId TilePyramid::ancestor(const TileId& tile, int level) {
  const int up = level - tile.level;
  return {level, tile.column >> up, tile.row >> up};
}

std::vector<TileId> TilePyramid::children(const TileId& tile) const {
  std::vector<TileId> result;
  for (const int64_t row : {tile.row * 2, tile.row * 2 + 1}) {
    for (const int64_t column : {tile.column * 2, tile.column * 2 + 1}) {
      const TileId child{tile.level - 1, column, row};
      if (contains(child)) result.push_back(child);
    }
  }
  return result;
}

PixelRect TilePyramid::source(const TileId& tile) const {
  const int64_t side = kTileSide * reduction(tile.level);
  const int64_t x = tile.column * side;
  const int64_t y = tile.row * side;
  return {x, y, std::min(side, m_width - x), std::min(side, m_height - y)};
}

PixelRect TilePyramid::texels(const TileId& tile) const {
  const auto interval = [](int64_t index, int64_t all) {
    const int64_t begin = std::max<int64_t>(0, index * kTileSide - kBorder);
    return std::pair(begin, std::min(all, (index + 1) * kTileSide + kBorder) - begin);
  };
  const auto [x, width] = interval(tile.column, steps(m_width, reduction(tile.level)));
  const auto [y, height] = interval(tile.row, steps(m_height, reduction(tile.level)));
  return {x, y, width, height};
}

PixelRect TilePyramid::texelSource(const TileId& tile) const {
  const PixelRect area = texels(tile);
  const int64_t side = reduction(tile.level);
  const int64_t x = area.x * side;
  const int64_t y = area.y * side;
  return {x, y, std::min(area.width * side, m_width - x),
          std::min(area.height * side, m_height - y)};
}

int64_t TilePyramid::bytes(const TileId& tile) const {
  const PixelRect area = texels(tile);
  return area.width * area.height * kBytesPerTexel;
}

}  // namespace vantrel
