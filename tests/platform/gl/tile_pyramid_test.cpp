#include "platform/gl/tile_pyramid.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <utility>

namespace vantrel {
namespace {

const std::vector<std::pair<int64_t, int64_t>> kSizes = {
    {1, 1}, {256, 256}, {257, 1}, {1, 20'000}, {30'000, 100}, {12'000, 8'400}, {4'000'000'000, 1}};

TEST(TilePyramid, EndsWithASingleTexel) {
  EXPECT_EQ(TilePyramid(1, 1).lastLevel(), 0);
  EXPECT_EQ(TilePyramid(2, 1).lastLevel(), 1);
  EXPECT_EQ(TilePyramid(12'000, 8'400).lastLevel(), 14);
  EXPECT_EQ(TilePyramid(12'000, 8'400).texels({14, 0, 0}), (PixelRect{0, 0, 1, 1}));
}

TEST(TilePyramid, CoversThePictureOnceOnEveryLevel) {
  for (const auto& [width, height] : {std::pair<int64_t, int64_t>{1700, 900}, {30'000, 100}}) {
    const TilePyramid pyramid(width, height);
    for (int level = 0; level <= pyramid.lastLevel(); ++level) {
      int64_t area = 0;
      for (const TileId& tile : pyramid.tiles(level)) {
        const PixelRect source = pyramid.source(tile);
        EXPECT_GT(source.width, 0);
        EXPECT_LE(source.x + source.width, width);
        EXPECT_LE(source.y + source.height, height);
        area += source.width * source.height;
      }
      EXPECT_EQ(area, width * height) << level;
    }
  }
}

TEST(TilePyramid, GivesTilesABorderExceptWhereThePictureEnds) {
  const TilePyramid pyramid(1025, 700);
  EXPECT_EQ(pyramid.texels({0, 0, 0}), (PixelRect{0, 0, 257, 257}));
  EXPECT_EQ(pyramid.texels({0, 1, 2}), (PixelRect{255, 511, 258, 189}));
  EXPECT_EQ(pyramid.texels({1, 2, 1}), (PixelRect{511, 255, 2, 95}));
  EXPECT_EQ(pyramid.texelSource({1, 2, 1}), (PixelRect{1022, 510, 3, 190}));
  EXPECT_EQ(pyramid.bytes({1, 2, 1}), 2 * 95 * 4);
}

TEST(TilePyramid, PutsFourTilesIntoOne) {
  const TilePyramid pyramid(1025, 700);
  EXPECT_EQ(pyramid.children({1, 0, 0}),
            (std::vector<TileId>{{0, 0, 0}, {0, 1, 0}, {0, 0, 1}, {0, 1, 1}}));
  EXPECT_EQ(pyramid.children({1, 2, 1}), (std::vector<TileId>{{0, 4, 2}}));
  EXPECT_TRUE(pyramid.children({0, 0, 0}).empty());
  for (const TileId& tile : pyramid.tiles(0)) {
    const std::vector<TileId> siblings = pyramid.children(TilePyramid::ancestor(tile, 1));
    EXPECT_EQ(std::count(siblings.begin(), siblings.end(), tile), 1);
  }
}

TEST(TilePyramid, KeepsTheOverviewSmallForPicturesOfAnyShape) {
  for (const auto& [width, height] : kSizes) {
    const TilePyramid pyramid(width, height);
    const std::vector<TileId> overview = pyramid.tiles(pyramid.overviewLevel());
    int64_t bytes = 0;
    for (const TileId& tile : overview)
      bytes += pyramid.bytes(tile);
    EXPECT_LE(overview.size(), 64U) << width << " x " << height;
    EXPECT_LE(bytes, 9 << 20) << width << " x " << height;
  }
  EXPECT_EQ(TilePyramid(1400, 1400).overviewLevel(), 0);
}

}  // namespace
}  // namespace vantrel
