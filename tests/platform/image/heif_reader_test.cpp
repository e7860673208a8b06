#include "platform/image/heif_reader.h"

#include <gmock/gmock.h>

#include <cmath>
#include <cstring>
#include <random>

#include "base/cancelled.h"
#include "platform/image/coded_profile.h"
#include "support/heif_maker.h"
#include "support/icc_maker.h"
#include "support/image_makers.h"
#include "support/temporary_folder.h"

namespace vantrel {
namespace {

using testing::Bytes;
using testing::HeifSpec;
using ::testing::IsEmpty;

HeifSpec patterned(int bits = 8) {
  HeifSpec spec;
  spec.bits = bits;
  spec.sample = [bits](int x, int y, int c) {
    return static_cast<uint16_t>((x * 37 + y * 11 + c * 59 + 5) * 13 % (1 << bits));
  };
  return spec;
}

class HeifReader : public ::testing::Test {
 protected:
  void SetUp() override {
    if (!testing::canMakeHeif()) GTEST_SKIP() << "libheif has no HEVC encoder here";
  }

  [[nodiscard]] std::filesystem::path path() const { return m_folder / "picture.heic"; }

  [[nodiscard]] std::unique_ptr<ImageReader> open() const {
    std::unique_ptr<ImageReader> reader = ImageReader::open(path());
    if (!reader) throw std::runtime_error("not recognised");
    return reader;
  }

  [[nodiscard]] Bitmap decoded(const HeifSpec& spec) const {
    testing::saveHeif(path(), {spec});
    return open()->decode({});
  }

  testing::TemporaryFolder m_folder;
};

uint32_t sampleAt(const Bitmap& bitmap, int64_t x, int64_t y, int channel) {
  const std::byte* pixel = bitmap.pixel(x, y);
  if (bitmap.layout().sample == SampleFormat::UInt8)
    return std::to_integer<uint32_t>(pixel[channel]);
  uint16_t sample;
  std::memcpy(&sample, pixel + 2 * channel, sizeof sample);
  return sample;
}

template <typename Expected>
void expectSamples(const Bitmap& bitmap, const HeifSpec& spec, Expected expected) {
  ASSERT_EQ(bitmap.width(), spec.width);
  ASSERT_EQ(bitmap.height(), spec.height);
  for (int y = 0; y < spec.height; ++y) {
    for (int x = 0; x < spec.width; ++x) {
      for (int c = 0; c < bitmap.layout().channels(); ++c) {
        ASSERT_EQ(sampleAt(bitmap, x, y, c), static_cast<uint32_t>(expected(x, y, c)))
            << x << ' ' << y << ' ' << c;
      }
    }
  }
}

TEST_F(HeifReader, ColoursAreKept) {
  for (const bool alpha : {false, true}) {
    HeifSpec spec = patterned();
    spec.alpha = alpha;
    const Bitmap bitmap = decoded(spec);
    EXPECT_EQ(bitmap.layout(), (PixelLayout{ColorModel::Rgb, SampleFormat::UInt8, alpha}));
    EXPECT_EQ(bitmap.color().fileBits, 0);
    EXPECT_THAT(bitmap.color().iccProfile, IsEmpty());
    expectSamples(bitmap, spec, spec.sample);
  }
}

TEST_F(HeifReader, DeepColoursAreSpreadOverSixteenBits) {
  for (const int bits : {10, 12}) {
    for (const bool alpha : {false, true}) {
      HeifSpec spec = patterned(bits);
      spec.alpha = alpha;
      const Bitmap bitmap = decoded(spec);
      EXPECT_EQ(bitmap.layout(), (PixelLayout{ColorModel::Rgb, SampleFormat::UInt16, alpha}));
      EXPECT_EQ(bitmap.color().fileBits, bits);
      expectSamples(bitmap, spec, [&](int x, int y, int c) {
        return std::lround(spec.sample(x, y, c) * 65535.0 / ((1 << bits) - 1));
      });
    }
  }
}

TEST_F(HeifReader, LuminanceAloneIsGrey) {
  for (const int bits : {8, 10}) {
    for (const bool alpha : {false, true}) {
      HeifSpec spec = patterned(bits);
      spec.gray = true;
      spec.alpha = alpha;
      const Bitmap bitmap = decoded(spec);
      EXPECT_EQ(bitmap.layout().model, ColorModel::Gray);
      EXPECT_EQ(bitmap.layout().alpha, alpha);
      expectSamples(bitmap, spec, [&](int x, int y, int c) {
        return std::lround(spec.sample(x, y, c) * (bits > 8 ? 65535.0 / 1023 : 1));
      });
    }
  }
}

TEST_F(HeifReader, PremultipliedAlphaIsDividedOut) {
  for (const int bits : {8, 10}) {
    HeifSpec spec = patterned(bits);
    spec.alpha = spec.premultiplied = true;
    const int full = (1 << bits) - 1;
    spec.sample = [full](int x, int, int c) {
      const int alpha = x * full / 19;
      return static_cast<uint16_t>(c == 3 ? alpha : alpha * (c + 1) / 4);
    };
    const Bitmap bitmap = decoded(spec);
    const double scale = bits == 8 ? 255 : 65535;
    for (int x = 0; x < spec.width; ++x) {
      const double alpha = sampleAt(bitmap, x, 5, 3);
      EXPECT_NEAR(alpha, x / 19.0 * scale, scale / full);
      for (int c = 0; c < 3; ++c) {
        // The file rounds down by less than a step of its alpha.
        const double expected = x == 0 ? 0 : scale * (c + 1) / 4;
        EXPECT_NEAR(sampleAt(bitmap, x, 5, c), expected, x == 0 ? 0 : scale * 19 / x / full + 1);
      }
    }
  }
}

/// Where the pixel (x, y) of a stored picture stands when it is upright.
std::pair<int, int> uprightPlace(const HeifSpec& spec, int orientation, int x, int y) {
  const int right = spec.width - 1 - x;
  const int below = spec.height - 1 - y;
  const std::pair<int, int> places[] = {{x, y}, {right, y}, {right, below}, {x, below},
                                        {y, x}, {below, x}, {below, right}, {y, right}};
  return places[orientation - 1];
}

TEST_F(HeifReader, RotationOfTheFormatIsAppliedAndThatOfExifIsNot) {
  for (int orientation = 1; orientation <= 8; ++orientation) {
    HeifSpec spec = patterned();
    spec.orientation = orientation;
    spec.exif = testing::exifBlock(6);
    const Bitmap bitmap = decoded(spec);
    const bool swapped = orientation > 4;
    ASSERT_EQ(bitmap.width(), swapped ? spec.height : spec.width) << orientation;
    ASSERT_EQ(bitmap.height(), swapped ? spec.width : spec.height) << orientation;
    for (int y = 0; y < spec.height; ++y) {
      for (int x = 0; x < spec.width; ++x) {
        const auto [toX, toY] = uprightPlace(spec, orientation, x, y);
        ASSERT_EQ(sampleAt(bitmap, toX, toY, 1), spec.sample(x, y, 1))
            << orientation << ' ' << x << ' ' << y;
      }
    }
  }
}

TEST_F(HeifReader, PictureOfOddSidesIsTurnedWhole) {
  for (const auto& [width, height] : {std::pair(21, 13), {21, 12}, {20, 13}}) {
    HeifSpec spec = patterned();
    spec.width = width;
    spec.height = height;
    spec.alpha = true;
    const Bitmap upright = decoded(spec);
    for (int orientation = 2; orientation <= 8; ++orientation) {
      spec.orientation = orientation;
      const Bitmap bitmap = decoded(spec);
      const bool swapped = orientation > 4;
      ASSERT_EQ(bitmap.width(), swapped ? height : width) << orientation;
      ASSERT_EQ(bitmap.height(), swapped ? width : height) << orientation;
      for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
          const auto [toX, toY] = uprightPlace(spec, orientation, x, y);
          for (int c = 0; c < 4; ++c) {
            ASSERT_EQ(sampleAt(bitmap, toX, toY, c), sampleAt(upright, x, y, c))
                << orientation << ' ' << x << ' ' << y << ' ' << c;
          }
        }
      }
    }
  }
}

TEST_F(HeifReader, ProfileIsKeptWhereItFits) {
  HeifSpec spec = patterned();
  spec.profile = testing::wideRgbProfile();
  EXPECT_EQ(decoded(spec).color().iccProfile, spec.profile);
  spec.profile = testing::grayProfile(2.2);
  EXPECT_THAT(decoded(spec).color().iccProfile, IsEmpty());
}

TEST_F(HeifReader, CodePointsBecomeAProfile) {
  HeifSpec spec = patterned();
  spec.primaries = 12;
  const Bitmap bitmap = decoded(spec);
  EXPECT_FALSE(bitmap.color().iccProfile.empty());
  EXPECT_EQ(bitmap.color().iccProfile, codedProfile(12, 13, ColorModel::Rgb));
}

TEST_F(HeifReader, TypeAndCountAreTold) {
  HeifSpec spec = patterned();
  spec.thumbnail = spec.alpha = true;
  testing::saveHeif(path(), {spec});
  EXPECT_EQ(open()->type(), ImageType::Heic);
  EXPECT_EQ(open()->imageCount({}), 1);
  testing::saveHeif(path(), {spec, patterned()});
  EXPECT_EQ(open()->imageCount({}), 2);
}

TEST_F(HeifReader, PictureCodedWithHevcIsHeicWhateverItsBrand) {
  testing::saveHeif(path(), {patterned()});
  Bytes file = testing::loadBytes(path());
  const uint32_t brandsEnd = file[3];
  for (size_t brand = 8; brand < brandsEnd; brand += 4) {
    const std::string name = "mif1";
    if (brand != 12)
      std::copy(name.begin(), name.end(), file.begin() + static_cast<std::ptrdiff_t>(brand));
  }
  testing::saveBytes(path(), file);
  EXPECT_EQ(open()->type(), ImageType::Heic);
}

TEST_F(HeifReader, StopIsHeeded) {
  testing::saveHeif(path(), {patterned()});
  std::stop_source source;
  source.request_stop();
  EXPECT_THROW((void)open()->imageCount(source.get_token()), Cancelled);
  EXPECT_THROW(open()->decode(source.get_token()), Cancelled);
}

Bytes box(const std::string& type, const std::vector<Bytes>& contents) {
  Bytes bytes(8);
  std::copy_n(type.begin(), 4, bytes.begin() + 4);
  for (const Bytes& content : contents) {
    bytes.insert(bytes.end(), content.begin(), content.end());
  }
  for (size_t i = 0; i < 4; ++i) {
    bytes[i] = static_cast<uint8_t>(bytes.size() >> (24 - 8 * i));
  }
  return bytes;
}

/// A file with nothing but a track of `frames` frames of the kind `handler`.
Bytes sequence(uint8_t frames, const std::string& handler) {
  const auto text = [](const std::string& value) { return Bytes(value.begin(), value.end()); };
  const Bytes four(4);
  const Bytes sizes = box("stsz", {four, four, {0, 0, 0, frames}});
  const Bytes track = box("trak", {box("mdia", {box("hdlr", {four, four, text(handler)}),
                                                box("minf", {box("stbl", {sizes})})})});
  Bytes file = box("ftyp", {text("msf1"), four, text("msf1hevc")});
  const Bytes movie = box("moov", {track});
  file.insert(file.end(), movie.begin(), movie.end());
  return file;
}

TEST_F(HeifReader, FramesOfASequenceAreCounted) {
  testing::saveBytes(path(), sequence(7, "pict"));
  EXPECT_EQ(open()->imageCount({}), 7);
  EXPECT_THROW(open()->decode({}), ImageDamaged);
  testing::saveBytes(path(), sequence(7, "soun"));
  EXPECT_EQ(open()->imageCount({}), 0);
}

TEST_F(HeifReader, StillWithASequenceBesideItIsManyPictures) {
  testing::saveHeif(path(), {patterned()});
  Bytes file = testing::loadBytes(path());
  const Bytes moving = sequence(5, "pict");
  // The track follows its box ftyp of 24 bytes.
  file.insert(file.end(), moving.begin() + 24, moving.end());
  testing::saveBytes(path(), file);
  EXPECT_EQ(open()->imageCount({}), 5);
}

TEST_F(HeifReader, FileCutInItsDataIsOneDamagedPicture) {
  testing::saveHeif(path(), {patterned()});
  std::filesystem::resize_file(path(), std::filesystem::file_size(path()) - 50);
  EXPECT_EQ(open()->imageCount({}), 1);
  EXPECT_THROW(open()->decode({}), ImageDamaged);
}

TEST_F(HeifReader, ItemThatNeedsItselfIsADamagedPicture) {
  HeifSpec spec = patterned();
  spec.alpha = true;
  testing::saveHeif(path(), {spec});
  Bytes file = testing::loadBytes(path());
  // A reference of two-byte identifiers: type, from, count, to. Alpha becomes its own alpha.
  const std::string type = "auxl";
  const auto reference = std::search(file.begin(), file.end(), type.begin(), type.end());
  ASSERT_GT(file.end() - reference, 10);
  std::copy_n(reference + 4, 2, reference + 8);
  testing::saveBytes(path(), file);
  EXPECT_EQ(open()->imageCount({}), 1);
  EXPECT_THROW(open()->decode({}), ImageDamaged);
}

TEST_F(HeifReader, FileWithoutPicturesHasNone) {
  testing::saveBytes(path(), box("ftyp", {{'h', 'e', 'i', 'c', 0, 0, 0, 0, 'm', 'i', 'f', '1'}}));
  EXPECT_EQ(open()->imageCount({}), 0);
  EXPECT_THROW(open()->decode({}), ImageDamaged);
}

void readWhatMayBeDamaged(const std::filesystem::path& path) {
  const std::unique_ptr<ImageReader> reader = ImageReader::open(path);
  if (!reader) return;
  EXPECT_GE(reader->imageCount({}), 0);
  try {
    const Bitmap bitmap = reader->decode({});
    EXPECT_FALSE(bitmap.isEmpty());
  } catch (const ImageDamaged&) {
  } catch (const std::bad_alloc&) {
  }
}

TEST_F(HeifReader, EveryTruncationIsDamage) {
  HeifSpec spec = patterned();
  spec.alpha = true;
  testing::saveHeif(path(), {spec});
  for (uintmax_t size = std::filesystem::file_size(path()) - 1; size > 24; size -= 3) {
    std::filesystem::resize_file(path(), size);
    const std::unique_ptr<ImageReader> reader = ImageReader::open(path());
    ASSERT_TRUE(reader) << size;
    EXPECT_THROW(static_cast<void>(reader->decode({})), ImageDamaged) << size;
    if (size < 28) break;
  }
}

TEST_F(HeifReader, FlippedBitsDoNoHarm) {
  std::mt19937 random(20261120);
  for (const bool gray : {false, true}) {
    HeifSpec spec = patterned();
    spec.alpha = true;
    spec.gray = gray;
    spec.orientation = 6;
    testing::saveHeif(path(), {spec});
    const Bytes whole = testing::loadBytes(path());
    for (int round = 0; round < 400; ++round) {
      const uint32_t flips = random() % 4 + 1;
      testing::saveBytes(path(), testing::withFlippedBits(whole, flips, random));
      readWhatMayBeDamaged(path());
    }
  }
}

}  // namespace
}  // namespace vantrel
