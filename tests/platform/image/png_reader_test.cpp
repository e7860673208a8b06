#include "platform/image/png_reader.h"

#include <gtest/gtest.h>

#include <ostream>

#include "base/cancelled.h"
#include "support/open_image.h"

namespace vantrel {
namespace {

using testing::Bytes;
using testing::decodeBytes;
using testing::exifBlock;
using testing::makePng;
using testing::makePngAround;
using testing::OpenImage;
using testing::pngChunk;
using testing::PngSpec;
using testing::sampleAt;

// Differs between neighbours and between channels, and uses all bits of a sample.
uint16_t pattern(const PngSpec& spec, uint32_t x, uint32_t y, int channel) {
  const uint32_t value = (x * 40503u) ^ (y * 30011u) ^ (static_cast<uint32_t>(channel) * 9973u);
  return static_cast<uint16_t>((value ^ value >> 7) & ((1u << spec.depth) - 1));
}

PngSpec spec(int colorType, int depth, uint32_t width = 4, uint32_t height = 3) {
  PngSpec made;
  made.colorType = colorType;
  made.depth = depth;
  made.width = width;
  made.height = height;
  made.sample = [depth](uint32_t x, uint32_t y, int channel) {
    PngSpec shape;
    shape.depth = depth;
    return pattern(shape, x, y, channel);
  };
  return made;
}

// 256 colours that are all different.
Bytes fullPalette(int count = 256) {
  Bytes colors;
  for (int i = 0; i < count; ++i) {
    colors.insert(colors.end(), {static_cast<uint8_t>(i), static_cast<uint8_t>(255 - i),
                                 static_cast<uint8_t>(i ^ 85)});
  }
  return pngChunk("PLTE", colors);
}

Bytes fixedNumbers(const std::vector<uint32_t>& values) {
  Bytes data;
  for (const uint32_t value : values) {
    for (int shift = 24; shift >= 0; shift -= 8)
      data.push_back(static_cast<uint8_t>(value >> shift));
  }
  return data;
}

struct Kind {
  int colorType, depth;
  ColorModel model;
  SampleFormat sample;
  bool alpha;
  int fileBits;

  friend void PrintTo(const Kind& kind, std::ostream* out) {
    *out << "colour type " << kind.colorType << ", " << kind.depth << " bits";
  }
};

constexpr Kind kKinds[] = {
    {0, 1, ColorModel::Gray, SampleFormat::UInt8, false, 1},
    {0, 2, ColorModel::Gray, SampleFormat::UInt8, false, 2},
    {0, 4, ColorModel::Gray, SampleFormat::UInt8, false, 4},
    {0, 8, ColorModel::Gray, SampleFormat::UInt8, false, 0},
    {0, 16, ColorModel::Gray, SampleFormat::UInt16, false, 0},
    {2, 8, ColorModel::Rgb, SampleFormat::UInt8, false, 0},
    {2, 16, ColorModel::Rgb, SampleFormat::UInt16, false, 0},
    {3, 1, ColorModel::Indexed, SampleFormat::UInt8, false, 1},
    {3, 2, ColorModel::Indexed, SampleFormat::UInt8, false, 2},
    {3, 4, ColorModel::Indexed, SampleFormat::UInt8, false, 4},
    {3, 8, ColorModel::Indexed, SampleFormat::UInt8, false, 0},
    {4, 8, ColorModel::Gray, SampleFormat::UInt8, true, 0},
    {4, 16, ColorModel::Gray, SampleFormat::UInt16, true, 0},
    {6, 8, ColorModel::Rgb, SampleFormat::UInt8, true, 0},
    {6, 16, ColorModel::Rgb, SampleFormat::UInt16, true, 0},
};

class PngKinds : public ::testing::TestWithParam<Kind> {
 protected:
  static PngSpec specOf(const Kind& kind, uint32_t width, uint32_t height, bool interlaced) {
    PngSpec made = spec(kind.colorType, kind.depth, width, height);
    made.interlaced = interlaced;
    if (kind.colorType == 3) made.before = {fullPalette(1 << kind.depth)};
    return made;
  }

  // The value that memory has for a sample of the file.
  static int inMemory(const Kind& kind, int sample) {
    if (kind.colorType != 0 || kind.depth >= 8) return sample;
    return sample * 255 / ((1 << kind.depth) - 1);
  }
};

TEST_P(PngKinds, KeepLayoutAndEverySample) {
  const Kind& kind = GetParam();
  const std::pair<uint32_t, uint32_t> sizes[] = {{1, 1}, {3, 2}, {5, 1}, {8, 8}, {17, 9}, {33, 70}};
  for (const auto& [width, height] : sizes) {
    for (const bool interlaced : {false, true}) {
      const PngSpec made = specOf(kind, width, height, interlaced);
      const Bitmap bitmap = decodeBytes(makePng(made));
      ASSERT_EQ(bitmap.bounds(), (PixelRect{0, 0, width, height}));
      ASSERT_EQ(bitmap.layout(), (PixelLayout{kind.model, kind.sample, kind.alpha}));
      EXPECT_EQ(bitmap.color().fileBits, kind.fileBits);
      EXPECT_EQ(bitmap.hasAlpha(), kind.alpha);
      for (uint32_t y = 0; y < height; ++y) {
        for (uint32_t x = 0; x < width; ++x) {
          for (int channel = 0; channel < made.channels(); ++channel) {
            ASSERT_EQ(sampleAt(bitmap, x, y, channel), inMemory(kind, made.sample(x, y, channel)))
                << width << "x" << height << " at " << x << "," << y << " interlaced "
                << interlaced;
          }
        }
      }
    }
  }
}

TEST_P(PngKinds, StandUprightForEveryOrientation) {
  const Kind& kind = GetParam();
  for (const bool interlaced : {false, true}) {
    for (uint16_t tag = 1; tag <= 8; ++tag) {
      PngSpec made = specOf(kind, 11, 6, interlaced);
      const Bytes exif = pngChunk("eXIf", exifBlock(tag, tag % 2 == 0));
      (tag > 4 ? made.after : made.before).push_back(exif);
      const Bitmap bitmap = decodeBytes(makePng(made));
      const bool turned = tag >= 5;
      ASSERT_EQ(bitmap.bounds(), (PixelRect{0, 0, turned ? 6 : 11, turned ? 11 : 6}));
      // TIFF 6.0, tag 274: where the first stored row and the first stored column end up.
      const bool fromRight = tag == 2 || tag == 3 || tag == 6 || tag == 7;
      const bool fromBottom = tag == 3 || tag == 4 || tag == 7 || tag == 8;
      for (uint32_t y = 0; y < made.height; ++y) {
        for (uint32_t x = 0; x < made.width; ++x) {
          const int64_t across = turned ? y : x;
          const int64_t down = turned ? x : y;
          const int64_t uprightX = fromRight ? bitmap.width() - 1 - across : across;
          const int64_t uprightY = fromBottom ? bitmap.height() - 1 - down : down;
          ASSERT_EQ(sampleAt(bitmap, uprightX, uprightY, 0), inMemory(kind, made.sample(x, y, 0)))
              << "orientation " << tag << " at " << x << "," << y;
        }
      }
    }
  }
}

INSTANTIATE_TEST_SUITE_P(Png, PngKinds, ::testing::ValuesIn(kKinds));

TEST(PngReader, KeepsThePaletteWithItsAlpha) {
  PngSpec made = spec(3, 2);
  made.before = {fullPalette(4), pngChunk("tRNS", {0, 128})};
  const Bitmap bitmap = decodeBytes(makePng(made));
  const std::vector<PaletteEntry> expected = {
      {0, 255, 85, 0}, {1, 254, 84, 128}, {2, 253, 87, 255}, {3, 252, 86, 255}};
  EXPECT_EQ(bitmap.color().palette, expected);
  EXPECT_TRUE(bitmap.color().paletteHasAlpha);
  EXPECT_TRUE(bitmap.hasAlpha());
  EXPECT_FALSE(bitmap.layout().alpha);
}

TEST(PngReader, KeepsIndicesPastTheEndOfThePalette) {
  PngSpec made = spec(3, 8);
  made.before = {fullPalette(2)};
  made.sample = [](uint32_t x, uint32_t, int) { return static_cast<uint16_t>(x * 80); };
  const Bitmap bitmap = decodeBytes(makePng(made));
  EXPECT_EQ(bitmap.color().palette.size(), 2u);
  EXPECT_EQ(sampleAt(bitmap, 3, 0, 0), 240);
}

TEST(PngReader, MakesOneTransparentGrayAnAlphaChannelAtTheDepthOfTheFile) {
  for (const int depth : {1, 2, 4, 8, 16}) {
    PngSpec made = spec(0, depth, 20, 20);
    const uint16_t transparent = made.sample(7, 3, 0);
    made.before = {pngChunk(
        "tRNS", {static_cast<uint8_t>(transparent >> 8), static_cast<uint8_t>(transparent)})};
    const Bitmap bitmap = decodeBytes(makePng(made));
    ASSERT_EQ(bitmap.layout(),
              (PixelLayout{ColorModel::Gray,
                           depth == 16 ? SampleFormat::UInt16 : SampleFormat::UInt8, true}));
    const int full = depth == 16 ? 65535 : 255;
    for (uint32_t y = 0; y < 20; ++y) {
      for (uint32_t x = 0; x < 20; ++x) {
        const bool match = made.sample(x, y, 0) == transparent;
        ASSERT_EQ(sampleAt(bitmap, x, y, 1), match ? 0 : full) << depth << " bits";
      }
    }
  }
}

TEST(PngReader, MakesOneTransparentColorOf16BitsAnAlphaChannelExactly) {
  PngSpec made = spec(2, 16, 2, 1);
  // The two pixels differ in the last bit of one channel only.
  made.sample = [](uint32_t x, uint32_t, int channel) {
    return static_cast<uint16_t>(channel == 2 ? 0x1234 + x : 0xabcd);
  };
  made.before = {pngChunk("tRNS", {0xab, 0xcd, 0xab, 0xcd, 0x12, 0x34})};
  const Bitmap bitmap = decodeBytes(makePng(made));
  EXPECT_EQ(sampleAt(bitmap, 0, 0, 3), 0);
  EXPECT_EQ(sampleAt(bitmap, 1, 0, 3), 65535);
  EXPECT_EQ(sampleAt(bitmap, 1, 0, 2), 0x1235);
}

TEST(PngReader, LeavesPixelsAloneWhateverTheirGamma) {
  PngSpec made = spec(2, 8);
  made.before = {pngChunk("gAMA", fixedNumbers({100000})), pngChunk("bKGD", {0, 1, 0, 2, 0, 3}),
                 pngChunk("sBIT", {5, 6, 5})};
  const Bitmap bitmap = decodeBytes(makePng(made));
  EXPECT_EQ(sampleAt(bitmap, 2, 1, 1), made.sample(2, 1, 1));
}

TEST(PngReader, TakesTheFirstSoundOrientation) {
  PngSpec made = spec(0, 8, 4, 3);
  Bytes damaged = pngChunk("eXIf", exifBlock(6));
  damaged.back() ^= 1;
  made.before = {damaged, pngChunk("eXIf", exifBlock(3))};
  made.after = {pngChunk("eXIf", exifBlock(8))};
  const Bitmap bitmap = decodeBytes(makePng(made));
  EXPECT_EQ(bitmap.width(), 4);
  EXPECT_EQ(sampleAt(bitmap, 0, 0, 0), made.sample(3, 2, 0));
}

TEST(PngReader, CountsTheFramesOfAnAnimation) {
  const auto countWith = [](const Bytes& chunk) {
    PngSpec made = spec(2, 8);
    made.before = {pngChunk("tEXt", {'a', 0, 'b'}), chunk};
    return OpenImage(makePng(made)).reader().imageCount({});
  };
  EXPECT_EQ(countWith(pngChunk("tIME", {7, 208, 1, 1, 0, 0, 0})), 1);
  EXPECT_EQ(countWith(pngChunk("acTL", fixedNumbers({12, 0}))), 12);
  EXPECT_EQ(countWith(pngChunk("acTL", fixedNumbers({1, 0}))), 1);
  EXPECT_EQ(countWith(pngChunk("acTL", fixedNumbers({0xffffffff, 0}))), 0x7fffffff);
  EXPECT_EQ(countWith(pngChunk("acTL", fixedNumbers({0, 0}))), 1);
  EXPECT_EQ(countWith(pngChunk("acTL", {0, 0})), 1);
}

TEST(PngReader, IsNoAnimationWhenTheControlComesAfterThePicture) {
  PngSpec made = spec(2, 8);
  made.after = {pngChunk("acTL", fixedNumbers({12, 0}))};
  OpenImage image(makePng(made));
  EXPECT_EQ(image.reader().imageCount({}), 1);
  EXPECT_EQ(image.reader().type(), ImageType::Png);
  EXPECT_NO_THROW((void)image.reader().decode({}));
}

TEST(PngReader, DecodesTheSameTwice) {
  OpenImage image(makePng(spec(2, 8)));
  const Bitmap first = image.reader().decode({});
  const Bitmap second = image.reader().decode({});
  EXPECT_EQ(sampleAt(first, 3, 2, 2), sampleAt(second, 3, 2, 2));
}

TEST(PngReader, StopsWhenAskedTo) {
  OpenImage image(makePng(spec(2, 8)));
  std::stop_source source;
  source.request_stop();
  EXPECT_THROW((void)image.reader().imageCount(source.get_token()), Cancelled);
  EXPECT_THROW((void)image.reader().decode(source.get_token()), Cancelled);
}

void expectDamaged(const Bytes& bytes) {
  OpenImage image(bytes);
  EXPECT_EQ(image.reader().imageCount({}), 1);
  EXPECT_THROW((void)image.reader().decode({}), ImageDamaged);
}

TEST(PngReader, RefusesAWrongChecksumOfTheDeflateStream) {
  const PngSpec made = spec(2, 8, 40, 40);
  Bytes compressed = testing::deflated(testing::pngRows(made));
  compressed.back() ^= 1;
  expectDamaged(makePngAround(made, compressed));
}

TEST(PngReader, RefusesAWrongChecksumThatComesAfterTheLastRow) {
  PngSpec made = spec(2, 8, 40, 40);
  Bytes compressed = testing::deflated(testing::pngRows(made));
  const Bytes checksum(compressed.end() - 4, compressed.end());
  compressed.resize(compressed.size() - 4);
  made.after = {pngChunk("IDAT", checksum)};
  EXPECT_NO_THROW((void)decodeBytes(makePngAround(made, compressed)));
  made.after = {pngChunk("IDAT", {1, 2, 3, 4})};
  expectDamaged(makePngAround(made, compressed));
}

TEST(PngReader, RefusesADeflateStreamWithoutItsChecksum) {
  const PngSpec made = spec(2, 8, 40, 40);
  Bytes compressed = testing::deflated(testing::pngRows(made));
  compressed.resize(compressed.size() - 4);
  expectDamaged(makePngAround(made, compressed));
}

TEST(PngReader, RefusesTooFewRows) {
  const PngSpec made = spec(2, 8, 40, 40);
  Bytes rows = testing::pngRows(made);
  rows.resize(rows.size() - 1);
  expectDamaged(makePngAround(made, testing::deflated(rows)));
}

TEST(PngReader, ReadsAPictureWithDataAfterItsLastRow) {
  const PngSpec made = spec(2, 8, 40, 40);
  Bytes rows = testing::pngRows(made);
  rows.resize(rows.size() + 1000);
  const Bitmap bitmap = decodeBytes(makePngAround(made, testing::deflated(rows)));
  EXPECT_EQ(sampleAt(bitmap, 39, 39, 0), made.sample(39, 39, 0));
}

TEST(PngReader, RefusesAnUnknownFilter) {
  const PngSpec made = spec(2, 8);
  Bytes rows = testing::pngRows(made);
  rows[0] = 5;
  expectDamaged(makePngAround(made, testing::deflated(rows)));
}

TEST(PngReader, RefusesAFileWithoutItsEnd) {
  Bytes file = makePng(spec(2, 8));
  file.resize(file.size() - 12);
  expectDamaged(file);
}

TEST(PngReader, RefusesAPaletteImageWithoutPalette) {
  expectDamaged(makePng(spec(3, 8)));
}

TEST(PngReader, RefusesAnUnknownCriticalChunk) {
  PngSpec made = spec(2, 8);
  made.before = {pngChunk("ABCD", {1, 2, 3})};
  expectDamaged(makePng(made));
}

TEST(PngReader, ForgivesAWrongChecksumOfAChunkThatDoesNotMatter) {
  PngSpec made = spec(2, 8);
  Bytes chunk = pngChunk("gAMA", fixedNumbers({100000}));
  chunk.back() ^= 1;
  made.before = {chunk};
  EXPECT_TRUE(decodeBytes(makePng(made)).color().iccProfile.empty());
}

TEST(PngReader, RefusesSizesThatTheDataCannotFill) {
  const std::pair<uint32_t, uint32_t> sizes[] = {
      {0, 3},         {4, 0},          {0x7fffffff, 0x7fffffff}, {0x80000000, 1},
      {60000, 23000}, {1, 0x7fffffff}, {0x7fffffff, 1}};
  for (const auto& [width, height] : sizes) {
    PngSpec lie = spec(2, 8);
    const Bytes compressed = testing::deflated(testing::pngRows(lie));
    lie.width = width;
    lie.height = height;
    expectDamaged(makePngAround(lie, compressed));
  }
}

}  // namespace
}  // namespace vantrel
