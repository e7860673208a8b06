#include "platform/image/png_writer.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <stdexcept>
#include <stop_token>
#include <string>
#include <system_error>
#include <vector>

#include "base/cancelled.h"
#include "platform/image/color_profile.h"
#include "platform/image/image_writer.h"
#include "platform/image/png_rows.h"
#include "platform/image/png_stripes.h"
#include "support/bitmap_maker.h"
#include "support/icc_maker.h"
#include "support/image_probe.h"
#include "support/temporary_folder.h"
#include "support/write_failures.h"

namespace vantrel {
namespace {

using testing::makeBitmap;
using testing::PngContents;
using testing::scatter;

constexpr PixelLayout kGray8{ColorModel::Gray, SampleFormat::UInt8, false};
constexpr PixelLayout kRgb8{ColorModel::Rgb, SampleFormat::UInt8, false};
constexpr PixelLayout kIndexed{ColorModel::Indexed, SampleFormat::UInt8, false};

class PngWriter : public ::testing::Test {
 protected:
  PngContents written(const Bitmap& bitmap, const PixelRect& area) {
    writePng(bitmap, area, path(), {});
    PngContents contents = testing::readPngFile(path());
    EXPECT_TRUE(contents.streamIsWhole);
    EXPECT_EQ(contents.width, area.width);
    EXPECT_EQ(contents.height, area.height);
    return contents;
  }
  std::filesystem::path path() const { return m_folder / "picture.png"; }
  std::string bytesWith(const Bitmap& bitmap, int threads) {
    writePngWithThreads(bitmap, bitmap.bounds(), path(), threads, {});
    return testing::readFile(path());
  }

  testing::TemporaryFolder m_folder;
};

/// Columns that each grow by a step of their own: the differences to the row above are not small,
/// but the same in every row.
double repeatingContent(int64_t x, int64_t y, int channel) {
  return static_cast<double>((y + 1) * scatter(x, 0, channel) & 0xFF);
}

/// The bytes of `area` as PNG stores 8-bit and 16-bit samples.
std::vector<uint8_t> storedBytes(const Bitmap& bitmap, const PixelRect& area) {
  std::vector<uint8_t> bytes;
  const bool deep = bitmap.layout().sample == SampleFormat::UInt16;
  for (int64_t y = area.y; y < area.y + area.height; ++y) {
    for (int64_t x = area.x; x < area.x + area.width; ++x) {
      for (int channel = 0; channel < bitmap.layout().channels(); ++channel) {
        const uint32_t sample = scatter(x, y, channel);
        if (deep) bytes.push_back(static_cast<uint8_t>(sample >> 8));
        bytes.push_back(static_cast<uint8_t>(sample));
      }
    }
  }
  return bytes;
}

/// Bands of noise, of repetitions, and of flat areas, which are each filtered and compressed in
/// another way.
double mixedContent(int64_t x, int64_t y, int channel) {
  const int64_t band = y / 300 % 3;
  if (band == 0) return scatter(x, y, channel) & 0xFF;
  if (band == 1) return repeatingContent(x, y, channel);
  return static_cast<double>((x / 50 + y / 100) % 7 * 20);
}

/// Sample number x of a row of packed samples.
int packedAt(const PngContents& png, int64_t x, int64_t y) {
  const int64_t bit = x * png.bitDepth;
  const int byte =
      png.pixels[static_cast<size_t>(y) * png.rowBytes() + static_cast<size_t>(bit / 8)];
  return byte >> (8 - png.bitDepth - bit % 8) & ((1 << png.bitDepth) - 1);
}

BitmapColor colorsOf(size_t count, int fileBits = 0) {
  BitmapColor color;
  for (size_t i = 0; i < count; ++i) {
    const auto value = static_cast<uint8_t>(i * 37);
    color.palette.push_back({value, static_cast<uint8_t>(value + 1), static_cast<uint8_t>(~value)});
  }
  color.fileBits = fileBits;
  return color;
}

TEST_F(PngWriter, KeepsEveryLayoutOfWholeBytes) {
  for (const ColorModel model : {ColorModel::Gray, ColorModel::Rgb}) {
    for (const SampleFormat sample : {SampleFormat::UInt8, SampleFormat::UInt16}) {
      for (const bool alpha : {false, true}) {
        const Bitmap bitmap = makeBitmap(41, 23, {model, sample, alpha}, scatter);
        for (const PixelRect& area : {bitmap.bounds(), PixelRect{3, 5, 37, 11},
                                      PixelRect{40, 22, 1, 1}, PixelRect{0, 7, 41, 1}}) {
          const PngContents png = written(bitmap, area);
          EXPECT_EQ(png.colorType, (model == ColorModel::Rgb ? 2 : 0) + (alpha ? 4 : 0));
          EXPECT_EQ(png.bitDepth, sample == SampleFormat::UInt8 ? 8 : 16);
          EXPECT_EQ(png.pixels, storedBytes(bitmap, area));
          EXPECT_EQ(png.chunks, (std::vector<std::string>{"IHDR", "IDAT", "IEND"}));
        }
      }
    }
  }
}

TEST_F(PngWriter, PacksGreyBelowAByte) {
  for (const int bits : {1, 2, 4}) {
    const int full = (1 << bits) - 1;
    const auto level = [&](int64_t x, int64_t y) {
      return static_cast<int>(scatter(x, y, 0)) & full;
    };
    BitmapColor color;
    color.fileBits = bits;
    const Bitmap bitmap = makeBitmap(
        29, 7, kGray8, [&](int64_t x, int64_t y, int) { return level(x, y) * (255.0 / full); },
        color);
    for (const PixelRect& area :
         {bitmap.bounds(), PixelRect{3, 2, 13, 4}, PixelRect{28, 6, 1, 1}}) {
      const PngContents png = written(bitmap, area);
      EXPECT_EQ(png.colorType, 0);
      ASSERT_EQ(png.bitDepth, bits);
      for (int64_t y = 0; y < area.height; ++y) {
        for (int64_t x = 0; x < area.width; ++x) {
          ASSERT_EQ(packedAt(png, x, y), level(area.x + x, area.y + y));
        }
      }
    }
  }
}

TEST_F(PngWriter, PacksIndices) {
  for (const int bits : {1, 2, 4, 8}) {
    const size_t count = size_t{1} << bits;
    const auto index = [&](int64_t x, int64_t y) { return scatter(x, y, 0) % count; };
    const BitmapColor color = colorsOf(count, bits == 8 ? 0 : bits);
    const Bitmap bitmap = makeBitmap(
        31, 9, kIndexed,
        [&](int64_t x, int64_t y, int) { return static_cast<double>(index(x, y)); }, color);
    const PixelRect area{1, 2, 29, 5};
    const PngContents png = written(bitmap, area);
    EXPECT_EQ(png.colorType, 3);
    ASSERT_EQ(png.bitDepth, bits);
    ASSERT_EQ(png.palette.size(), count * 3);
    for (size_t i = 0; i < count; ++i) {
      EXPECT_EQ(png.palette[i * 3], color.palette[i].red);
      EXPECT_EQ(png.palette[i * 3 + 1], color.palette[i].green);
      EXPECT_EQ(png.palette[i * 3 + 2], color.palette[i].blue);
    }
    EXPECT_EQ(png.chunks, (std::vector<std::string>{"IHDR", "PLTE", "IDAT", "IEND"}));
    for (int64_t y = 0; y < area.height; ++y) {
      for (int64_t x = 0; x < area.width; ++x) {
        ASSERT_EQ(static_cast<size_t>(packedAt(png, x, y)), index(area.x + x, area.y + y));
      }
    }
  }
}

TEST_F(PngWriter, KeepsTheAlphaOfAPalette) {
  BitmapColor color = colorsOf(5);
  color.paletteHasAlpha = true;
  color.palette[1].alpha = 0;
  color.palette[3].alpha = 77;
  const auto index = [](int64_t x, int64_t, int) { return static_cast<double>(x); };
  const PngContents png = written(makeBitmap(5, 1, kIndexed, index, color), {0, 0, 5, 1});
  EXPECT_EQ(png.paletteAlpha, (std::vector<uint8_t>{255, 0, 255, 77}));
  EXPECT_EQ(png.chunks, (std::vector<std::string>{"IHDR", "PLTE", "tRNS", "IDAT", "IEND"}));
}

TEST_F(PngWriter, KeepsAnAlphaOfAPaletteThatNoEntryUses) {
  BitmapColor color = colorsOf(3);
  color.paletteHasAlpha = true;
  const auto index = [](int64_t x, int64_t, int) { return static_cast<double>(x); };
  const PngContents png = written(makeBitmap(3, 1, kIndexed, index, color), {0, 0, 3, 1});
  EXPECT_EQ(png.paletteAlpha, (std::vector<uint8_t>{255}));
}

TEST_F(PngWriter, GivesPixelsPastThePaletteABlackEntry) {
  const auto index = [](int64_t x, int64_t, int) { return static_cast<double>(x); };
  const Bitmap bitmap = makeBitmap(7, 1, kIndexed, index, colorsOf(3, 2));
  const PngContents inside = written(bitmap, {0, 0, 3, 1});
  EXPECT_EQ(inside.bitDepth, 2);
  EXPECT_EQ(inside.palette.size(), 9U);

  const PngContents past = written(bitmap, {1, 0, 6, 1});
  EXPECT_EQ(past.bitDepth, 4);
  ASSERT_EQ(past.palette.size(), 21U);
  for (size_t i = 9; i < 21; ++i)
    EXPECT_EQ(past.palette[i], 0);
  for (int64_t x = 0; x < 6; ++x)
    EXPECT_EQ(packedAt(past, x, 0), x + 1);
}

TEST_F(PngWriter, KeepsTheProfileByteForByte) {
  const std::vector<uint8_t> rgb = testing::wideRgbProfile();
  const PngContents color = written(makeBitmap(4, 4, kRgb8, scatter, {rgb, {}}), {1, 1, 2, 2});
  EXPECT_EQ(color.iccProfile, rgb);
  EXPECT_EQ(color.chunks, (std::vector<std::string>{"IHDR", "iCCP", "IDAT", "IEND"}));

  const std::vector<uint8_t> gray = testing::grayProfile(1.8);
  EXPECT_EQ(written(makeBitmap(4, 4, kGray8, scatter, {gray, {}}), {0, 0, 4, 4}).iccProfile, gray);

  BitmapColor indexed = colorsOf(256);
  indexed.iccProfile = rgb;
  EXPECT_EQ(written(makeBitmap(4, 4, kIndexed, scatter, indexed), {0, 0, 4, 4}).iccProfile, rgb);
}

TEST_F(PngWriter, SaysSrgbInAChunkOfItsOwn) {
  const PngContents png =
      written(makeBitmap(4, 4, kRgb8, scatter, {srgbProfile(), {}}), {0, 0, 4, 4});
  EXPECT_TRUE(png.iccProfile.empty());
  EXPECT_EQ(png.chunks, (std::vector<std::string>{"IHDR", "sRGB", "IDAT", "IEND"}));
}

TEST_F(PngWriter, LeavesOutAProfileOfAnotherKindOfColour) {
  const PngContents png =
      written(makeBitmap(4, 4, kGray8, scatter, {testing::wideRgbProfile(), {}}), {0, 0, 4, 4});
  EXPECT_EQ(png.colorType, 0);
  EXPECT_EQ(png.chunks, (std::vector<std::string>{"IHDR", "IDAT", "IEND"}));
}

TEST_F(PngWriter, ConvertsInkToTaggedRgb) {
  const auto ink = [](int64_t, int64_t, int channel) { return channel == 0 ? 255.0 : 0.0; };
  const Bitmap bitmap = makeBitmap(2, 1, {ColorModel::Cmyk, SampleFormat::UInt8, true}, ink);
  const PngContents png = written(bitmap, {0, 0, 2, 1});
  EXPECT_EQ(png.colorType, 6);
  EXPECT_EQ(png.pixels, (std::vector<uint8_t>{0, 255, 255, 0, 0, 255, 255, 0}));
  EXPECT_EQ(png.chunks, (std::vector<std::string>{"IHDR", "sRGB", "IDAT", "IEND"}));
}

TEST_F(PngWriter, WritesFloatsAsWordsInTheirOwnSpace) {
  const std::vector<uint8_t> profile = testing::wideRgbProfile();
  const auto sample = [](int64_t x, int64_t, int channel) {
    return static_cast<double>(x) - 0.5 + channel * 0.25;
  };
  const Bitmap bitmap =
      makeBitmap(2, 1, {ColorModel::Rgb, SampleFormat::Float32, false}, sample, {profile, {}});
  const PngContents png = written(bitmap, {0, 0, 2, 1});
  EXPECT_EQ(png.bitDepth, 16);
  EXPECT_EQ(png.iccProfile, profile);
  // -0.5, -0.25, 0, then 0.5, 0.75, 1.
  EXPECT_EQ(png.pixels, (std::vector<uint8_t>{0, 0, 0, 0, 0, 0, 0x80, 0, 0xBF, 0xFF, 0xFF, 0xFF}));
}

TEST_F(PngWriter, IsWholeAtEveryBorderOfStripes) {
  const Bitmap probe = makeBitmap(1500, 2000, kRgb8, [](int64_t, int64_t, int) { return 0.0; });
  const int64_t stripe = PngStripes(PngRows(probe, probe.bounds(), {})).rowsPerStripe;
  ASSERT_GT(stripe, 2);
  for (const int64_t height : {stripe - 1, stripe, stripe + 1, 2 * stripe, 2 * stripe + 1}) {
    const Bitmap bitmap = makeBitmap(1500, height, kRgb8, scatter);
    EXPECT_EQ(written(bitmap, bitmap.bounds()).pixels, storedBytes(bitmap, bitmap.bounds()));
  }
}

TEST_F(PngWriter, TakesRowsLongerThanAStripe) {
  const Bitmap wide = makeBitmap(400000, 3, kRgb8, scatter);
  EXPECT_EQ(PngStripes(PngRows(wide, wide.bounds(), {})).rowsPerStripe, 1);
  EXPECT_EQ(written(wide, wide.bounds()).pixels, storedBytes(wide, wide.bounds()));

  const Bitmap line = makeBitmap(2000003, 1, kGray8, scatter);
  EXPECT_EQ(written(line, line.bounds()).pixels, storedBytes(line, line.bounds()));
}

TEST_F(PngWriter, TakesColumnsOneWide) {
  const Bitmap column = makeBitmap(1, 700001, kGray8, scatter);
  EXPECT_GT(PngStripes(PngRows(column, column.bounds(), {})).count, 2);
  EXPECT_EQ(written(column, column.bounds()).pixels, storedBytes(column, column.bounds()));
}

TEST_F(PngWriter, FiltersByTheRowAboveWhereThatRepeats) {
  const Bitmap repeating = makeBitmap(601, 900, kRgb8, repeatingContent);
  const PngContents png = written(repeating, repeating.bounds());
  EXPECT_EQ(png.filterTypes, std::vector<uint8_t>(900, 2));

  const Bitmap noise = makeBitmap(601, 900, kRgb8, scatter);
  const std::vector<uint8_t> types = written(noise, noise.bounds()).filterTypes;
  EXPECT_LT(std::count(types.begin(), types.end(), 2), 300);
}

TEST_F(PngWriter, KeepsPicturesOfMixedContent) {
  const Bitmap bitmap = makeBitmap(1201, 2003, kRgb8, mixedContent);
  const PngContents png = written(bitmap, bitmap.bounds());
  for (int64_t y = 0; y < 2003; ++y) {
    const auto* row = reinterpret_cast<const uint8_t*>(bitmap.pixel(0, y));
    ASSERT_TRUE(std::equal(row, row + png.rowBytes(),
                           png.pixels.data() + static_cast<size_t>(y) * png.rowBytes()))
        << "row " << y;
  }
}

TEST_F(PngWriter, WritesTheSameBytesWithAnyNumberOfThreads) {
  const Bitmap bitmap = makeBitmap(1201, 2003, kRgb8, mixedContent);
  const std::string alone = bytesWith(bitmap, 1);
  for (const int threads : {2, 3, 7, 64})
    EXPECT_EQ(bytesWith(bitmap, threads), alone) << threads;
}

TEST_F(PngWriter, ReplacesALongerFile) {
  testing::writeFile(path(), std::string(100000, 'x'));
  const Bitmap bitmap = makeBitmap(3, 3, kGray8, scatter);
  EXPECT_EQ(written(bitmap, bitmap.bounds()).pixels, storedBytes(bitmap, bitmap.bounds()));
}

TEST_F(PngWriter, RefusesMorePixelsOnASideThanAPngHolds) {
  constexpr int64_t kTooMany = int64_t{1} << 31;
  // All rows are the same byte.
  const Bitmap high(1, kTooMany, kGray8, std::make_shared<const std::byte>(), 0, {});
  ASSERT_THROW(writePng(high, high.bounds(), path(), {}), std::length_error);
  const Bitmap wide(kTooMany, 1, kGray8, nullptr, 0, {});
  EXPECT_THROW(writePng(wide, wide.bounds(), path(), {}), std::length_error);
  EXPECT_FALSE(std::filesystem::exists(path()));
}

TEST_F(PngWriter, IsCancelledBeforeItStarts) {
  std::stop_source source;
  source.request_stop();
  const Bitmap bitmap = makeBitmap(3, 3, kGray8, scatter);
  EXPECT_THROW(writePng(bitmap, bitmap.bounds(), path(), source.get_token()), Cancelled);
  EXPECT_FALSE(std::filesystem::exists(path()));
}

TEST_F(PngWriter, IsCancelledInTheMiddle) {
  const Bitmap bitmap = makeBitmap(3000, 3000, kGray8, scatter);
  for (const int threads : {1, 4}) {
    std::stop_source source;
    testing::WatchedPipe pipe(m_folder / ("pipe" + std::to_string(threads)),
                              [&] { source.request_stop(); });
    EXPECT_THROW(
        writePngWithThreads(bitmap, bitmap.bounds(), pipe.path(), threads, source.get_token()),
        Cancelled);
  }
}

int errorOf(const std::function<void()>& work) {
  try {
    work();
  } catch (const std::system_error& error) {
    return error.code().value();
  }
  return 0;
}

TEST_F(PngWriter, ReportsAFullDisk) {
  const Bitmap bitmap = makeBitmap(1000, 1500, kGray8, scatter);
  const auto write = [&](const std::filesystem::path& to) {
    return errorOf([&] { writePng(bitmap, bitmap.bounds(), to, {}); });
  };
  EXPECT_EQ(write("/dev/full"), ENOSPC);
  const testing::FileSizeLimit limit(600000);
  EXPECT_EQ(write(path()), EFBIG);
}

TEST_F(PngWriter, ReportsAFolderThatIsNotThere) {
  const Bitmap bitmap = makeBitmap(3, 3, kGray8, scatter);
  EXPECT_EQ(errorOf([&] { writePng(bitmap, bitmap.bounds(), m_folder / "no/picture.png", {}); }),
            ENOENT);
  EXPECT_EQ(errorOf([&] { writePng(bitmap, bitmap.bounds(), m_folder.path(), {}); }), EISDIR);
}

}  // namespace
}  // namespace vantrel
