#include "platform/image/display_renderer.h"

#include <gmock/gmock.h>
#include <lcms2.h>

#include <cmath>
#include <cstring>
#include <limits>
#include <thread>

#include "platform/image/color_profile.h"
#include "support/icc_maker.h"

namespace vantrel {
namespace {

using ::testing::Each;
using ::testing::ElementsAre;

using Bytes = std::vector<uint8_t>;

template <typename Sample>
Bitmap picture(int64_t width, int64_t height, PixelLayout layout,
               const std::vector<Sample>& samples, BitmapColor color = {}) {
  const size_t bytes = samples.size() * sizeof(Sample);
  std::shared_ptr<std::byte> pixels(new std::byte[bytes], std::default_delete<std::byte[]>());
  std::memcpy(pixels.get(), samples.data(), bytes);
  return Bitmap(width, height, layout, pixels,
                static_cast<size_t>(width) * static_cast<size_t>(layout.bytesPerPixel()),
                std::move(color));
}

BitmapColor profiled(std::vector<uint8_t> profile) {
  BitmapColor color;
  color.iccProfile = std::move(profile);
  return color;
}

Bytes rendered(const Bitmap& bitmap, const PixelRect& area, int64_t reduction = 1) {
  const DisplayRenderer renderer(bitmap);
  const PixelRect size = DisplayRenderer::reducedSize(area, reduction);
  Bytes output(static_cast<size_t>(size.width * size.height * 4), 0xEE);
  renderer.render(area, reduction, output.data(), static_cast<size_t>(size.width) * 4);
  return output;
}

Bytes rendered(const Bitmap& bitmap, int64_t reduction = 1) {
  return rendered(bitmap, bitmap.bounds(), reduction);
}

TEST(DisplayRenderer, RgbWithoutProfileIsShownAsItIs) {
  const auto bitmap = picture<uint8_t>(2, 1, {}, {1, 2, 3, 250, 251, 252});
  EXPECT_THAT(rendered(bitmap), ElementsAre(1, 2, 3, 255, 250, 251, 252, 255));
}

TEST(DisplayRenderer, AlphaIsMultipliedIn) {
  const auto bitmap = picture<uint8_t>(3, 1, {ColorModel::Rgb, SampleFormat::UInt8, true},
                                       {200, 100, 50, 128, 255, 255, 255, 0, 9, 8, 7, 255});
  EXPECT_THAT(rendered(bitmap), ElementsAre(100, 50, 25, 128, 0, 0, 0, 0, 9, 8, 7, 255));
}

TEST(DisplayRenderer, GreyFillsTheThreeChannels) {
  EXPECT_THAT(rendered(picture<uint8_t>(2, 1, {ColorModel::Gray}, {0, 77})),
              ElementsAre(0, 0, 0, 255, 77, 77, 77, 255));
  EXPECT_THAT(rendered(picture<uint16_t>(2, 1, {ColorModel::Gray, SampleFormat::UInt16, true},
                                         {65535, 65535, 51400, 32896})),
              ElementsAre(255, 255, 255, 255, 100, 100, 100, 128));
}

TEST(DisplayRenderer, SixteenBitsAreRounded) {
  const auto bitmap =
      picture<uint16_t>(1, 1, {ColorModel::Rgb, SampleFormat::UInt16}, {128, 129, 65406});
  EXPECT_THAT(rendered(bitmap), ElementsAre(0, 1, 254, 255));
}

TEST(DisplayRenderer, FloatIsLimitedToItsRange) {
  const float nan = std::numeric_limits<float>::quiet_NaN();
  const auto bitmap = picture<float>(2, 1, {ColorModel::Rgb, SampleFormat::Float32},
                                     {-1, 0.5F, 7, nan, 1, INFINITY});
  EXPECT_THAT(rendered(bitmap), ElementsAre(0, 128, 255, 255, 0, 255, 255, 255));
}

TEST(DisplayRenderer, InkWithoutProfileTakesLightAway) {
  const auto bitmap = picture<uint8_t>(4, 1, {ColorModel::Cmyk},
                                       {0, 0, 0, 0, 255, 0, 0, 0, 0, 0, 0, 255, 0, 51, 102, 128});
  EXPECT_THAT(rendered(bitmap), ElementsAre(255, 255, 255, 255, 0, 255, 255, 255, 0, 0, 0, 255,  //
                                            127, 102, 76, 255));
}

TEST(DisplayRenderer, InkGoesThroughItsProfile) {
  const auto bitmap =
      picture<uint8_t>(3, 1, {ColorModel::Cmyk}, {0, 0, 0, 0, 0, 0, 0, 255, 128, 128, 128, 0},
                       profiled(testing::inkProfile()));
  const Bytes output = rendered(bitmap);
  EXPECT_THAT(Bytes(output.begin(), output.begin() + 8),
              ElementsAre(255, 255, 255, 255, 0, 0, 0, 255));
  // Half the ink is L* 50: 119 in sRGB.
  EXPECT_NEAR(output[8], 119, 2);
  EXPECT_NEAR(output[9], 119, 2);
}

TEST(DisplayRenderer, LabIsConvertedInBothDepths) {
  // L* 60, a* 20, b* -20.
  const Bytes eight = rendered(picture<uint8_t>(1, 1, {ColorModel::Lab}, {153, 148, 108}));
  const Bytes sixteen = rendered(
      picture<uint16_t>(1, 1, {ColorModel::Lab, SampleFormat::UInt16}, {39321, 38036, 27756}));
  for (const Bytes& output : {eight, sixteen}) {
    EXPECT_NEAR(output[0], 167, 1);
    EXPECT_NEAR(output[1], 133, 1);
    EXPECT_NEAR(output[2], 180, 1);
  }
}

TEST(DisplayRenderer, ColoursGoThroughTheProfile) {
  const BitmapColor wide = profiled(testing::wideRgbProfile());
  const Bytes eight = rendered(picture<uint8_t>(1, 1, {}, {227, 127, 30}, wide));
  EXPECT_NEAR(eight[0], 255, 1);
  EXPECT_NEAR(eight[1], 128, 1);
  EXPECT_NEAR(eight[2], 0, 8);
  const Bytes deep = rendered(picture<uint16_t>(1, 1, {ColorModel::Rgb, SampleFormat::UInt16, true},
                                                {58416, 32639, 7659, 65535}, wide));
  EXPECT_NEAR(deep[0], 255, 2);
  EXPECT_NEAR(deep[1], 128, 2);
  EXPECT_NEAR(deep[2], 0, 12);
  EXPECT_EQ(deep[3], 255);
}

TEST(DisplayRenderer, DeepColoursAreExactToTheEdgeOfTheGamut) {
  const auto profile = testing::wideRgbProfile();
  std::vector<uint16_t> samples;
  for (uint32_t i = 0; i < 3000; ++i) {
    samples.push_back(static_cast<uint16_t>(i * 40503U));
  }
  const Bytes output = rendered(picture<uint16_t>(1000, 1, {ColorModel::Rgb, SampleFormat::UInt16},
                                                  samples, profiled(profile)));
  cmsHPROFILE from = cmsOpenProfileFromMem(profile.data(), static_cast<uint32_t>(profile.size()));
  cmsHPROFILE to = cmsCreate_sRGBProfile();
  cmsHTRANSFORM exact = cmsCreateTransform(from, TYPE_RGB_16, to, TYPE_RGB_16,
                                           INTENT_RELATIVE_COLORIMETRIC, cmsFLAGS_NOOPTIMIZE);
  std::vector<uint16_t> expected(samples.size());
  cmsDoTransform(exact, samples.data(), expected.data(), 1000);
  for (size_t i = 0; i < samples.size(); ++i) {
    ASSERT_NEAR(output[i / 3 * 4 + i % 3], expected[i] / 257.0, 0.6) << i;
  }
  cmsDeleteTransform(exact);
  cmsCloseProfile(from);
  cmsCloseProfile(to);
}

TEST(DisplayRenderer, GreyGoesThroughTheProfile) {
  // Linear grey: 0.5 is 188 in sRGB.
  const Bytes output = rendered(
      picture<uint8_t>(3, 1, {ColorModel::Gray}, {0, 128, 255}, profiled(testing::grayProfile(1))));
  EXPECT_EQ(output[0], 0);
  EXPECT_NEAR(output[4], 188, 1);
  EXPECT_EQ(output[5], output[4]);
  EXPECT_EQ(output[8], 255);
}

TEST(DisplayRenderer, SrgbProfileChangesNothing) {
  Bytes ramp(256 * 3);
  for (size_t i = 0; i < ramp.size(); ++i) {
    ramp[i] = static_cast<uint8_t>(i * 7);
  }
  EXPECT_EQ(rendered(picture<uint8_t>(256, 1, {}, ramp, profiled(srgbProfile()))),
            rendered(picture<uint8_t>(256, 1, {}, ramp)));
}

TEST(DisplayRenderer, BrokenOrForeignProfileCountsAsNone) {
  for (const Bytes& profile : {Bytes{1, 2, 3}, testing::grayProfile(1), Bytes(400, 0)}) {
    const auto bitmap = picture<uint8_t>(1, 1, {}, {10, 20, 30}, profiled(profile));
    EXPECT_THAT(rendered(bitmap), ElementsAre(10, 20, 30, 255));
  }
}

TEST(DisplayRenderer, PaletteIsLookedUpWithAlphaAndProfile) {
  BitmapColor color;
  color.palette = {{10, 20, 30, 255}, {200, 100, 50, 128}};
  EXPECT_THAT(rendered(picture<uint8_t>(3, 1, {ColorModel::Indexed}, {1, 0, 2}, color)),
              ElementsAre(100, 50, 25, 128, 10, 20, 30, 255, 0, 0, 0, 255));
  color = profiled(testing::wideRgbProfile());
  color.palette = {{227, 127, 30, 255}};
  const Bytes output = rendered(picture<uint8_t>(1, 1, {ColorModel::Indexed}, {0}, color));
  EXPECT_NEAR(output[0], 255, 1);
  EXPECT_NEAR(output[1], 128, 1);
}

TEST(DisplayRenderer, AreaIsCutOut) {
  Bytes samples(4 * 4);
  for (size_t i = 0; i < samples.size(); ++i) {
    samples[i] = static_cast<uint8_t>(i);
  }
  const auto bitmap = picture<uint8_t>(4, 4, {ColorModel::Gray}, samples);
  EXPECT_THAT(rendered(bitmap, {1, 2, 2, 1}), ElementsAre(9, 9, 9, 255, 10, 10, 10, 255));
}

TEST(DisplayRenderer, ReducedSizeRoundsUp) {
  EXPECT_EQ(DisplayRenderer::reducedSize({3, 4, 5, 6}, 1), (PixelRect{0, 0, 5, 6}));
  EXPECT_EQ(DisplayRenderer::reducedSize({0, 0, 5, 6}, 3), (PixelRect{0, 0, 2, 2}));
  EXPECT_EQ(DisplayRenderer::reducedSize({0, 0, 1, 1}, 64), (PixelRect{0, 0, 1, 1}));
}

TEST(DisplayRenderer, ReductionTakesTheMeanAndSmallerSquaresAtTheBorder) {
  const auto bitmap = picture<uint8_t>(3, 3, {ColorModel::Gray},
                                       {0, 10, 50,   //
                                        20, 30, 61,  //
                                        100, 101, 7});
  EXPECT_THAT(rendered(bitmap, 2), ElementsAre(15, 15, 15, 255, 56, 56, 56, 255,  //
                                               101, 101, 101, 255, 7, 7, 7, 255));
}

TEST(DisplayRenderer, ReductionWeighsColoursByAlpha) {
  const auto eight = picture<uint8_t>(2, 1, {ColorModel::Rgb, SampleFormat::UInt8, true},
                                      {200, 100, 0, 255, 0, 0, 255, 0});
  EXPECT_THAT(rendered(eight, 2), ElementsAre(100, 50, 0, 128));
  const auto deep =
      picture<uint16_t>(2, 1, {ColorModel::Gray, SampleFormat::UInt16, true}, {51400, 65535, 0, 0});
  EXPECT_THAT(rendered(deep, 2), ElementsAre(100, 100, 100, 128));
  const auto clear =
      picture<uint8_t>(2, 1, {ColorModel::Gray, SampleFormat::UInt8, true}, {200, 0, 100, 0});
  EXPECT_THAT(rendered(clear, 2), ElementsAre(0, 0, 0, 0));
}

TEST(DisplayRenderer, ReductionAveragesColoursOfAPaletteNotIndices) {
  BitmapColor color;
  color.palette = {{0, 0, 0, 255}, {90, 90, 90, 255}, {200, 100, 50, 255}};
  EXPECT_THAT(rendered(picture<uint8_t>(2, 1, {ColorModel::Indexed}, {0, 2}, color), 2),
              ElementsAre(100, 50, 25, 255));
}

TEST(DisplayRenderer, ReductionOfFloatAndInk) {
  const auto real =
      picture<float>(2, 1, {ColorModel::Rgb, SampleFormat::Float32}, {0, 1, 9, 1, 1, 0});
  EXPECT_THAT(rendered(real, 2), ElementsAre(128, 255, 128, 255));
  const auto ink = picture<uint8_t>(2, 1, {ColorModel::Cmyk}, {0, 0, 0, 0, 102, 0, 0, 0});
  EXPECT_THAT(rendered(ink, 2), ElementsAre(204, 255, 255, 255));
}

TEST(DisplayRenderer, ReductionBeyondThePictureGivesOnePixel) {
  EXPECT_THAT(rendered(picture<uint8_t>(2, 2, {ColorModel::Gray}, {10, 20, 30, 40}), 1000),
              ElementsAre(25, 25, 25, 255));
}

TEST(DisplayRenderer, ReductionOfMoreRowsThanSumsOf32BitsHold) {
  const PixelLayout layout{ColorModel::Gray, SampleFormat::UInt16, false};
  const auto bitmap = picture<uint16_t>(1, 200'000, layout, std::vector<uint16_t>(200'000, 65535));
  EXPECT_THAT(rendered(bitmap, 200'000), ElementsAre(255, 255, 255, 255));
}

TEST(DisplayRenderer, ThreadsShareOneRenderer) {
  Bytes samples(64 * 64 * 3);
  for (size_t i = 0; i < samples.size(); ++i) {
    samples[i] = static_cast<uint8_t>(i * 31);
  }
  const auto bitmap = picture<uint8_t>(64, 64, {}, samples, profiled(testing::wideRgbProfile()));
  const Bytes expected = rendered(bitmap);
  const DisplayRenderer renderer(bitmap);
  std::array<Bytes, 4> outputs;
  {
    std::vector<std::jthread> threads;
    for (Bytes& output : outputs) {
      output.resize(expected.size());
      threads.emplace_back([&] { renderer.render(bitmap.bounds(), 1, output.data(), 64 * 4); });
    }
  }
  EXPECT_THAT(outputs, Each(expected));
}

TEST(DisplayRenderer, RowsKeepTheirDistance) {
  const DisplayRenderer renderer(picture<uint8_t>(1, 2, {ColorModel::Gray}, {5, 6}));
  Bytes output(2 * 8, 0xEE);
  renderer.render({0, 0, 1, 2}, 1, output.data(), 8);
  EXPECT_THAT(output, ElementsAre(5, 5, 5, 255, 0xEE, 0xEE, 0xEE, 0xEE,  //
                                  6, 6, 6, 255, 0xEE, 0xEE, 0xEE, 0xEE));
}

}  // namespace
}  // namespace vantrel
