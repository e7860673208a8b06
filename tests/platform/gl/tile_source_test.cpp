#include "platform/gl/tile_source.h"

#include <gtest/gtest.h>

#include "base/cancelled.h"
#include "support/bitmap_maker.h"

namespace vantrel {
namespace {

constexpr PixelLayout kRgba{ColorModel::Rgb, SampleFormat::UInt8, true};

Bitmap noise(int64_t width, int64_t height) {
  return testing::makeBitmap(width, height, kRgba, [](int64_t x, int64_t y, int channel) {
    return testing::scatter(x, y, channel) >> 8;
  });
}

TEST(TileSource, RendersEveryTileAsItLiesInTheWholeReducedPicture) {
  const Bitmap bitmap = noise(1100, 613);
  const TileSource source(bitmap);
  const DisplayRenderer renderer(bitmap);
  for (int level = 0; level <= source.pyramid().lastLevel(); ++level) {
    const int64_t reduction = int64_t{1} << level;
    const PixelRect size = DisplayRenderer::reducedSize(bitmap.bounds(), reduction);
    std::vector<uint8_t> whole(static_cast<size_t>(size.width * size.height * 4));
    renderer.render(bitmap.bounds(), reduction, whole.data(), static_cast<size_t>(size.width * 4));
    for (const TileId& tile : source.pyramid().tiles(level)) {
      const PixelRect texels = source.pyramid().texels(tile);
      const TilePixels pixels = source.render(tile, {});
      ASSERT_EQ(pixels.width, texels.width);
      ASSERT_EQ(pixels.height, texels.height);
      for (int64_t y = 0; y < texels.height; ++y) {
        const auto* expected = whole.data() + ((texels.y + y) * size.width + texels.x) * 4;
        const auto* row = pixels.rgba.data() + y * texels.width * 4;
        ASSERT_TRUE(std::equal(row, row + texels.width * 4, expected)) << level << ", row " << y;
      }
    }
  }
}

TEST(TileSource, StopsWhenAsked) {
  const TileSource source(noise(300, 200));
  std::stop_source stop;
  stop.request_stop();
  EXPECT_THROW(source.render({0, 0, 0}, stop.get_token()), Cancelled);
}

}  // namespace
}  // namespace vantrel
