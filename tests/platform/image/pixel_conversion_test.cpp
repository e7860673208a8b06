#include "platform/image/pixel_conversion.h"

#include <gtest/gtest.h>
#include <lcms2.h>

#include <cmath>
#include <limits>
#include <vector>

#include "platform/image/color_profile.h"
#include "platform/image/pixel_runs.h"
#include "support/bitmap_maker.h"
#include "support/icc_maker.h"

namespace vantrel {
namespace {

using testing::makeBitmap;
using testing::scatter;

constexpr std::array<double, 3> kWhite{1, 1, 1};
constexpr std::array<double, 3> kRed{1, 0, 0};

template <typename T>
std::vector<T> convertRow(const PixelConversion& conversion, const Bitmap& bitmap) {
  std::vector<T> row(static_cast<size_t>(bitmap.width() * conversion.layout().channels()));
  conversion.convert(bitmap.row(0), reinterpret_cast<std::byte*>(row.data()), bitmap.width());
  return row;
}

template <typename T>
Bitmap onePixel(ColorModel model, bool alpha, const std::vector<T>& samples,
                BitmapColor color = {}) {
  constexpr SampleFormat format = sizeof(T) == 1   ? SampleFormat::UInt8
                                  : sizeof(T) == 2 ? SampleFormat::UInt16
                                                   : SampleFormat::Float32;
  return makeBitmap(
      1, 1, {model, format, alpha},
      [&](int64_t, int64_t, int channel) {
        return static_cast<double>(samples[static_cast<size_t>(channel)]);
      },
      std::move(color));
}

TEST(PixelConversion, LeavesWhatPngHoldsAsItIs) {
  for (const ColorModel model : {ColorModel::Gray, ColorModel::Rgb}) {
    for (const SampleFormat sample : {SampleFormat::UInt8, SampleFormat::UInt16}) {
      for (const bool alpha : {false, true}) {
        const PixelLayout layout{model, sample, alpha};
        const Bitmap bitmap = makeBitmap(5, 1, layout, scatter);
        const PixelConversion conversion = PixelConversion::forPng(bitmap);
        EXPECT_TRUE(conversion.isIdentity());
        EXPECT_EQ(conversion.layout(), layout);
      }
    }
  }
}

TEST(PixelConversion, MixesEightBitColoursExactly) {
  // Every sample with every alpha over a middling colour, in more pixels than one run holds.
  const Bitmap bitmap = makeBitmap(65536, 1, {ColorModel::Rgb, SampleFormat::UInt8, true},
                                   [](int64_t x, int64_t, int channel) -> double {
                                     return static_cast<double>(channel < 3 ? x & 0xFF : x >> 8);
                                   });
  const auto row = convertRow<uint8_t>(PixelConversion::forJpeg(bitmap, {0.2, 0.5, 1}), bitmap);
  const std::array<int, 3> below{51, 128, 255};
  for (int64_t x = 0; x < 65536; ++x) {
    const double alpha = static_cast<double>(x >> 8) / 255;
    for (size_t c = 0; c < 3; ++c) {
      const double mixture = static_cast<double>(x & 0xFF) * alpha + below[c] * (1 - alpha);
      ASSERT_NEAR(row[static_cast<size_t>(x) * 3 + c], mixture, 0.5001) << x;
    }
  }
}

TEST(PixelConversion, MixesDeepColoursExactly) {
  const Bitmap bitmap =
      makeBitmap(20000, 1, {ColorModel::Rgb, SampleFormat::UInt16, true}, scatter);
  const auto row = convertRow<uint8_t>(PixelConversion::forJpeg(bitmap, kRed), bitmap);
  for (int64_t x = 0; x < bitmap.width(); ++x) {
    const double alpha = scatter(x, 0, 3) / 65535.0;
    for (int c = 0; c < 3; ++c) {
      const double below = c == 0 ? 255 : 0;
      const double mixture = scatter(x, 0, c) / 257.0 * alpha + below * (1 - alpha);
      ASSERT_NEAR(row[static_cast<size_t>(x * 3 + c)], mixture, 0.5001) << x;
    }
  }
}

TEST(PixelConversion, RoundsDeepSamplesToTheNearest) {
  const Bitmap bitmap = makeBitmap(65536, 1, {ColorModel::Gray, SampleFormat::UInt16, false},
                                   [](int64_t x, int64_t, int) { return static_cast<double>(x); });
  const PixelConversion conversion = PixelConversion::forJpeg(bitmap, kWhite);
  EXPECT_EQ(conversion.layout(), (PixelLayout{ColorModel::Gray, SampleFormat::UInt8, false}));
  const auto row = convertRow<uint8_t>(conversion, bitmap);
  for (size_t x = 0; x < row.size(); ++x) {
    ASSERT_EQ(row[x], std::lround(static_cast<double>(x) / 257.0)) << x;
  }
}

TEST(PixelConversion, LimitsFloatsToTheirRange) {
  const std::vector<double> values{0,
                                   1,
                                   0.5,
                                   -0.1,
                                   1.5,
                                   std::numeric_limits<double>::quiet_NaN(),
                                   std::numeric_limits<double>::infinity(),
                                   -std::numeric_limits<double>::infinity(),
                                   0.25};
  const auto width = static_cast<int64_t>(values.size());
  const std::vector<uint8_t> profile = testing::grayProfile(1.8);
  const Bitmap bitmap = makeBitmap(
      width, 1, {ColorModel::Gray, SampleFormat::Float32, false},
      [&](int64_t x, int64_t, int) { return values[static_cast<size_t>(x)]; }, {profile, {}});
  const PixelConversion png = PixelConversion::forPng(bitmap);
  EXPECT_EQ(png.layout(), (PixelLayout{ColorModel::Gray, SampleFormat::UInt16, false}));
  EXPECT_EQ(png.iccProfile(), profile);
  EXPECT_EQ(convertRow<uint16_t>(png, bitmap),
            (std::vector<uint16_t>{0, 65535, 32768, 0, 65535, 0, 65535, 0, 16384}));
  EXPECT_EQ(convertRow<uint8_t>(PixelConversion::forJpeg(bitmap, kWhite), bitmap),
            (std::vector<uint8_t>{0, 255, 128, 0, 255, 0, 255, 0, 64}));
}

TEST(PixelConversion, TakesUncalibratedInkAsLightThatPasses) {
  const Bitmap ink = onePixel<uint8_t>(ColorModel::Cmyk, false, {255, 0, 51, 0});
  const PixelConversion conversion = PixelConversion::forPng(ink);
  EXPECT_EQ(conversion.layout(), (PixelLayout{ColorModel::Rgb, SampleFormat::UInt8, false}));
  EXPECT_EQ(conversion.iccProfile(), srgbProfile());
  EXPECT_EQ(convertRow<uint8_t>(conversion, ink), (std::vector<uint8_t>{0, 255, 204}));

  const Bitmap dark = onePixel<uint8_t>(ColorModel::Cmyk, true, {0, 128, 0, 128, 77});
  EXPECT_EQ(convertRow<uint8_t>(PixelConversion::forPng(dark), dark),
            (std::vector<uint8_t>{127, 63, 127, 77}));

  const Bitmap deep = onePixel<uint16_t>(ColorModel::Cmyk, false, {65535, 0, 13107, 0});
  EXPECT_EQ(convertRow<uint16_t>(PixelConversion::forPng(deep), deep),
            (std::vector<uint16_t>{0, 65535, 52428}));
}

TEST(PixelConversion, TakesInkThroughItsProfile) {
  const std::vector<uint8_t> profile = testing::inkProfile();
  // Lightness 50 without colour is 119 in sRGB.
  const Bitmap half = onePixel<uint8_t>(ColorModel::Cmyk, true, {0, 0, 0, 128, 9}, {profile, {}});
  const auto pixel = convertRow<uint8_t>(PixelConversion::forPng(half), half);
  ASSERT_EQ(pixel.size(), 4U);
  for (size_t c = 0; c < 3; ++c)
    EXPECT_NEAR(pixel[c], 118.5, 2);
  EXPECT_EQ(pixel[3], 9);

  const Bitmap paper = onePixel<uint16_t>(ColorModel::Cmyk, false, {0, 0, 0, 0}, {profile, {}});
  for (const uint16_t channel : convertRow<uint16_t>(PixelConversion::forPng(paper), paper)) {
    EXPECT_NEAR(channel, 65535, 300);
  }
}

TEST(PixelConversion, TurnsLabIntoSrgb) {
  // The CIELAB values, under D50, of the sRGB colours (255, 0, 0) and (119, 119, 119).
  const Bitmap red = onePixel<uint8_t>(ColorModel::Lab, false, {138, 209, 198});
  const auto redPixel = convertRow<uint8_t>(PixelConversion::forPng(red), red);
  EXPECT_NEAR(redPixel[0], 255, 3);
  EXPECT_NEAR(redPixel[1], 0, 12);
  EXPECT_NEAR(redPixel[2], 0, 12);

  const Bitmap gray = onePixel<uint16_t>(ColorModel::Lab, true, {32768, 32896, 32896, 1234});
  const PixelConversion conversion = PixelConversion::forPng(gray);
  EXPECT_EQ(conversion.layout(), (PixelLayout{ColorModel::Rgb, SampleFormat::UInt16, true}));
  EXPECT_EQ(conversion.iccProfile(), srgbProfile());
  const auto grayPixel = convertRow<uint16_t>(conversion, gray);
  for (size_t c = 0; c < 3; ++c)
    EXPECT_NEAR(grayPixel[c], 118.9 * 257, 300);
  EXPECT_EQ(grayPixel[3], 1234);

  const Bitmap opaque = onePixel<float>(ColorModel::Lab, false, {0.5F, 128 / 255.0F, 128 / 255.0F});
  const auto floatPixel = convertRow<uint8_t>(PixelConversion::forJpeg(opaque, kRed), opaque);
  for (const uint8_t channel : floatPixel)
    EXPECT_NEAR(channel, 118.9, 1.5);
}

TEST(PixelConversion, IsExactAtTheEdgeOfSrgb) {
  // Saturated colours, turned into Lab by lcms2 in floating point, must come back.
  const std::vector<std::array<double, 3>> colors{{1, 0, 0}, {0, 1, 0}, {0, 0, 1},   {1, 1, 0},
                                                  {0, 1, 1}, {1, 0, 1}, {1, 0.5, 0}, {0.1, 0, 0.9}};
  cmsHPROFILE srgb = cmsCreate_sRGBProfile();
  cmsHPROFILE lab = cmsCreateLab4Profile(nullptr);
  cmsHTRANSFORM toLab = cmsCreateTransform(srgb, TYPE_RGB_DBL, lab, TYPE_Lab_DBL,
                                           INTENT_RELATIVE_COLORIMETRIC, cmsFLAGS_NOOPTIMIZE);
  for (const std::array<double, 3>& color : colors) {
    cmsCIELab value{};
    cmsDoTransform(toLab, color.data(), &value, 1);
    const auto word = [](double part) { return static_cast<uint16_t>(std::lround(part)); };
    const Bitmap bitmap = onePixel<uint16_t>(
        ColorModel::Lab, false,
        {word(value.L * 655.35), word((value.a + 128) * 257), word((value.b + 128) * 257)});
    const auto pixel = convertRow<uint16_t>(PixelConversion::forPng(bitmap), bitmap);
    for (size_t c = 0; c < 3; ++c)
      EXPECT_NEAR(pixel[c], color[c] * 65535, 200);
  }
  cmsDeleteTransform(toLab);
  cmsCloseProfile(lab);
  cmsCloseProfile(srgb);
}

TEST(PixelConversion, TurnsGreyWithAlphaIntoSrgbForJpeg) {
  const Bitmap plain = onePixel<uint8_t>(ColorModel::Gray, true, {100, 255});
  const PixelConversion conversion = PixelConversion::forJpeg(plain, kRed);
  EXPECT_EQ(conversion.layout(), (PixelLayout{ColorModel::Rgb, SampleFormat::UInt8, false}));
  EXPECT_EQ(conversion.iccProfile(), srgbProfile());
  EXPECT_EQ(convertRow<uint8_t>(conversion, plain), (std::vector<uint8_t>{100, 100, 100}));

  const Bitmap clear = onePixel<uint16_t>(ColorModel::Gray, true, {30000, 0});
  EXPECT_EQ(convertRow<uint8_t>(PixelConversion::forJpeg(clear, kRed), clear),
            (std::vector<uint8_t>{255, 0, 0}));

  // Half of the light is 188 in sRGB.
  const Bitmap linear =
      onePixel<uint8_t>(ColorModel::Gray, true, {128, 255}, {testing::grayProfile(1.0), {}});
  for (const uint8_t channel :
       convertRow<uint8_t>(PixelConversion::forJpeg(linear, kRed), linear)) {
    EXPECT_NEAR(channel, 188, 2);
  }
}

TEST(PixelConversion, KeepsAnRgbSpaceAndPutsTheBackgroundIntoIt) {
  const std::vector<uint8_t> profile = testing::wideRgbProfile();
  const Bitmap clear = onePixel<uint8_t>(ColorModel::Rgb, true, {10, 20, 30, 0}, {profile, {}});
  const PixelConversion conversion = PixelConversion::forJpeg(clear, kRed);
  EXPECT_EQ(conversion.iccProfile(), profile);
  const std::array<uint8_t, 3> red = srgbColorIn(profile, 1, 0, 0);
  EXPECT_NE(red, (std::array<uint8_t, 3>{255, 0, 0}));
  EXPECT_EQ(convertRow<uint8_t>(conversion, clear), std::vector<uint8_t>(red.begin(), red.end()));

  const Bitmap opaque = onePixel<uint8_t>(ColorModel::Rgb, true, {10, 20, 30, 255}, {profile, {}});
  EXPECT_EQ(convertRow<uint8_t>(PixelConversion::forJpeg(opaque, kRed), opaque),
            (std::vector<uint8_t>{10, 20, 30}));
}

TEST(PixelConversion, LooksUpThePaletteForJpeg) {
  const std::vector<uint8_t> profile = testing::wideRgbProfile();
  const BitmapColor color{profile, {{1, 2, 3, 255}, {200, 100, 50, 255}}};
  const auto indices = [](int64_t x, int64_t, int) { return static_cast<double>(x); };
  const Bitmap bitmap =
      makeBitmap(3, 1, {ColorModel::Indexed, SampleFormat::UInt8, false}, indices, color);
  const PixelConversion conversion = PixelConversion::forJpeg(bitmap, kRed);
  EXPECT_EQ(conversion.iccProfile(), profile);
  // The third pixel lies past the palette: black.
  EXPECT_EQ(convertRow<uint8_t>(conversion, bitmap),
            (std::vector<uint8_t>{1, 2, 3, 200, 100, 50, 0, 0, 0}));
}

TEST(PixelConversion, TurnsAPaletteWithAlphaIntoSrgbForJpeg) {
  BitmapColor color{{}, {{1, 2, 3, 255}, {200, 100, 50, 0}, {100, 100, 100, 51}}};
  color.paletteHasAlpha = true;
  const auto indices = [](int64_t x, int64_t, int) { return static_cast<double>(x); };
  const PixelLayout layout{ColorModel::Indexed, SampleFormat::UInt8, false};
  const Bitmap plain = makeBitmap(3, 1, layout, indices, color);
  const PixelConversion conversion = PixelConversion::forJpeg(plain, kRed);
  EXPECT_EQ(conversion.iccProfile(), srgbProfile());
  EXPECT_EQ(convertRow<uint8_t>(conversion, plain),
            (std::vector<uint8_t>{1, 2, 3, 255, 0, 0, 224, 20, 20}));

  color.iccProfile = testing::wideRgbProfile();
  color.palette = {{0, 255, 0, 255}};
  const Bitmap wide = makeBitmap(1, 1, layout, indices, color);
  const PixelConversion fromWide = PixelConversion::forJpeg(wide, kRed);
  EXPECT_EQ(fromWide.iccProfile(), srgbProfile());
  EXPECT_EQ(convertRow<uint8_t>(fromWide, wide), (std::vector<uint8_t>{0, 255, 0}));
}

TEST(PixelConversion, CrossesRunsWithoutASeam) {
  // Three steps (to 16 bits, to sRGB, over the background), and pixels on both sides of each run.
  const auto ramp = [](int64_t x, int64_t, int channel) {
    return channel == 4 ? 1.0 : static_cast<double>(x % 97) / 97.0;
  };
  const PixelLayout layout{ColorModel::Cmyk, SampleFormat::Float32, true};
  const Bitmap bitmap = makeBitmap(2000, 1, layout, ramp);
  const auto row = convertRow<uint8_t>(PixelConversion::forJpeg(bitmap, kRed), bitmap);
  for (size_t x = 97; x < 2000; ++x) {
    for (size_t c = 0; c < 3; ++c)
      ASSERT_EQ(row[x * 3 + c], row[(x - 97) * 3 + c]) << x;
  }
}

}  // namespace
}  // namespace vantrel
