#include "platform/gl/tile_loader.h"

#include <gtest/gtest.h>

#include <QSemaphore>
#include <algorithm>
#include <new>
#include <set>

#include "base/cancelled.h"

namespace vantrel {
namespace {

TileId tile(int64_t column) {
  return {0, column, 0};
}

/// Waits for the loader's threads without a clock.
class TileLoaderTest : public ::testing::Test {
 protected:
  TilePixels pixelsOf(const TileId& id) { return {static_cast<int>(id.column), 1, {}}; }

  /// Blocks until it is told to go on, or to stop.
  TilePixels renderGated(const TileId& id, const std::stop_token& stop) {
    const std::stop_callback wake(stop, [this] { m_gate.release(); });
    m_begun.release();
    m_gate.acquire();
    throwIfCancelled(stop);
    return pixelsOf(id);
  }

  /// Takes until there are `count` tiles.
  std::vector<int64_t> takeColumns(TileLoader& loader, size_t count) {
    std::vector<int64_t> columns;
    while (columns.size() < count) {
      m_notified.acquire();
      for (const TileLoader::Loaded& loaded : loader.take()) {
        EXPECT_EQ(loaded.pixels.width, loaded.tile.column);
        columns.push_back(loaded.tile.column);
      }
    }
    return columns;
  }

  TileLoader::Notify notify() {
    return [this] { m_notified.release(); };
  }
  TileLoader::Render gated() {
    return [this](const TileId& id, const std::stop_token& stop) { return renderGated(id, stop); };
  }

  QSemaphore m_begun, m_gate, m_notified;
};

TEST_F(TileLoaderTest, MakesTheMostWantedFirst) {
  TileLoader loader(gated(), notify(), 1);
  loader.want({tile(3), tile(1), tile(2)});
  m_gate.release(3);
  EXPECT_EQ(takeColumns(loader, 3), (std::vector<int64_t>{3, 1, 2}));
}

TEST_F(TileLoaderTest, MakesWhatIsWantedOnSeveralThreads) {
  TileLoader loader(gated(), notify(), 3);
  loader.want({tile(1), tile(2), tile(3), tile(4)});
  for (int begun = 0; begun < 3; ++begun)
    m_begun.acquire();
  m_gate.release(4);
  const std::vector<int64_t> columns = takeColumns(loader, 4);
  EXPECT_EQ(std::set<int64_t>(columns.begin(), columns.end()), (std::set<int64_t>{1, 2, 3, 4}));
}

TEST_F(TileLoaderTest, NeverMakesWhatIsNotWantedAnyMore) {
  TileLoader loader(gated(), notify(), 1);
  loader.want({tile(1), tile(2), tile(3)});
  m_begun.acquire();
  loader.want({tile(1), tile(4)});
  m_gate.release(2);
  EXPECT_EQ(takeColumns(loader, 2), (std::vector<int64_t>{1, 4}));
}

TEST_F(TileLoaderTest, GivesUpWhatItIsMakingWhenThatIsNotWantedAnyMore) {
  TileLoader loader(gated(), notify(), 1);
  loader.want({tile(1)});
  m_begun.acquire();
  loader.want({tile(2)});
  m_begun.acquire();
  m_gate.release();
  EXPECT_EQ(takeColumns(loader, 1), (std::vector<int64_t>{2}));
}

TEST_F(TileLoaderTest, MakesWhatItGaveUpWhenThatIsWantedAgain) {
  TileLoader loader(gated(), notify(), 1);
  loader.want({tile(1)});
  m_begun.acquire();
  loader.want({});
  loader.want({tile(1)});
  m_begun.acquire();
  m_gate.release();
  EXPECT_EQ(takeColumns(loader, 1), (std::vector<int64_t>{1}));
}

TEST_F(TileLoaderTest, MakesNothingTwice) {
  TileLoader loader(gated(), notify(), 1);
  loader.want({tile(1), tile(2)});
  m_begun.acquire();
  loader.want({tile(1), tile(2)});
  m_gate.release();
  m_begun.acquire();
  // The first one waits to be taken, the second one is being made.
  loader.want({tile(1), tile(2), tile(3)});
  m_gate.release(2);
  EXPECT_EQ(takeColumns(loader, 3), (std::vector<int64_t>{1, 2, 3}));
}

TEST_F(TileLoaderTest, GoesOnAfterATileThatCannotBeMade) {
  TileLoader loader(
      [this](const TileId& id, const std::stop_token&) {
        if (id.column == 1) throw std::bad_alloc();
        return pixelsOf(id);
      },
      notify(), 1);
  loader.want({tile(1), tile(2)});
  EXPECT_EQ(takeColumns(loader, 1), (std::vector<int64_t>{2}));
}

TEST_F(TileLoaderTest, EndsWhileTilesAreMade) {
  TileLoader loader(gated(), notify(), 2);
  loader.want({tile(1), tile(2), tile(3)});
  m_begun.acquire();
  m_begun.acquire();
}

}  // namespace
}  // namespace vantrel
