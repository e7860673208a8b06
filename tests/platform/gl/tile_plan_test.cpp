#include "platform/gl/tile_plan.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <set>

namespace vantrel {
namespace {

constexpr int64_t kPlenty = int64_t{1} << 30;

PicturePlacement placed(const TilePyramid& pyramid, const QSize& target, const QPointF& origin,
                        double scale) {
  const QRectF frame(origin, QSizeF(static_cast<double>(pyramid.width()) * scale,
                                    static_cast<double>(pyramid.height()) * scale));
  return PicturePlacement::of({target, frame, frame, 1}, pyramid.width(), pyramid.height()).value();
}

TEST(TilePlan, TakesTheCoarsestLevelWithATexelForEachDevicePixel) {
  const TilePyramid pyramid(12'000, 8'400);
  const auto level = [&](double scale) {
    return TilePlan::of(pyramid, placed(pyramid, {1280, 800}, {0, 0}, scale), kPlenty).level;
  };
  EXPECT_EQ(level(40), 0);
  EXPECT_EQ(level(1), 0);
  EXPECT_EQ(level(0.51), 0);
  EXPECT_EQ(level(0.5), 1);
  EXPECT_EQ(level(0.1), 3);
  EXPECT_EQ(level(1e-9), pyramid.lastLevel());
}

TEST(TilePlan, TakesWhatIsVisibleAndNoMore) {
  const TilePyramid pyramid(12'000, 8'400);
  const TilePlan plan =
      TilePlan::of(pyramid, placed(pyramid, {300, 200}, {-255, -256}, 1), kPlenty);
  std::set<std::pair<int64_t, int64_t>> tiles;
  for (const TileId& tile : plan.tiles)
    tiles.emplace(tile.column, tile.row);
  EXPECT_EQ(tiles, (std::set<std::pair<int64_t, int64_t>>{{0, 1}, {1, 1}, {2, 1}}));
}

TEST(TilePlan, BeginsInTheMiddle) {
  const TilePyramid pyramid(12'000, 8'400);
  const TilePlan plan =
      TilePlan::of(pyramid, placed(pyramid, {2560, 2560}, {-512, -512}, 1), kPlenty);
  ASSERT_EQ(plan.tiles.size(), 100U);
  const TileId& first = plan.tiles.front();
  EXPECT_TRUE(first.column == 6 || first.column == 7);
  EXPECT_TRUE(first.row == 6 || first.row == 7);
  const TileId& last = plan.tiles.back();
  EXPECT_TRUE(last.column == 2 || last.column == 11);
  EXPECT_TRUE(last.row == 2 || last.row == 11);
}

TEST(TilePlan, TakesACoarserLevelWhereTilesWouldTakeTooMuch) {
  const TilePyramid pyramid(30'000, 30'000);
  const PicturePlacement placement = placed(pyramid, {8192, 8192}, {0, 0}, 0.51);
  EXPECT_EQ(TilePlan::of(pyramid, placement, kPlenty * 2).level, 0);
  const TilePlan plan = TilePlan::of(pyramid, placement, int64_t{256} << 20);
  EXPECT_EQ(plan.level, 2);
  int64_t bytes = 0;
  for (const TileId& tile : plan.tiles)
    bytes += pyramid.bytes(tile);
  EXPECT_LE(bytes, int64_t{256} << 20);
}

class PatchesTest : public ::testing::Test {
 protected:
  std::vector<TilePatch> of(int level, const std::vector<TileId>& ready) {
    const double scale = 1.0 / (1 << level);
    const TilePlan plan =
        TilePlan::of(m_pyramid, placed(m_pyramid, {4096, 4096}, {0, 0}, scale), kPlenty);
    return patches(m_pyramid, plan, [&](const TileId& tile) {
      return std::find(ready.begin(), ready.end(), tile) != ready.end();
    });
  }

  // Two tiles wide and high, and one on level 1.
  TilePyramid m_pyramid{500, 500};
};

TEST_F(PatchesTest, AreTheTilesOfThePlanWhereTheyAreReady) {
  EXPECT_EQ(of(1, {{1, 0, 0}, {0, 0, 0}, {2, 0, 0}}),
            (std::vector<TilePatch>{{{1, 0, 0}, {1, 0, 0}}}));
}

TEST_F(PatchesTest, AreOfTheFinestCoarserTileThatIsReady) {
  const std::vector<TilePatch> result = of(0, {{0, 1, 1}, {2, 0, 0}, {3, 0, 0}});
  EXPECT_EQ(result.size(), 4U);
  for (const TilePatch& patch : result) {
    const TileId own{0, 1, 1};
    EXPECT_EQ(patch.tile, patch.region == own ? own : (TileId{2, 0, 0}));
  }
}

TEST_F(PatchesTest, AreOfFinerTilesWhereTheseCoverTheRegion) {
  const std::vector<TileId> finer = m_pyramid.tiles(0);
  std::vector<TileId> ready = finer;
  ready.push_back({2, 0, 0});
  EXPECT_EQ(of(1, ready).size(), 4U);
  ready.erase(ready.begin());
  EXPECT_EQ(of(1, ready), (std::vector<TilePatch>{{{2, 0, 0}, {1, 0, 0}}}));
}

TEST_F(PatchesTest, AreOfSomeFinerTilesWhereThereIsNothingElse) {
  EXPECT_EQ(of(1, {{0, 1, 0}}), (std::vector<TilePatch>{{{0, 1, 0}, {0, 1, 0}}}));
  EXPECT_TRUE(of(1, {}).empty());
}

TEST_F(PatchesTest, AreOfTheOverviewHoweverFarThePictureIsReduced) {
  EXPECT_EQ(of(7, m_pyramid.tiles(m_pyramid.overviewLevel())).size(), 4U);
}

}  // namespace
}  // namespace vantrel
