#include "platform/image/tiff_reader.h"

#include <gmock/gmock.h>

#include <bit>
#include <cmath>

#include "platform/image/tiff_reader_fixture.h"
#include "support/icc_maker.h"

namespace vantrel {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

TEST_F(TiffReader, EveryStorageOfRgbGivesTheSamePixels) {
  for (const char* mode : {"wl", "wb", "w8l", "w8b"}) {
    for (const int bits : {8, 16}) {
      for (const bool planes : {false, true}) {
        for (const uint32_t tile : {0U, 16U}) {
          for (const int compression :
               {COMPRESSION_NONE, COMPRESSION_LZW, COMPRESSION_PACKBITS, COMPRESSION_ADOBE_DEFLATE,
                COMPRESSION_LZMA, COMPRESSION_ZSTD}) {
            if (!TIFFIsCODECConfigured(static_cast<uint16_t>(compression))) continue;
            TiffSpec spec = patterned(bits, 3, PHOTOMETRIC_RGB);
            spec.width = 37;
            spec.height = 21;
            spec.separatePlanes = planes;
            spec.tileSide = tile;
            spec.rowsPerStrip = 4;
            spec.compression = compression;
            const bool predicted =
                compression == COMPRESSION_LZW || compression == COMPRESSION_ADOBE_DEFLATE;
            spec.predictor = predicted ? PREDICTOR_HORIZONTAL : 0;
            SCOPED_TRACE(::testing::Message() << mode << ' ' << bits << " planes " << planes
                                              << " tile " << tile << " codec " << compression);
            const Bitmap bitmap = decoded(spec, mode);
            const SampleFormat format = bits == 8 ? SampleFormat::UInt8 : SampleFormat::UInt16;
            EXPECT_EQ(bitmap.layout(), (PixelLayout{ColorModel::Rgb, format, false}));
            EXPECT_EQ(bitmap.color().fileBits, 0);
            if (bits == 8) {
              expectPattern<uint8_t>(bitmap, spec);
            } else {
              expectPattern<uint16_t>(bitmap, spec);
            }
          }
        }
      }
    }
  }
}

TEST_F(TiffReader, TypeIsTiffAndOnePictureIsOne) {
  testing::saveTiff(path(), {patterned(8, 3, PHOTOMETRIC_RGB)});
  const auto reader = open();
  ASSERT_TRUE(reader);
  EXPECT_EQ(reader->type(), ImageType::Tiff);
  EXPECT_EQ(reader->imageCount({}), 1);
  EXPECT_EQ(reader->decode({}).width(), 5);
}

TEST_F(TiffReader, BilevelOfBothPolaritiesIsGreyOfOneBit) {
  for (const int compression : {COMPRESSION_NONE, COMPRESSION_CCITTRLE, COMPRESSION_CCITTFAX3,
                                COMPRESSION_CCITTFAX4, COMPRESSION_PACKBITS}) {
    for (const bool inverted : {false, true}) {
      TiffSpec spec = patterned(1, 1, inverted ? PHOTOMETRIC_MINISWHITE : PHOTOMETRIC_MINISBLACK);
      spec.width = 45;
      spec.height = 10;
      spec.compression = compression;
      SCOPED_TRACE(::testing::Message() << compression << inverted);
      const Bitmap bitmap = decoded(spec);
      EXPECT_EQ(bitmap.layout(), (PixelLayout{ColorModel::Gray}));
      EXPECT_EQ(bitmap.color().fileBits, 1);
      expectSamples<uint8_t>(bitmap, spec, [&](uint32_t x, uint32_t y, int) {
        return (spec.sample(x, y, 0) == 1) == inverted ? 0 : 255;
      });
    }
  }
}

TEST_F(TiffReader, ReversedBitsInBytesAreTurned) {
  TiffSpec spec = patterned(1, 1, PHOTOMETRIC_MINISBLACK);
  spec.width = 20;
  spec.fillOrder = FILLORDER_LSB2MSB;
  expectSamples<uint8_t>(decoded(spec), spec,
                         [&](uint32_t x, uint32_t y, int) { return spec.sample(x, y, 0) * 255; });
}

TEST_F(TiffReader, ShallowGreyIsSpreadOverEightBits) {
  for (const int bits : {2, 4}) {
    const TiffSpec spec = patterned(bits, 1, PHOTOMETRIC_MINISBLACK);
    const Bitmap bitmap = decoded(spec);
    EXPECT_EQ(bitmap.color().fileBits, bits);
    expectSamples<uint8_t>(bitmap, spec, [&](uint32_t x, uint32_t y, int) {
      return spec.sample(x, y, 0) * 255 / ((1U << bits) - 1);
    });
  }
}

TEST_F(TiffReader, DeepSamplesAreSpreadOverSixteenBits) {
  for (const int bits : {10, 12, 14}) {
    for (const bool planes : {false, true}) {
      TiffSpec spec = patterned(bits, 3, PHOTOMETRIC_RGB);
      spec.separatePlanes = planes;
      const Bitmap bitmap = decoded(spec);
      EXPECT_EQ(bitmap.layout().sample, SampleFormat::UInt16);
      EXPECT_EQ(bitmap.color().fileBits, bits);
      expectSamples<uint16_t>(bitmap, spec, [&](uint32_t x, uint32_t y, int c) {
        return std::lround(static_cast<double>(spec.sample(x, y, c)) * 65535 / ((1 << bits) - 1));
      });
    }
  }
}

TEST_F(TiffReader, ThirtyTwoBitIntegersKeepTheirUpperHalf) {
  for (const char* mode : {"wl", "wb"}) {
    const TiffSpec spec = patterned(32, 1, PHOTOMETRIC_MINISBLACK);
    expectSamples<uint16_t>(decoded(spec, mode), spec, [&](uint32_t x, uint32_t y, int) {
      return spec.sample(x, y, 0) >> 16;
    });
  }
}

TEST_F(TiffReader, GreyOfSixteenBitsIsInvertedWhereZeroIsWhite) {
  const TiffSpec spec = patterned(16, 1, PHOTOMETRIC_MINISWHITE);
  expectSamples<uint16_t>(decoded(spec, "wb"), spec, [&](uint32_t x, uint32_t y, int) {
    return 65535 - spec.sample(x, y, 0);
  });
}

TEST_F(TiffReader, StraightAlphaIsKept) {
  for (const bool planes : {false, true}) {
    for (const int colors : {1, 3, 4}) {
      TiffSpec spec = patterned(8, colors + 1,
                                colors == 1   ? PHOTOMETRIC_MINISBLACK
                                : colors == 3 ? PHOTOMETRIC_RGB
                                              : PHOTOMETRIC_SEPARATED);
      spec.extraSamples = {EXTRASAMPLE_UNASSALPHA};
      spec.separatePlanes = planes;
      const Bitmap bitmap = decoded(spec);
      EXPECT_TRUE(bitmap.layout().alpha);
      EXPECT_EQ(bitmap.layout().colorChannels(), colors);
      expectPattern<uint8_t>(bitmap, spec);
    }
  }
}

TEST_F(TiffReader, AssociatedAlphaIsDividedOut) {
  TiffSpec spec = patterned(8, 4, PHOTOMETRIC_RGB);
  spec.extraSamples = {EXTRASAMPLE_ASSOCALPHA};
  spec.sample = [](uint32_t x, uint32_t, int c) {
    static constexpr uint8_t kPixels[5][4] = {
        {100, 50, 25, 128}, {9, 9, 9, 0}, {200, 100, 3, 255}, {250, 10, 0, 100}, {1, 1, 1, 3}};
    return kPixels[x][c];
  };
  const Bitmap bitmap = decoded(spec);
  EXPECT_THAT(pixelAt<uint8_t>(bitmap, 0, 0), ElementsAre(199, 100, 50, 128));
  EXPECT_THAT(pixelAt<uint8_t>(bitmap, 1, 0), ElementsAre(0, 0, 0, 0));
  EXPECT_THAT(pixelAt<uint8_t>(bitmap, 2, 0), ElementsAre(200, 100, 3, 255));
  EXPECT_THAT(pixelAt<uint8_t>(bitmap, 3, 0), ElementsAre(255, 26, 0, 100));
  EXPECT_THAT(pixelAt<uint8_t>(bitmap, 4, 0), ElementsAre(85, 85, 85, 3));
  spec.bits = 16;
  spec.sample = [](uint32_t, uint32_t, int c) { return c == 3 ? 32768U : 16384U; };
  EXPECT_THAT(pixelAt<uint16_t>(decoded(spec), 0, 0), ElementsAre(32768, 32768, 32768, 32768));
}

TEST_F(TiffReader, UnspecifiedExtraSamplesAreLeftOut) {
  for (const bool planes : {false, true}) {
    TiffSpec spec = patterned(8, 5, PHOTOMETRIC_RGB);
    spec.separatePlanes = planes;
    spec.extraSamples = {EXTRASAMPLE_UNSPECIFIED, EXTRASAMPLE_UNASSALPHA};
    expectSamples<uint8_t>(decoded(spec), spec, [&](uint32_t x, uint32_t y, int c) {
      return spec.sample(x, y, c == 3 ? 4 : c);
    });
    spec.extraSamples = {EXTRASAMPLE_UNSPECIFIED, EXTRASAMPLE_UNSPECIFIED};
    const Bitmap bitmap = decoded(spec);
    EXPECT_FALSE(bitmap.hasAlpha());
    expectPattern<uint8_t>(bitmap, spec);
  }
}

TEST_F(TiffReader, PaletteOfEightBitColoursIsIndexed) {
  for (const int bits : {1, 2, 4, 8}) {
    const std::function<uint16_t(uint32_t)> forms[] = {
        [](uint32_t i) { return static_cast<uint16_t>(i % 256 * 257); },
        [](uint32_t i) { return static_cast<uint16_t>(i % 256 * 256); },
        [](uint32_t i) { return static_cast<uint16_t>(i % 256); }};
    for (const auto& form : forms) {
      TiffSpec spec = patterned(bits, 1, PHOTOMETRIC_PALETTE);
      fillColorMap(spec, form);
      const Bitmap bitmap = decoded(spec);
      EXPECT_EQ(bitmap.layout(), (PixelLayout{ColorModel::Indexed}));
      EXPECT_EQ(bitmap.color().fileBits, bits == 8 ? 0 : bits);
      ASSERT_EQ(bitmap.color().palette.size(), size_t{1} << bits);
      EXPECT_EQ(bitmap.color().palette[1], (PaletteEntry{3, 4, 5, 255}));
      EXPECT_FALSE(bitmap.hasAlpha());
      expectPattern<uint8_t>(bitmap, spec);
    }
  }
}

TEST_F(TiffReader, FinePaletteBecomesRgbOfSixteenBits) {
  for (const int bits : {8, 16}) {
    TiffSpec spec = patterned(bits, 1, PHOTOMETRIC_PALETTE);
    fillColorMap(spec, [](uint32_t i) { return static_cast<uint16_t>(i * 211 + 1); });
    const Bitmap bitmap = decoded(spec);
    EXPECT_EQ(bitmap.layout(), (PixelLayout{ColorModel::Rgb, SampleFormat::UInt16}));
    expectSamples<uint16_t>(bitmap, spec, [&](uint32_t x, uint32_t y, int c) {
      return (spec.sample(x, y, 0) * 3 + static_cast<uint32_t>(c)) * 211 + 1;
    });
  }
}

TEST_F(TiffReader, PaletteWithAlphaBecomesRgb) {
  TiffSpec spec = patterned(8, 2, PHOTOMETRIC_PALETTE);
  spec.extraSamples = {EXTRASAMPLE_UNASSALPHA};
  fillColorMap(spec, [](uint32_t i) { return static_cast<uint16_t>(i % 256 * 257); });
  const Bitmap bitmap = decoded(spec);
  EXPECT_EQ(bitmap.layout(), (PixelLayout{ColorModel::Rgb, SampleFormat::UInt16, true}));
  expectSamples<uint16_t>(bitmap, spec, [&](uint32_t x, uint32_t y, int c) {
    if (c == 3) return spec.sample(x, y, 1) * 257;
    return (spec.sample(x, y, 0) * 3 + static_cast<uint32_t>(c)) % 256 * 257;
  });
}

TEST_F(TiffReader, InkIsKept) {
  for (const int bits : {8, 16}) {
    TiffSpec spec = patterned(bits, 4, PHOTOMETRIC_SEPARATED);
    spec.inkSet = INKSET_CMYK;
    const Bitmap bitmap = decoded(spec);
    EXPECT_EQ(bitmap.layout().model, ColorModel::Cmyk);
    if (bits == 8) {
      expectPattern<uint8_t>(bitmap, spec);
    } else {
      expectPattern<uint16_t>(bitmap, spec);
    }
  }
}

TEST_F(TiffReader, InksOtherThanFourAreRefused) {
  TiffSpec spec = patterned(8, 4, PHOTOMETRIC_SEPARATED);
  spec.inkSet = INKSET_MULTIINK;
  EXPECT_THROW(decoded(spec), ImageDamaged);
}

TEST_F(TiffReader, LabIsEncodedAsInIccVersion4) {
  const auto pixelOf = [this](int photometric, int bits, std::array<uint32_t, 3> values) {
    TiffSpec spec = patterned(bits, 3, photometric);
    spec.sample = [values](uint32_t, uint32_t, int c) { return values[static_cast<size_t>(c)]; };
    const Bitmap bitmap = decoded(spec);
    EXPECT_EQ(bitmap.layout().model, ColorModel::Lab);
    if (bits == 16) return pixelAt<uint16_t>(bitmap, 2, 2);
    const std::vector<uint8_t> bytes = pixelAt<uint8_t>(bitmap, 2, 2);
    return std::vector<uint16_t>(bytes.begin(), bytes.end());
  };
  // L* 100, a* 0, b* -1.
  EXPECT_THAT(pixelOf(PHOTOMETRIC_CIELAB, 8, {255, 0, 0xFF}), ElementsAre(255, 128, 127));
  EXPECT_THAT(pixelOf(PHOTOMETRIC_CIELAB, 16, {65535, 0, 0xFF00}),
              ElementsAre(65535, 32896, 32639));
  EXPECT_THAT(pixelOf(PHOTOMETRIC_ICCLAB, 8, {255, 128, 127}), ElementsAre(255, 128, 127));
  EXPECT_THAT(pixelOf(PHOTOMETRIC_ICCLAB, 16, {0xFF00, 0x8000, 0x7F00}),
              ElementsAre(65535, 32896, 32639));
  // L* 100, a* 0, b* 0; then the ends of the ranges, 85 and 125.
  EXPECT_THAT(pixelOf(PHOTOMETRIC_ITULAB, 8, {255, 128, 96}), ElementsAre(255, 128, 128));
  EXPECT_THAT(pixelOf(PHOTOMETRIC_ITULAB, 8, {0, 255, 255}), ElementsAre(0, 213, 253));
}

TEST_F(TiffReader, FloatingPointOfEveryWidthBecomesSingle) {
  const float values[] = {0, 1, 0.5F, 0.0625F, 1.5F};
  for (const char* mode : {"wl", "wb"}) {
    for (const int bits : {16, 24, 32, 64}) {
      TiffSpec spec = patterned(bits, 3, PHOTOMETRIC_RGB);
      spec.sampleFormat = SAMPLEFORMAT_IEEEFP;
      spec.sample = [&values, bits](uint32_t x, uint32_t, int) -> uint64_t {
        const float value = values[x];
        if (bits == 64) return std::bit_cast<uint64_t>(double{value});
        if (bits == 32 || value == 0) return std::bit_cast<uint32_t>(value);
        int exponent = 0;
        const double fraction = std::frexp(value, &exponent) * 2 - 1;
        const int mantissaBits = bits == 16 ? 10 : 16;
        const int bias = bits == 16 ? 15 : 63;
        return static_cast<uint64_t>(exponent - 1 + bias) << mantissaBits |
               static_cast<uint64_t>(std::ldexp(fraction, mantissaBits));
      };
      SCOPED_TRACE(::testing::Message() << mode << bits);
      const Bitmap bitmap = decoded(spec, mode);
      EXPECT_EQ(bitmap.layout(), (PixelLayout{ColorModel::Rgb, SampleFormat::Float32}));
      expectSamples<float>(bitmap, spec, [&](uint32_t x, uint32_t, int) { return values[x]; });
    }
  }
}

TEST_F(TiffReader, FloatingPointPredictorIsUndone) {
  TiffSpec spec = patterned(32, 1, PHOTOMETRIC_MINISBLACK);
  spec.sampleFormat = SAMPLEFORMAT_IEEEFP;
  spec.compression = COMPRESSION_ADOBE_DEFLATE;
  spec.predictor = PREDICTOR_FLOATINGPOINT;
  spec.sample = [](uint32_t x, uint32_t y, int) {
    return std::bit_cast<uint32_t>(static_cast<float>(x + y) / 8);
  };
  expectSamples<float>(decoded(spec), spec,
                       [](uint32_t x, uint32_t y, int) { return static_cast<float>(x + y) / 8; });
}

TEST_F(TiffReader, JpegInsideIsDecodedToRgb) {
  for (const uint32_t tile : {0U, 16U}) {
    TiffSpec spec = patterned(8, 3, PHOTOMETRIC_YCBCR);
    spec.width = 48;
    spec.height = 32;
    spec.tileSide = tile;
    spec.rowsPerStrip = 16;
    spec.compression = COMPRESSION_JPEG;
    spec.jpegFromRgb = true;
    spec.sample = [](uint32_t x, uint32_t y, int c) {
      return c == 0 ? x * 5 : c == 1 ? y * 7 : 90;
    };
    const Bitmap bitmap = decoded(spec);
    EXPECT_EQ(bitmap.layout(), (PixelLayout{ColorModel::Rgb}));
    ASSERT_EQ(bitmap.height(), 32);
    for (uint32_t y = 0; y < spec.height; ++y) {
      for (uint32_t x = 0; x < spec.width; ++x) {
        for (int c = 0; c < 3; ++c) {
          ASSERT_NEAR(sampleAt<uint8_t>(bitmap, x, y, c), spec.sample(x, y, c), 24)
              << x << ' ' << y << ' ' << c;
        }
      }
    }
  }
}

TEST_F(TiffReader, UncompressedLuminanceAndChromaBecomeRgb) {
  TiffSpec spec = patterned(8, 3, PHOTOMETRIC_YCBCR);
  spec.width = 8;
  spec.orientation = 3;
  // Subsampled 2 × 2, as is the default: four luminances, then Cb and Cr. A white picture whose
  // first row is grey.
  spec.samples = 3;
  testing::Bytes data;
  for (int block = 0; block < 8; ++block) {
    const uint8_t top = block < 4 ? 128 : 255;
    data.insert(data.end(), {top, top, 255, 255, 128, 128});
  }
  {
    struct Close {
      void operator()(TIFF* tiff) const { TIFFClose(tiff); }
    };
    const std::unique_ptr<TIFF, Close> tiff(TIFFOpen(path().c_str(), "wl"));
    ASSERT_TRUE(tiff);
    TIFFSetField(tiff.get(), TIFFTAG_IMAGEWIDTH, 8);
    TIFFSetField(tiff.get(), TIFFTAG_IMAGELENGTH, 4);
    TIFFSetField(tiff.get(), TIFFTAG_BITSPERSAMPLE, 8);
    TIFFSetField(tiff.get(), TIFFTAG_SAMPLESPERPIXEL, 3);
    TIFFSetField(tiff.get(), TIFFTAG_PHOTOMETRIC, PHOTOMETRIC_YCBCR);
    TIFFSetField(tiff.get(), TIFFTAG_PLANARCONFIG, PLANARCONFIG_CONTIG);
    TIFFSetField(tiff.get(), TIFFTAG_ORIENTATION, 3);
    TIFFSetField(tiff.get(), TIFFTAG_ROWSPERSTRIP, 4);
    ASSERT_GE(TIFFWriteRawStrip(tiff.get(), 0, data.data(), static_cast<tmsize_t>(data.size())), 0);
  }
  const Bitmap bitmap = decode();
  EXPECT_EQ(bitmap.layout(), (PixelLayout{ColorModel::Rgb}));
  ASSERT_EQ(bitmap.width(), 8);
  ASSERT_EQ(bitmap.height(), 4);
  EXPECT_THAT(pixelAt<uint8_t>(bitmap, 0, 3), ElementsAre(128, 128, 128));
  EXPECT_THAT(pixelAt<uint8_t>(bitmap, 7, 3), ElementsAre(128, 128, 128));
  for (int64_t y = 0; y < 3; ++y) {
    EXPECT_THAT(pixelAt<uint8_t>(bitmap, 3, y), ElementsAre(255, 255, 255)) << y;
  }
}

TEST_F(TiffReader, EveryOrientationIsTurnedUpright) {
  for (const uint32_t tile : {0U, 16U}) {
    for (int orientation = 1; orientation <= 8; ++orientation) {
      TiffSpec spec = patterned(8, 3, PHOTOMETRIC_RGB);
      spec.width = 19;
      spec.height = 23;
      spec.tileSide = tile;
      spec.orientation = orientation;
      const Bitmap bitmap = decoded(spec);
      const bool swapped = orientation > 4;
      ASSERT_EQ(bitmap.width(), swapped ? 23 : 19);
      ASSERT_EQ(bitmap.height(), swapped ? 19 : 23);
      for (uint32_t y = 0; y < spec.height; ++y) {
        for (uint32_t x = 0; x < spec.width; ++x) {
          const int64_t right = spec.width - 1 - x;
          const int64_t below = spec.height - 1 - y;
          const std::pair<int64_t, int64_t> places[] = {{x, y},         {right, y}, {right, below},
                                                        {x, below},     {y, x},     {below, x},
                                                        {below, right}, {y, right}};
          const auto [toX, toY] = places[orientation - 1];
          ASSERT_EQ(sampleAt<uint8_t>(bitmap, toX, toY, 1), spec.sample(x, y, 1))
              << orientation << ' ' << x << ' ' << y;
        }
      }
    }
  }
}

TEST_F(TiffReader, ProfileIsKeptWhereItFits) {
  TiffSpec spec = patterned(8, 3, PHOTOMETRIC_RGB);
  spec.profile = testing::wideRgbProfile();
  EXPECT_EQ(decoded(spec).color().iccProfile, spec.profile);
  spec.profile = testing::grayProfile(2.2);
  EXPECT_THAT(decoded(spec).color().iccProfile, IsEmpty());
  spec.profile = {1, 2, 3, 4, 5};
  EXPECT_THAT(decoded(spec).color().iccProfile, IsEmpty());
}

}  // namespace
}  // namespace vantrel
