#include "platform/image/scaled_renderer.h"

#include <gtest/gtest.h>

#include <array>
#include <memory>
#include <utility>
#include <vector>

#include "base/cancelled.h"

namespace vantrel {
namespace {

using Pixel = std::array<uint8_t, 4>;

/// An sRGB picture, its samples from `value`.
template <class Value>
Bitmap picture(int64_t width, int64_t height, const Value& value) {
  const auto stride = static_cast<size_t>(width) * 3;
  const std::shared_ptr<std::byte> pixels(new std::byte[stride * static_cast<size_t>(height)],
                                          std::default_delete<std::byte[]>());
  for (int64_t y = 0; y < height; ++y) {
    for (int64_t x = 0; x < width; ++x) {
      for (int64_t channel = 0; channel < 3; ++channel) {
        pixels.get()[static_cast<size_t>(y) * stride + static_cast<size_t>(x * 3 + channel)] =
            static_cast<std::byte>(value(x, y, channel));
      }
    }
  }
  return {width, height, {ColorModel::Rgb, SampleFormat::UInt8, false}, pixels, stride, {}};
}

std::vector<Pixel> rendered(ScaledRenderer& renderer, int64_t width, int64_t height) {
  std::vector<Pixel> pixels(static_cast<size_t>(width * height));
  renderer.render(width, height, pixels.data()->data(), static_cast<size_t>(width) * 4, {});
  return pixels;
}

TEST(ScaledRenderer, KeepsEachPixelAtFullSize) {
  ScaledRenderer renderer(picture(
      7, 5, [](int64_t x, int64_t y, int64_t channel) { return x * 30 + y * 5 + channel; }));
  const std::vector<Pixel> pixels = rendered(renderer, 7, 5);
  for (int64_t y = 0; y < 5; ++y) {
    for (int64_t x = 0; x < 7; ++x) {
      const auto first = static_cast<uint8_t>(x * 30 + y * 5);
      const Pixel expected{first, static_cast<uint8_t>(first + 1), static_cast<uint8_t>(first + 2),
                           255};
      EXPECT_EQ(pixels[static_cast<size_t>(y * 7 + x)], expected) << x << ' ' << y;
    }
  }
}

TEST(ScaledRenderer, AveragesTheAreaOfEachPixel) {
  // Columns 0, 60, 120 onto two: (0 + 60 / 2) / 1.5 and (60 / 2 + 120) / 1.5.
  ScaledRenderer renderer(picture(3, 1, [](int64_t x, int64_t, int64_t) { return x * 60; }));
  const std::vector<Pixel> pixels = rendered(renderer, 2, 1);
  EXPECT_EQ(pixels[0], (Pixel{20, 20, 20, 255}));
  EXPECT_EQ(pixels[1], (Pixel{100, 100, 100, 255}));
}

TEST(ScaledRenderer, AveragesAWholePictureToOnePixel) {
  ScaledRenderer renderer(
      picture(640, 480, [](int64_t x, int64_t y, int64_t) { return (x + y) % 2 ? 200 : 100; }));
  EXPECT_EQ(rendered(renderer, 1, 1)[0], (Pixel{150, 150, 150, 255}));
}

TEST(ScaledRenderer, KeepsAPlainPicturePlainAtAnySize) {
  ScaledRenderer renderer(picture(1237, 911, [](int64_t, int64_t, int64_t) { return 77; }));
  for (const auto& [width, height] :
       {std::pair{1237, 911}, {1236, 910}, {700, 516}, {91, 67}, {5, 900}, {1237, 1}, {1, 911}}) {
    for (const Pixel& pixel : rendered(renderer, width, height)) {
      ASSERT_EQ(pixel, (Pixel{77, 77, 77, 255})) << width << " x " << height;
    }
  }
}

TEST(ScaledRenderer, RendersTheSameAfterAnotherSize) {
  const Bitmap noise = picture(400, 300, [](int64_t x, int64_t y, int64_t channel) {
    return (x * 7 + y * 13 + channel * 31) % 256;
  });
  ScaledRenderer fresh(noise);
  ScaledRenderer used(noise);
  rendered(used, 90, 70);
  rendered(used, 399, 299);
  EXPECT_EQ(rendered(used, 120, 90), rendered(fresh, 120, 90));
}

TEST(ScaledRenderer, StopsAndCanBeUsedAgain) {
  ScaledRenderer renderer(picture(50, 50, [](int64_t, int64_t, int64_t) { return 9; }));
  std::stop_source stop;
  stop.request_stop();
  std::array<uint8_t, 400> output{};
  EXPECT_THROW(renderer.render(10, 10, output.data(), 40, stop.get_token()), Cancelled);
  EXPECT_EQ(rendered(renderer, 10, 10)[0], (Pixel{9, 9, 9, 255}));
}

}  // namespace
}  // namespace vantrel
