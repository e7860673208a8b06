#include "platform/image/jpeg_reader.h"

#include <gtest/gtest.h>
#include <pthread.h>

#include <algorithm>
#include <cstdlib>
#include <ctime>
#include <thread>

#include "base/cancelled.h"
#include "platform/image/jpeg_markers.h"
#include "support/icc_maker.h"
#include "support/open_image.h"

namespace vantrel {
namespace {

using testing::Bytes;
using testing::decodeBytes;
using testing::exifSegment;
using testing::iccSegment;
using testing::JpegSpec;
using testing::makeJpeg;
using testing::OpenImage;
using testing::sampleAt;

// Samples of a smooth picture come back within this after compression at full quality.
constexpr int kTolerance = 4;

uint8_t gradient(int x, int y, int channel) {
  switch (channel) {
    case 0:
      return static_cast<uint8_t>(x * 4);
    case 1:
      return static_cast<uint8_t>(y * 4);
    default:
      return static_cast<uint8_t>(channel * 30 + x + y);
  }
}

JpegSpec spec(int channels = 3, int width = 41, int height = 37) {
  JpegSpec made;
  made.channels = channels;
  made.width = width;
  made.height = height;
  made.sample = gradient;
  return made;
}

void expectGradient(const Bitmap& bitmap, ColorModel model, const JpegSpec& made,
                    bool inverted = false) {
  ASSERT_EQ(bitmap.bounds(), (PixelRect{0, 0, made.width, made.height}));
  ASSERT_EQ(bitmap.layout(), (PixelLayout{model, SampleFormat::UInt8, false}));
  for (int y = 0; y < made.height; ++y) {
    for (int x = 0; x < made.width; ++x) {
      for (int channel = 0; channel < made.channels; ++channel) {
        const int stored = made.sample(x, y, channel);
        ASSERT_NEAR(sampleAt(bitmap, x, y, channel), inverted ? 255 - stored : stored, kTolerance)
            << "at " << x << "," << y << " channel " << channel;
      }
    }
  }
}

TEST(JpegReader, ReadsGray) {
  expectGradient(decodeBytes(makeJpeg(spec(1))), ColorModel::Gray, spec(1));
}

TEST(JpegReader, ReadsLuminanceAndChroma) {
  expectGradient(decodeBytes(makeJpeg(spec())), ColorModel::Rgb, spec());
  JpegSpec subsampled = spec();
  subsampled.chroma = 2;
  const Bitmap bitmap = decodeBytes(makeJpeg(subsampled));
  EXPECT_NEAR(sampleAt(bitmap, 20, 20, 0), 80, 8);
}

TEST(JpegReader, ReadsRgbThatAdobeMarks) {
  JpegSpec made = spec();
  made.transformed = false;
  made.adobeMarker = true;
  expectGradient(decodeBytes(makeJpeg(made)), ColorModel::Rgb, made);
}

TEST(JpegReader, ReadsProgressiveWithRestarts) {
  JpegSpec made = spec();
  made.progressive = true;
  made.restartRows = 1;
  expectGradient(decodeBytes(makeJpeg(made)), ColorModel::Rgb, made);
}

TEST(JpegReader, ReadsArithmeticCoding) {
  JpegSpec made = spec();
  made.arithmetic = true;
  expectGradient(decodeBytes(makeJpeg(made)), ColorModel::Rgb, made);
}

TEST(JpegReader, CountsInkWhereAdobeCountsPaper) {
  for (const bool transformed : {false, true}) {
    JpegSpec made = spec(4);
    made.transformed = transformed;
    made.adobeMarker = true;
    expectGradient(decodeBytes(makeJpeg(made)), ColorModel::Cmyk, made, true);
  }
}

TEST(JpegReader, LeavesInkOfOtherFilesAsItIs) {
  JpegSpec made = spec(4);
  made.transformed = false;
  expectGradient(decodeBytes(makeJpeg(made)), ColorModel::Cmyk, made, false);
}

TEST(JpegReader, StandsUprightForEveryOrientation) {
  for (uint16_t tag = 1; tag <= 8; ++tag) {
    for (const int channels : {1, 3, 4}) {
      JpegSpec made = spec(channels, 50, 70);
      made.transformed = channels != 4;
      made.segments = {{1, exifSegment(tag)}, {1, exifSegment(1)}};
      const Bitmap bitmap = decodeBytes(makeJpeg(made));
      const bool turned = tag >= 5;
      ASSERT_EQ(bitmap.bounds(), (PixelRect{0, 0, turned ? 70 : 50, turned ? 50 : 70}));
      const bool fromRight = tag == 2 || tag == 3 || tag == 6 || tag == 7;
      const bool fromBottom = tag == 3 || tag == 4 || tag == 7 || tag == 8;
      for (int y = 0; y < made.height; ++y) {
        for (int x = 0; x < made.width; ++x) {
          const int across = turned ? y : x;
          const int down = turned ? x : y;
          const int64_t uprightX = fromRight ? bitmap.width() - 1 - across : across;
          const int64_t uprightY = fromBottom ? bitmap.height() - 1 - down : down;
          ASSERT_NEAR(sampleAt(bitmap, uprightX, uprightY, 0), made.sample(x, y, 0), kTolerance)
              << "orientation " << tag << " at " << x << "," << y;
        }
      }
    }
  }
}

Bytes profileWith(const std::vector<Bytes>& segments, int channels = 3) {
  JpegSpec made = spec(channels);
  for (const Bytes& segment : segments)
    made.segments.emplace_back(2, segment);
  return decodeBytes(makeJpeg(made)).color().iccProfile;
}

class JpegProfile : public ::testing::Test {
 protected:
  const Bytes m_whole = testing::wideRgbProfile();
  const Bytes m_first{m_whole.begin(), m_whole.begin() + 200};
  const Bytes m_second{m_whole.begin() + 200, m_whole.begin() + 300};
  const Bytes m_third{m_whole.begin() + 300, m_whole.end()};
};

TEST_F(JpegProfile, IsPutTogetherFromItsPartsInAnyOrder) {
  EXPECT_EQ(profileWith({iccSegment(m_whole, 1, 1)}), m_whole);
  EXPECT_EQ(profileWith(
                {iccSegment(m_third, 3, 3), iccSegment(m_first, 1, 3), iccSegment(m_second, 2, 3)}),
            m_whole);
}

TEST_F(JpegProfile, IsIgnoredWhenItsPartsDoNotMakeAWhole) {
  EXPECT_TRUE(profileWith({iccSegment(m_first, 1, 3), iccSegment(m_third, 3, 3)}).empty());
  EXPECT_TRUE(profileWith({iccSegment(m_whole, 1, 1), iccSegment(m_whole, 1, 1)}).empty());
  EXPECT_TRUE(profileWith({iccSegment(m_whole, 0, 1)}).empty());
  EXPECT_TRUE(profileWith({iccSegment(m_whole, 2, 1)}).empty());
  EXPECT_TRUE(profileWith({iccSegment(m_whole, 1, 0)}).empty());
  EXPECT_TRUE(profileWith({iccSegment(m_first, 1, 2), iccSegment(m_second, 2, 3)}).empty());
  EXPECT_TRUE(profileWith({iccSegment({}, 1, 1)}).empty());
  EXPECT_TRUE(
      profileWith({Bytes{'I', 'C', 'C', '_', 'P', 'R', 'O', 'F', 'I', 'L', 'E', 0}}).empty());
}

TEST_F(JpegProfile, IsIgnoredWhenItBelongsToAnotherModelOrCannotBeRead) {
  EXPECT_TRUE(profileWith({iccSegment(m_whole, 1, 1)}, 1).empty());
  EXPECT_TRUE(profileWith({iccSegment(m_first, 1, 1)}).empty());
  EXPECT_EQ(profileWith({iccSegment(testing::grayProfile(1.8), 1, 1)}, 1),
            testing::grayProfile(1.8));
  EXPECT_EQ(profileWith({iccSegment(testing::inkProfile(), 1, 1)}, 4), testing::inkProfile());
}

void expectDamaged(const Bytes& bytes) {
  OpenImage image(bytes);
  EXPECT_EQ(image.reader().imageCount({}), 1);
  EXPECT_THROW((void)image.reader().decode({}), ImageDamaged);
}

size_t markerAt(const Bytes& file, uint8_t marker) {
  for (size_t i = 0; i + 1 < file.size(); ++i) {
    if (file[i] == 0xff && file[i + 1] == marker) return i;
  }
  throw std::runtime_error("no such marker");
}

constexpr uint8_t kSof0 = 0xc0, kDqt = 0xdb, kSos = 0xda;

TEST(JpegReader, IsOnePictureWhateverFollowsIt) {
  Bytes file = makeJpeg(spec());
  const Bytes other = makeJpeg(spec(1));
  file.insert(file.end(), other.begin(), other.end());
  file.insert(file.end(), 5000, 0xab);
  OpenImage image(file);
  EXPECT_EQ(image.reader().type(), ImageType::Jpeg);
  EXPECT_EQ(image.reader().imageCount({}), 1);
  expectGradient(image.reader().decode({}), ColorModel::Rgb, spec());
}

TEST(JpegReader, ForgivesPaddingBetweenSegments) {
  Bytes file = makeJpeg(spec());
  file.insert(file.begin() + static_cast<std::ptrdiff_t>(markerAt(file, kDqt)), 7, 0);
  expectGradient(decodeBytes(file), ColorModel::Rgb, spec());
}

TEST(JpegReader, ForgivesScanParametersThatSequentialFilesDoNotUse) {
  Bytes file = makeJpeg(spec());
  const size_t scan = markerAt(file, kSos);
  // The last spectral coefficient, 63 in a right header.
  const size_t last = scan + 2 + 2 + 1 + 3 * 2 + 1;
  ASSERT_EQ(file[last], 63);
  file[last] = 0;
  expectGradient(decodeBytes(file), ColorModel::Rgb, spec());
}

TEST(JpegReader, RefusesAFileWithoutItsEnd) {
  Bytes file = makeJpeg(spec());
  file.resize(file.size() - 2);
  expectDamaged(file);
  file.resize(file.size() / 2);
  expectDamaged(file);
}

TEST(JpegReader, RefusesAFileWhoseDataEndEarly) {
  Bytes file = makeJpeg(spec());
  file.resize(file.size() / 2);
  file.insert(file.end(), {0xff, 0xd9});
  expectDamaged(file);
}

TEST(JpegReader, RefusesTwelveBits) {
  Bytes file = makeJpeg(spec());
  file[markerAt(file, kSof0) + 4] = 12;
  expectDamaged(file);
}

TEST(JpegReader, RefusesTheLosslessProcess) {
  Bytes file = makeJpeg(spec());
  file[markerAt(file, kSof0) + 1] = 0xc3;
  expectDamaged(file);
}

TEST(JpegReader, RefusesTwoChannels) {
  Bytes file = makeJpeg(spec(1));
  const size_t frame = markerAt(file, kSof0);
  ASSERT_EQ(file[frame + 9], 1);
  file[frame + 9] = 2;
  file[frame + 3] = 14;
  file.insert(file.begin() + static_cast<std::ptrdiff_t>(frame) + 13, {2, 0x11, 0});
  expectDamaged(file);
}

TEST(JpegReader, RefusesSizesOverTheLimit) {
  Bytes file = makeJpeg(spec());
  const size_t frame = markerAt(file, kSof0);
  // 65,500 is the most that the codec takes; times itself and three bytes it is over 4 GiB.
  for (const size_t at : {frame + 5, frame + 7}) {
    file[at] = 0xff;
    file[at + 1] = 0xdc;
  }
  expectDamaged(file);
}

TEST(JpegReader, ReadsManyScansButNotAnyNumber) {
  JpegSpec made = spec(1);
  made.refinements = 5;
  expectGradient(decodeBytes(makeJpeg(made)), ColorModel::Gray, made);
  made.refinements = 10;
  expectDamaged(makeJpeg(made));
}

TEST(JpegReader, StopsWhenAskedTo) {
  for (const bool progressive : {false, true}) {
    JpegSpec made = spec();
    made.progressive = progressive;
    OpenImage image(makeJpeg(made));
    std::stop_source source;
    source.request_stop();
    EXPECT_THROW((void)image.reader().decode(source.get_token()), Cancelled);
  }
}

/// Waits until a thread has computed for a while, or has ended.
void waitForWorkOf(std::thread& thread) {
  constexpr long kNanoseconds = 20'000'000;
  clockid_t clock{};
  timespec used{};
  ASSERT_EQ(pthread_getcpuclockid(thread.native_handle(), &clock), 0);
  while (clock_gettime(clock, &used) == 0 && used.tv_sec == 0 && used.tv_nsec < kNanoseconds) {
    std::this_thread::yield();
  }
}

TEST(JpegReader, StopsAmidAnyAmountOfWhatIsNoMarker) {
  const testing::TemporaryFolder folder;
  testing::saveBytes(folder / "image", {0xff, 0xd8, 0xff});
  std::filesystem::resize_file(folder / "image", uintmax_t{8} << 30);
  const ReadOnlyFile file = *ReadOnlyFile::open(folder / "image");
  std::stop_source source;
  std::thread thread([&file, token = source.get_token()] {
    EXPECT_THROW((void)JpegMarkers::scan(file, token), Cancelled);
  });
  waitForWorkOf(thread);
  source.request_stop();
  thread.join();
}

TEST(JpegReader, DecodesTheSameTwice) {
  OpenImage image(makeJpeg(spec()));
  const Bitmap first = image.reader().decode({});
  const Bitmap second = image.reader().decode({});
  EXPECT_TRUE(std::equal(first.row(0), first.row(0) + first.stride() * 37, second.row(0)));
}

}  // namespace
}  // namespace vantrel
