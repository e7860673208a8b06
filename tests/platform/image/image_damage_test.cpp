// Damage of every kind, made from seeds, so that each run is the same: a reader decodes or refuses,
// and does nothing else. The sanitizers look at the same inputs.

#include <gtest/gtest.h>
#include <sys/resource.h>

#include <algorithm>
#include <ostream>
#include <random>

#include "support/icc_maker.h"
#include "support/open_image.h"

namespace vantrel {
namespace {

using testing::Bytes;
using testing::exifSegment;
using testing::JpegSpec;
using testing::PngSpec;

enum class Outcome { NotRecognised, Refused, Decoded };

Outcome outcomeOf(const std::filesystem::path& path) {
  const std::unique_ptr<ImageReader> reader = ImageReader::open(path);
  if (!reader) return Outcome::NotRecognised;
  EXPECT_GE(reader->imageCount({}), 0);
  try {
    EXPECT_FALSE(reader->decode({}).isEmpty());
    return Outcome::Decoded;
  } catch (const ImageDamaged&) {
    return Outcome::Refused;
  }
}

PngSpec png(int colorType, int depth, bool interlaced) {
  PngSpec spec;
  spec.width = 23;
  spec.height = 14;
  spec.colorType = colorType;
  spec.depth = depth;
  spec.interlaced = interlaced;
  spec.sample = [depth](uint32_t x, uint32_t y, int channel) {
    return static_cast<uint16_t>((x * 37 + y * 91 + static_cast<uint32_t>(channel) * 5) &
                                 ((1u << depth) - 1));
  };
  if (colorType == 3) {
    spec.before = {testing::pngChunk("PLTE", Bytes(48, 77)), testing::pngChunk("tRNS", {0, 9})};
  } else {
    spec.before = {testing::pngChunk("gAMA", {0, 0, 0x80, 0}),
                   testing::pngChunk("eXIf", testing::exifBlock(6))};
  }
  return spec;
}

JpegSpec jpeg(int channels, bool progressive) {
  JpegSpec spec;
  spec.width = 37;
  spec.height = 21;
  spec.channels = channels;
  spec.progressive = progressive;
  spec.quality = 60;
  spec.adobeMarker = channels == 4;
  spec.chroma = channels == 3 ? 2 : 1;
  spec.restartRows = progressive ? 0 : 1;
  spec.sample = [](int x, int y, int channel) {
    return static_cast<uint8_t>(x * 6 + y * y + channel * 40);
  };
  const Bytes profile = channels == 4 ? testing::inkProfile() : testing::wideRgbProfile();
  if (channels == 3) spec.segments = {{2, testing::iccSegment(profile, 1, 1)}};
  spec.segments.emplace_back(1, exifSegment(6));
  return spec;
}

struct Seed {
  const char* name;
  Bytes (*make)();

  friend void PrintTo(const Seed& seed, std::ostream* out) { *out << seed.name; }
};

const Seed kSeeds[] = {
    {"png, palette", [] { return testing::makePng(png(3, 4, false)); }},
    {"png, 16 bits, interlaced", [] { return testing::makePng(png(6, 16, true)); }},
    {"png, grey", [] { return testing::makePng(png(0, 2, true)); }},
    {"png, profile",
     [] {
       PngSpec spec = png(2, 8, false);
       spec.before = {testing::iccpChunk(testing::wideRgbProfile())};
       return testing::makePng(spec);
     }},
    {"jpeg, baseline", [] { return testing::makeJpeg(jpeg(3, false)); }},
    {"jpeg, progressive", [] { return testing::makeJpeg(jpeg(3, true)); }},
    {"jpeg, grey", [] { return testing::makeJpeg(jpeg(1, false)); }},
    {"jpeg, ink", [] { return testing::makeJpeg(jpeg(4, true)); }},
};

class ImageDamage : public ::testing::TestWithParam<Seed> {
 protected:
  Outcome outcomeFor(const Bytes& bytes) {
    testing::saveBytes(m_path, bytes);
    return outcomeOf(m_path);
  }

  const Bytes m_whole = GetParam().make();

 private:
  testing::TemporaryFolder m_folder;
  std::filesystem::path m_path = m_folder / "image";
};

TEST_P(ImageDamage, NoneIsDecoded) {
  EXPECT_EQ(outcomeFor(m_whole), Outcome::Decoded);
}

TEST_P(ImageDamage, IsFoundWhereverAFileIsCut) {
  for (size_t length = 0; length < m_whole.size(); ++length) {
    const Bytes cut(m_whole.begin(), m_whole.begin() + static_cast<std::ptrdiff_t>(length));
    ASSERT_NE(outcomeFor(cut), Outcome::Decoded) << "at " << length;
  }
}

TEST_P(ImageDamage, OfAnyBitIsSurvived) {
  std::mt19937 random(1);
  int refused = 0;
  for (int round = 0; round < 2000; ++round) {
    const uint32_t flips = 1 + static_cast<uint32_t>(round) % 4;
    const Bytes bytes = testing::withFlippedBits(m_whole, flips, random);
    if (outcomeFor(bytes) == Outcome::Refused) ++refused;
  }
  EXPECT_GT(refused, 0);
}

TEST_P(ImageDamage, OfWholeBytesIsSurvived) {
  std::mt19937 random(2);
  constexpr uint8_t kTelling[] = {0, 1, 0x7f, 0x80, 0xff};
  for (int round = 0; round < 2000; ++round) {
    Bytes bytes = m_whole;
    const size_t at = random() % bytes.size();
    const size_t length = std::min<size_t>(1 + random() % 4, bytes.size() - at);
    for (size_t i = 0; i < length; ++i)
      bytes[at + i] = kTelling[random() % 5];
    (void)outcomeFor(bytes);
  }
}

TEST_P(ImageDamage, ThatMovesPartsIsSurvived) {
  std::mt19937 random(3);
  for (int round = 0; round < 500; ++round) {
    Bytes bytes = m_whole;
    const auto at = static_cast<std::ptrdiff_t>(random() % bytes.size());
    const auto length = std::min<std::ptrdiff_t>(1 + static_cast<std::ptrdiff_t>(random() % 64),
                                                 bytes.end() - bytes.begin() - at);
    const Bytes part(bytes.begin() + at, bytes.begin() + at + length);
    if (round % 2 == 0) {
      bytes.erase(bytes.begin() + at, bytes.begin() + at + length);
    } else {
      bytes.insert(bytes.begin() + static_cast<std::ptrdiff_t>(random() % bytes.size()),
                   part.begin(), part.end());
    }
    (void)outcomeFor(bytes);
  }
}

INSTANTIATE_TEST_SUITE_P(Seeds, ImageDamage, ::testing::ValuesIn(kSeeds));

TEST(PngDamage, OfTheImageDataIsAlwaysFound) {
  const Bytes whole = testing::makePng(png(2, 8, false));
  const std::string_view text(reinterpret_cast<const char*>(whole.data()), whole.size());
  const size_t data = text.find("IDAT");
  const size_t end = text.find("IEND") - 4;
  const testing::TemporaryFolder folder;
  for (size_t at = data; at < end; ++at) {
    for (int bit = 0; bit < 8; ++bit) {
      Bytes bytes = whole;
      bytes[at] ^= static_cast<uint8_t>(1 << bit);
      testing::saveBytes(folder / "image", bytes);
      ASSERT_EQ(outcomeOf(folder / "image"), Outcome::Refused) << "byte " << at << " bit " << bit;
    }
  }
}

// The most memory that this process has had, in KiB.
long peakMemory() {
  rusage usage{};
  ::getrusage(RUSAGE_SELF, &usage);
  return usage.ru_maxrss;
}

TEST(HeaderLies, TakeNoMemory) {
#if defined(__SANITIZE_ADDRESS__)
  GTEST_SKIP() << "the sanitizer takes memory of its own";
#endif
  const long before = peakMemory();
  const testing::TemporaryFolder folder;
  std::mt19937 random(4);
  for (int round = 0; round < 200; ++round) {
    PngSpec spec = png(6, 16, round % 2 == 0);
    const Bytes data = testing::deflated(testing::pngRows(spec));
    spec.width = 1 + random() % (1u << (1 + random() % 31));
    spec.height = 20000 + random() % (1u << (1 + random() % 31));
    if (round % 4 == 1) {
      // A row of 2 GiB, for which a decoder wants buffers too.
      spec.width = 1u << 28;
      spec.height = 1;
    }
    testing::saveBytes(folder / "image", testing::makePngAround(spec, data));
    EXPECT_EQ(outcomeOf(folder / "image"), Outcome::Refused);

    Bytes photo = testing::makeJpeg(jpeg(3, round % 2 == 0));
    const std::string_view text(reinterpret_cast<const char*>(photo.data()), photo.size());
    const size_t frame = text.find(round % 2 == 0 ? "\xff\xc2" : std::string_view("\xff\xc0"));
    for (size_t i = 5; i < 9; ++i)
      photo[frame + i] = static_cast<uint8_t>(random());
    testing::saveBytes(folder / "image", photo);
    EXPECT_EQ(outcomeOf(folder / "image"), Outcome::Refused);
  }
  EXPECT_LT(peakMemory() - before, 64 * 1024);
}

}  // namespace
}  // namespace vantrel
