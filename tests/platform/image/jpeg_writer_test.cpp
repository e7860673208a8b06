#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cmath>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <limits>
#include <stdexcept>
#include <stop_token>
#include <string>
#include <system_error>
#include <vector>

#include "base/cancelled.h"
#include "platform/image/color_profile.h"
#include "platform/image/image_writer.h"
#include "support/bitmap_maker.h"
#include "support/icc_maker.h"
#include "support/image_probe.h"
#include "support/temporary_folder.h"
#include "support/write_failures.h"

namespace vantrel {
namespace {

using testing::JpegContents;
using testing::makeBitmap;

constexpr std::array<double, 3> kWhite{1, 1, 1};
constexpr std::array<double, 3> kRed{1, 0, 0};
constexpr PixelLayout kGray8{ColorModel::Gray, SampleFormat::UInt8, false};
constexpr PixelLayout kRgb8{ColorModel::Rgb, SampleFormat::UInt8, false};
constexpr PixelLayout kRgba8{ColorModel::Rgb, SampleFormat::UInt8, true};

constexpr int kApp0 = 0xE0, kApp2 = 0xE2, kApp14 = 0xEE;
constexpr int kTables = 0xDB, kBaseline = 0xC0, kHuffman = 0xC4, kScan = 0xDA;

/// Soft enough for JPEG to come close to it at full quality.
double soft(int64_t x, int64_t y, int channel) {
  return 128 + 100 * std::sin(static_cast<double>(x + 2 * y) / 23 + channel);
}

class JpegWriter : public ::testing::Test {
 protected:
  JpegContents written(const Bitmap& bitmap, const PixelRect& area, double quality = 1,
                       const std::array<double, 3>& background = kWhite) {
    writeJpeg(bitmap, area, path(), quality, background, {});
    JpegContents contents = testing::readJpegFile(path());
    EXPECT_EQ(contents.width, area.width);
    EXPECT_EQ(contents.height, area.height);
    return contents;
  }
  JpegContents written(const Bitmap& bitmap) { return written(bitmap, bitmap.bounds()); }
  std::string bytesAt(const Bitmap& bitmap, double quality) {
    writeJpeg(bitmap, bitmap.bounds(), path(), quality, kWhite, {});
    return testing::readFile(path());
  }
  /// A picture of one colour, whose blocks JPEG keeps at full quality but for rounding.
  std::array<int, 3> colorOf(const Bitmap& bitmap, const std::array<double, 3>& background) {
    const JpegContents jpeg = written(bitmap, bitmap.bounds(), 1, background);
    EXPECT_EQ(jpeg.channels, 3);
    return {jpeg.at(3, 3, 0), jpeg.at(3, 3, 1), jpeg.at(3, 3, 2)};
  }
  std::filesystem::path path() const { return m_folder / "picture.jpg"; }

  testing::TemporaryFolder m_folder;
};

Bitmap plain(PixelLayout layout, const std::vector<double>& samples, BitmapColor color = {}) {
  return makeBitmap(
      8, 8, layout,
      [&](int64_t, int64_t, int channel) { return samples[static_cast<size_t>(channel)]; },
      std::move(color));
}

void expectNear(const std::array<int, 3>& color, const std::array<int, 3>& expected, int distance) {
  for (size_t c = 0; c < 3; ++c)
    EXPECT_NEAR(color[c], expected[c], distance) << "channel " << c;
}

TEST_F(JpegWriter, KeepsGreyColourAndInk) {
  for (const ColorModel model : {ColorModel::Gray, ColorModel::Rgb, ColorModel::Cmyk}) {
    const Bitmap bitmap = makeBitmap(61, 47, {model, SampleFormat::UInt8, false}, soft);
    const bool ink = model == ColorModel::Cmyk;
    for (const PixelRect& area : {bitmap.bounds(), PixelRect{7, 9, 33, 21}, PixelRect{60, 46, 1, 1},
                                  PixelRect{5, 0, 1, 47}, PixelRect{0, 5, 61, 1}}) {
      const JpegContents jpeg = written(bitmap, area);
      ASSERT_EQ(jpeg.channels, bitmap.layout().channels());
      EXPECT_EQ(jpeg.hasAdobeMarker, ink);
      for (int y = 0; y < jpeg.height; ++y) {
        for (int x = 0; x < jpeg.width; ++x) {
          for (int c = 0; c < jpeg.channels; ++c) {
            const double value = std::floor(soft(area.x + x, area.y + y, c));
            // Files with Adobe's marker hold ink inverted.
            ASSERT_NEAR(jpeg.at(x, y, c), ink ? 255 - value : value, 4);
          }
        }
      }
    }
  }
}

TEST_F(JpegWriter, IsBaselineWithNothingButTables) {
  const JpegContents color = written(makeBitmap(20, 20, kRgb8, soft));
  EXPECT_EQ(color.markers, (std::vector<int>{kApp0, kTables, kTables, kBaseline, kHuffman, kHuffman,
                                             kHuffman, kHuffman, kScan}));
  EXPECT_FALSE(color.isProgressive);
  EXPECT_EQ(color.densityUnit, 0);
  EXPECT_EQ(color.densityX, 1);
  EXPECT_EQ(color.densityY, 1);

  const JpegContents ink =
      written(makeBitmap(20, 20, {ColorModel::Cmyk, SampleFormat::UInt8, false}, soft));
  EXPECT_EQ(ink.markers, (std::vector<int>{kApp14, kTables, kBaseline, kHuffman, kHuffman, kScan}));
}

TEST_F(JpegWriter, KeepsTheProfileByteForByte) {
  const std::vector<uint8_t> rgb = testing::wideRgbProfile();
  const JpegContents color = written(makeBitmap(9, 9, kRgb8, soft, {rgb, {}}));
  EXPECT_EQ(color.iccProfile, rgb);
  EXPECT_EQ(std::count(color.markers.begin(), color.markers.end(), kApp2), 1);

  const std::vector<uint8_t> gray = testing::grayProfile(1.8);
  EXPECT_EQ(written(makeBitmap(9, 9, kGray8, soft, {gray, {}})).iccProfile, gray);

  const std::vector<uint8_t> ink = testing::inkProfile();
  const PixelLayout deepInk{ColorModel::Cmyk, SampleFormat::UInt16, false};
  EXPECT_EQ(written(makeBitmap(9, 9, deepInk, soft, {ink, {}})).iccProfile, ink);
}

TEST_F(JpegWriter, DividesALongProfileIntoParts) {
  std::vector<uint8_t> profile = testing::wideRgbProfile();
  for (int i = 0; i < 150000; ++i)
    profile.push_back(static_cast<uint8_t>(i * 7));
  const JpegContents jpeg = written(makeBitmap(9, 9, kRgb8, soft, {profile, {}}));
  EXPECT_EQ(jpeg.iccProfile, profile);
  EXPECT_EQ(std::count(jpeg.markers.begin(), jpeg.markers.end(), kApp2), 3);
}

TEST_F(JpegWriter, HasFullColourFromNinetyPercent) {
  const Bitmap bitmap = makeBitmap(40, 40, kRgb8, soft);
  for (const double quality : {0.9, 0.95, 1.0}) {
    const JpegContents jpeg = written(bitmap, bitmap.bounds(), quality);
    EXPECT_EQ(jpeg.chromaWidth, 1) << quality;
    EXPECT_EQ(jpeg.chromaHeight, 1) << quality;
  }
  for (const double quality : {0.0, 0.5, 0.89}) {
    const JpegContents jpeg = written(bitmap, bitmap.bounds(), quality);
    EXPECT_EQ(jpeg.chromaWidth, 2) << quality;
    EXPECT_EQ(jpeg.chromaHeight, 2) << quality;
  }
}

TEST_F(JpegWriter, LimitsTheQualityToItsRange) {
  const Bitmap bitmap = makeBitmap(64, 64, kRgb8, soft);
  const std::string best = bytesAt(bitmap, 1);
  const std::string worst = bytesAt(bitmap, 0);
  EXPECT_EQ(bytesAt(bitmap, 1.7), best);
  EXPECT_EQ(bytesAt(bitmap, -0.2), worst);
  EXPECT_EQ(bytesAt(bitmap, std::numeric_limits<double>::quiet_NaN()), worst);
  EXPECT_LT(worst.size(), bytesAt(bitmap, 0.5).size());
  EXPECT_LT(bytesAt(bitmap, 0.5).size(), best.size());
}

TEST_F(JpegWriter, RoundsDeepSamples) {
  for (const int word : {0, 128, 129, 30000, 32767, 32768, 65407, 65535}) {
    const Bitmap bitmap =
        plain({ColorModel::Gray, SampleFormat::UInt16, false}, {static_cast<double>(word)});
    EXPECT_EQ(written(bitmap).at(3, 3, 0), std::lround(word / 257.0)) << word;
  }
  const Bitmap light = plain({ColorModel::Gray, SampleFormat::Float32, false}, {0.5});
  EXPECT_EQ(written(light).at(3, 3, 0), 128);
}

TEST_F(JpegWriter, TurnsAPaletteIntoColours) {
  const std::vector<uint8_t> profile = testing::wideRgbProfile();
  const Bitmap bitmap = plain({ColorModel::Indexed, SampleFormat::UInt8, false}, {1},
                              {profile, {{0, 0, 0}, {30, 90, 200}}});
  expectNear(colorOf(bitmap, kRed), {30, 90, 200}, 2);
  EXPECT_EQ(written(bitmap).iccProfile, profile);
}

TEST_F(JpegWriter, TurnsLabIntoTaggedSrgb) {
  const Bitmap bitmap = plain({ColorModel::Lab, SampleFormat::UInt8, false}, {128, 128, 128});
  expectNear(colorOf(bitmap, kRed), {119, 119, 119}, 2);
  EXPECT_EQ(written(bitmap).iccProfile, srgbProfile());
}

TEST_F(JpegWriter, LaysTransparentPixelsOverTheBackground) {
  expectNear(colorOf(plain(kRgba8, {10, 200, 40, 0}), kRed), {255, 0, 0}, 2);
  expectNear(colorOf(plain(kRgba8, {10, 200, 40, 255}), kRed), {10, 200, 40}, 2);
  expectNear(colorOf(plain(kRgba8, {0, 200, 100, 51}), kRed), {204, 40, 20}, 2);
  expectNear(colorOf(plain(kRgba8, {0, 0, 0, 0}), {0, 0.5, 1}), {0, 128, 255}, 2);
  const PixelLayout deep{ColorModel::Rgb, SampleFormat::UInt16, true};
  expectNear(colorOf(plain(deep, {0, 51400, 25700, 13107}), kRed), {204, 40, 20}, 2);
  // A picture without a profile is sRGB and stays without one.
  EXPECT_TRUE(written(plain(kRgba8, {1, 2, 3, 4})).iccProfile.empty());
}

TEST_F(JpegWriter, KeepsAWideSpaceUnderTransparentPixels) {
  const std::vector<uint8_t> profile = testing::wideRgbProfile();
  const Bitmap clear = plain(kRgba8, {10, 200, 40, 0}, {profile, {}});
  const std::array<uint8_t, 3> red = srgbColorIn(profile, 1, 0, 0);
  expectNear(colorOf(clear, kRed), {red[0], red[1], red[2]}, 2);
  EXPECT_EQ(written(clear).iccProfile, profile);
}

TEST_F(JpegWriter, MakesSrgbOfTransparentGrey) {
  const Bitmap clear = plain({ColorModel::Gray, SampleFormat::UInt8, true}, {90, 0});
  expectNear(colorOf(clear, kRed), {255, 0, 0}, 2);
  const Bitmap opaque = plain({ColorModel::Gray, SampleFormat::UInt8, true}, {90, 255});
  expectNear(colorOf(opaque, kRed), {90, 90, 90}, 2);
  EXPECT_EQ(written(opaque).iccProfile, srgbProfile());
}

TEST_F(JpegWriter, MakesSrgbOfATransparentPalette) {
  BitmapColor color{{}, {{30, 90, 200, 255}, {1, 2, 3, 0}}};
  color.paletteHasAlpha = true;
  const PixelLayout layout{ColorModel::Indexed, SampleFormat::UInt8, false};
  expectNear(colorOf(plain(layout, {0}, color), kRed), {30, 90, 200}, 2);
  expectNear(colorOf(plain(layout, {1}, color), kRed), {255, 0, 0}, 2);
  EXPECT_EQ(written(plain(layout, {0}, color)).iccProfile, srgbProfile());
}

TEST_F(JpegWriter, MakesSrgbOfTransparentInkAndLab) {
  const Bitmap ink = plain({ColorModel::Cmyk, SampleFormat::UInt8, true}, {255, 0, 0, 0, 128});
  expectNear(colorOf(ink, {0, 0, 0}), {0, 128, 128}, 2);
  EXPECT_EQ(written(ink).iccProfile, srgbProfile());
  const Bitmap lab = plain({ColorModel::Lab, SampleFormat::UInt16, true}, {65535, 32896, 32896, 0});
  expectNear(colorOf(lab, kRed), {255, 0, 0}, 2);
}

TEST_F(JpegWriter, LooksAtTheBackgroundOnlyUnderTransparency) {
  const Bitmap bitmap = makeBitmap(30, 30, kRgb8, soft);
  writeJpeg(bitmap, bitmap.bounds(), path(), 0.9, kRed, {});
  const std::string onRed = testing::readFile(path());
  writeJpeg(bitmap, bitmap.bounds(), path(), 0.9, kWhite, {});
  EXPECT_EQ(testing::readFile(path()), onRed);
}

TEST_F(JpegWriter, TakesSidesUpToTheLimitOfTheFormat) {
  const Bitmap wide = makeBitmap(65501, 2, kGray8, soft);
  EXPECT_EQ(written(wide, {0, 0, 65500, 1}).width, 65500);
  EXPECT_THROW(writeJpeg(wide, wide.bounds(), path(), 0.9, kWhite, {}), std::length_error);
  const Bitmap high = makeBitmap(1, 65501, kGray8, soft);
  EXPECT_EQ(written(high, {0, 1, 1, 65500}).height, 65500);
  EXPECT_THROW(writeJpeg(high, high.bounds(), path(), 0.9, kWhite, {}), std::length_error);
}

TEST_F(JpegWriter, IsWholeAcrossBands) {
  // Three bands and a bit of 256 KiB.
  const Bitmap bitmap = makeBitmap(1024, 1100, kGray8, soft);
  const JpegContents jpeg = written(bitmap);
  for (int y = 0; y < 1100; ++y) {
    for (int x = 0; x < 1024; ++x)
      ASSERT_NEAR(jpeg.at(x, y, 0), soft(x, y, 0), 4) << x << ',' << y;
  }
}

TEST_F(JpegWriter, IsCancelledBeforeItStarts) {
  std::stop_source source;
  source.request_stop();
  const Bitmap bitmap = makeBitmap(9, 9, kGray8, soft);
  EXPECT_THROW(writeJpeg(bitmap, bitmap.bounds(), path(), 0.9, kWhite, source.get_token()),
               Cancelled);
  EXPECT_FALSE(std::filesystem::exists(path()));
}

TEST_F(JpegWriter, IsCancelledInTheMiddle) {
  const Bitmap bitmap = makeBitmap(2000, 2000, kRgb8, testing::scatter);
  std::stop_source source;
  testing::WatchedPipe pipe(m_folder / "pipe", [&] { source.request_stop(); });
  EXPECT_THROW(writeJpeg(bitmap, bitmap.bounds(), pipe.path(), 1, kWhite, source.get_token()),
               Cancelled);
}

TEST_F(JpegWriter, ReportsAFullDisk) {
  const Bitmap bitmap = makeBitmap(1000, 1000, kRgb8, testing::scatter);
  const auto errorAt = [&](const std::filesystem::path& to) {
    try {
      writeJpeg(bitmap, bitmap.bounds(), to, 1, kWhite, {});
    } catch (const std::system_error& error) {
      return error.code().value();
    }
    return 0;
  };
  EXPECT_EQ(errorAt("/dev/full"), ENOSPC);
  EXPECT_EQ(errorAt(m_folder / "no/picture.jpg"), ENOENT);
  const testing::FileSizeLimit limit(200000);
  EXPECT_EQ(errorAt(path()), EFBIG);
}

}  // namespace
}  // namespace vantrel
