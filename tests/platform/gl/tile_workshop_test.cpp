#include "platform/gl/tile_workshop.h"

#include <gtest/gtest.h>

#include <QSemaphore>
#include <QThreadPool>
#include <array>
#include <atomic>
#include <cstddef>

namespace vantrel {
namespace {

/// A grey picture whose rows all lie in the same memory, so that it may be huge.
Bitmap hugePicture(int64_t width, int64_t height) {
  const std::shared_ptr<std::byte> row(new std::byte[static_cast<size_t>(width)](),
                                       std::default_delete<std::byte[]>());
  return Bitmap(width, height, {ColorModel::Gray, SampleFormat::UInt8, false}, row, 0, {});
}

TEST(TileWorkshop, MakesTilesOfItsBitmap) {
  QSemaphore notified;
  TileWorkshop workshop(hugePicture(300, 500), [&] { notified.release(); });
  workshop.want({{0, 1, 0}});
  notified.acquire();
  const std::vector<TileLoader::Loaded> loaded = workshop.take();
  ASSERT_EQ(loaded.size(), 1U);
  EXPECT_EQ(loaded[0].tile, (TileId{0, 1, 0}));
  EXPECT_EQ(loaded[0].pixels.width, 45);
  EXPECT_EQ(loaded[0].pixels.height, 257);
}

TEST(TileWorkshop, LetsGoOfItsBitmapAndSaysNothingMoreOnceItIsGone) {
  std::atomic<bool> isGone = false;
  std::atomic<int> late = 0;
  std::weak_ptr<const std::byte> pixels;
  {
    const auto row = std::make_shared<std::array<std::byte, 40'000>>();
    const std::shared_ptr<const std::byte> first(row, row->data());
    pixels = first;
    TileWorkshop workshop(
        Bitmap(40'000, 30'000, {ColorModel::Gray, SampleFormat::UInt8, false}, first, 0, {}),
        [&] { late += isGone ? 1 : 0; });
    const TilePyramid pyramid(40'000, 30'000);
    workshop.want(pyramid.tiles(pyramid.overviewLevel()));
  }
  isGone = true;
  QThreadPool::globalInstance()->waitForDone();
  EXPECT_TRUE(pixels.expired());
  EXPECT_EQ(late, 0);
}

}  // namespace
}  // namespace vantrel
