#pragma once

// Private to this folder.

#include <cstddef>
#include <cstdint>
#include <functional>
#include <vector>

#include "platform/image/bitmap.h"

namespace vantrel {

/// A tile of a picture reduced by 2^level; columns and rows count from the top left.
struct TileId {
  int level = 0;
  int64_t column = 0, row = 0;
  friend bool operator==(const TileId&, const TileId&) = default;
};

/// Bytes of a texel.
inline constexpr int64_t kBytesPerTexel = 4;

/// The pixels of a tile: 8-bit sRGB with premultiplied alpha, rows without gaps.
struct TilePixels {
  int width = 0, height = 0;
  std::vector<uint8_t> rgba;
};

/// A picture and its reductions by powers of two, down to one texel, each cut into tiles of
/// kTileSide² texels. A tile also holds the texels next to it, so that it can be filtered up to its
/// edges, and covers four tiles of the next finer level. A value.
class TilePyramid {
 public:
  /// Texels of a tile along each side without its border, and the width of that.
  static constexpr int64_t kTileSide = 256;
  static constexpr int64_t kBorder = 1;

  /// Of a picture of at least 1 × 1.
  TilePyramid(int64_t width, int64_t height);

  [[nodiscard]] int64_t width() const { return m_width; }
  [[nodiscard]] int64_t height() const { return m_height; }
  /// Levels run from 0, the picture itself, up to this one.
  [[nodiscard]] int lastLevel() const { return m_lastLevel; }
  /// The finest level that is small enough to be kept whole: some eight mebibytes.
  [[nodiscard]] int overviewLevel() const { return m_overviewLevel; }

  /// Tiles of a level, across and down.
  [[nodiscard]] int64_t columns(int level) const;
  [[nodiscard]] int64_t rows(int level) const;
  [[nodiscard]] bool contains(const TileId& tile) const;
  /// All tiles of a level, row by row.
  [[nodiscard]] std::vector<TileId> tiles(int level) const;
  /// The tile of a coarser level that covers `tile`.
  [[nodiscard]] static TileId ancestor(const TileId& tile, int level);
  /// The tiles of the next finer level that lie in `tile`, one to four of them; none of level 0.
  [[nodiscard]] std::vector<TileId> children(const TileId& tile) const;

  /// The source pixels of a tile without its border.
  [[nodiscard]] PixelRect source(const TileId& tile) const;
  /// The texels of its level that a tile holds, border included, which ends where the picture ends.
  [[nodiscard]] PixelRect texels(const TileId& tile) const;
  /// The source pixels of texels().
  [[nodiscard]] PixelRect texelSource(const TileId& tile) const;
  /// What its texture takes.
  [[nodiscard]] int64_t bytes(const TileId& tile) const;

 private:
  int64_t m_width, m_height;
  int m_lastLevel = 0, m_overviewLevel = 0;
};

}  // namespace vantrel

template <>
struct std::hash<vantrel::TileId> {
  size_t operator()(const vantrel::TileId& tile) const {
    uint64_t mixed = static_cast<uint64_t>(tile.column) * 0x9E3779B97F4A7C15U;
    mixed = (mixed ^ mixed >> 32 ^ static_cast<uint64_t>(tile.row)) * 0x9E3779B97F4A7C15U;
    return static_cast<size_t>(mixed ^ mixed >> 29) + static_cast<size_t>(tile.level);
  }
};
