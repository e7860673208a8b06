#include "platform/gl/tile_cache.h"

#include <gtest/gtest.h>

namespace vantrel {
namespace {

constexpr int64_t kBudget = 100;

TileId tile(int64_t column) {
  return {0, column, 0};
}

class TileCacheTest : public ::testing::Test {
 protected:
  /// Each in a frame of its own.
  void insert(int64_t column, int64_t bytes, bool isKept = false) {
    m_cache.beginFrame();
    m_cache.insert(tile(column), static_cast<uint32_t>(column), bytes, isKept);
  }

  TileCache m_cache{kBudget};
};

TEST_F(TileCacheTest, CountsWhatTexturesTake) {
  insert(1, 30);
  insert(2, 50);
  EXPECT_EQ(m_cache.bytes(), 80);
  EXPECT_TRUE(m_cache.hasRoom(20));
  EXPECT_FALSE(m_cache.hasRoom(21));
  EXPECT_EQ(m_cache.texture(tile(2)), 2U);
  EXPECT_FALSE(m_cache.contains(tile(3)));
}

TEST_F(TileCacheTest, ForgetsNothingWhileThereIsRoom) {
  insert(1, 30);
  insert(2, 50);
  m_cache.beginFrame();
  EXPECT_TRUE(m_cache.makeRoom(20).empty());
}

TEST_F(TileCacheTest, ForgetsWhatHasNotBeenUsedForTheLongestTime) {
  insert(1, 30);
  insert(2, 30);
  insert(3, 30);
  m_cache.beginFrame();
  m_cache.use(tile(1));
  m_cache.beginFrame();
  EXPECT_EQ(m_cache.makeRoom(40), (std::vector<uint32_t>{2}));
  EXPECT_EQ(m_cache.makeRoom(60), (std::vector<uint32_t>{3}));
  EXPECT_TRUE(m_cache.contains(tile(1)));
  EXPECT_EQ(m_cache.bytes(), 30);
}

TEST_F(TileCacheTest, KeepsWhatThisFrameUses) {
  insert(1, 40);
  insert(2, 40);
  m_cache.beginFrame();
  m_cache.use(tile(1));
  EXPECT_EQ(m_cache.makeRoom(90), (std::vector<uint32_t>{2}));
  EXPECT_TRUE(m_cache.contains(tile(1)));
  EXPECT_FALSE(m_cache.hasRoom(90));
}

TEST_F(TileCacheTest, KeepsTheOverview) {
  insert(1, 40, true);
  insert(2, 40);
  m_cache.beginFrame();
  EXPECT_EQ(m_cache.makeRoom(100), (std::vector<uint32_t>{2}));
  EXPECT_EQ(m_cache.clear(), (std::vector<uint32_t>{1}));
  EXPECT_EQ(m_cache.bytes(), 0);
}

}  // namespace
}  // namespace vantrel
