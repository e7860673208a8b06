#include "platform/movie/frame_cropper.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>
#include <random>
#include <stdexcept>
#include <string>

#include "base/failure.h"
#include "platform/movie/frame_maker.h"

namespace vantrel {
namespace {

using testing::makeFilledFrame;
using testing::planeHeight;
using testing::planeWidth;
using testing::sampleAt;

struct Part {
  int x, y, width, height;
};

struct Turn {
  const char* name;
  int a, b, c, d;
};

constexpr std::array<Turn, 8> kTurns{{{"upright", 1, 0, 0, 1},
                                      {"90 degrees", 0, 1, -1, 0},
                                      {"180 degrees", -1, 0, 0, -1},
                                      {"270 degrees", 0, -1, 1, 0},
                                      {"mirrored in x", -1, 0, 0, 1},
                                      {"mirrored in y", 1, 0, 0, -1},
                                      {"transposed", 0, 1, 1, 0},
                                      {"transposed across", 0, -1, -1, 0}}};

/// Settings that show `part` of the source, turned.
VideoOutputSettings settingsFor(const Part& part, const Turn& turn) {
  const auto alongU = [&](int x, int y) { return turn.a * x + turn.c * y; };
  const auto alongV = [&](int x, int y) { return turn.b * x + turn.d * y; };
  const int right = part.x + part.width, bottom = part.y + part.height;
  VideoOutputSettings settings;
  settings.transform = {static_cast<double>(turn.a),
                        static_cast<double>(turn.b),
                        static_cast<double>(turn.c),
                        static_cast<double>(turn.d),
                        0,
                        0};
  settings.transform.tx = -1.0 * std::min(std::min(alongU(part.x, part.y), alongU(right, bottom)),
                                          std::min(alongU(right, part.y), alongU(part.x, bottom)));
  settings.transform.ty = -1.0 * std::min(std::min(alongV(part.x, part.y), alongV(right, bottom)),
                                          std::min(alongV(right, part.y), alongV(part.x, bottom)));
  settings.width = turn.a != 0 ? part.width : part.height;
  settings.height = turn.a != 0 ? part.height : part.width;
  return settings;
}

struct Point {
  double x, y;
};

/// The source position shown at an output position.
Point sourceOf(const AffineTransform& t, double u, double v) {
  return {t.a * (u - t.tx) + t.b * (v - t.ty), t.c * (u - t.tx) + t.d * (v - t.ty)};
}

int noise(int c, int x, int y, int largest) {
  std::minstd_rand random(static_cast<unsigned>((c * 2048 + y) * 2048 + x + 1));
  random.discard(3);
  return static_cast<int>(random() % static_cast<unsigned>(largest + 1));
}

AvFramePtr noiseFrame(AVPixelFormat format, int width, int height) {
  const int largest = (1 << av_pix_fmt_desc_get(format)->comp[0].depth) - 1;
  return makeFilledFrame(format, width, height,
                         [&](int c, int x, int y) { return noise(c, x, y, largest); });
}

/// How often the output's luma differs from `expected` at the source's pixel.
template <class Expected>
int lumaDifferences(const AVFrame& output, const AffineTransform& transform,
                    const Expected& expected) {
  int differences = 0;
  for (int v = 0; v < output.height; ++v) {
    for (int u = 0; u < output.width; ++u) {
      const Point source = sourceOf(transform, u + 0.5, v + 0.5);
      const int value = expected(static_cast<int>(source.x), static_cast<int>(source.y));
      differences += sampleAt(output, 0, u, v) != value;
    }
  }
  return differences;
}

/// Chroma for which exact samples are known everywhere: waves of up to 0.9 of what 4:2:0 can hold.
/// Taking the chroma sample beside the right place gives about 33 dB.
class DetailedChroma {
 public:
  /// `finest` is the highest frequency in waves per pixel.
  explicit DetailedChroma(double finest = 0.225) {
    std::minstd_rand random(4711);
    const auto uniform = [&] { return random() / static_cast<double>(random.max()); };
    for (Wave& wave : m_waves) {
      const double frequency = 0.01 + (finest - 0.01) * uniform(), direction = 2 * M_PI * uniform();
      wave = {frequency * std::cos(direction), frequency * std::sin(direction),
              2 * M_PI * uniform(), 1.03 / std::sqrt(frequency)};
    }
  }

  /// In levels of eight bits, at a position in pixels.
  [[nodiscard]] double at(int component, double x, double y) const {
    double sum = component == 1 ? 128 : 120;
    for (const Wave& wave : m_waves)
      sum +=
          wave.amplitude * std::sin(2 * M_PI * (wave.x * x + wave.y * y) + wave.phase * component);
    return sum;
  }

 private:
  struct Wave {
    double x, y, phase, amplitude;
  };
  std::array<Wave, 24> m_waves{};
};

Point sitingOffset(ChromaSiting siting, int shiftX, int shiftY) {
  const bool isLeft = siting == ChromaSiting::Left || siting == ChromaSiting::TopLeft ||
                      siting == ChromaSiting::BottomLeft;
  const bool isTop = siting == ChromaSiting::Top || siting == ChromaSiting::TopLeft;
  const bool isBottom = siting == ChromaSiting::Bottom || siting == ChromaSiting::BottomLeft;
  const double spanX = 1 << shiftX, spanY = 1 << shiftY;
  return {isLeft ? 0.5 : spanX / 2, isTop ? 0.5 : isBottom ? spanY - 0.5 : spanY / 2};
}

/// A frame of video range, of any luma, whose chroma is `chroma` at the places of the siting.
AvFramePtr detailedFrame(const DetailedChroma& chroma, AVPixelFormat format, int width, int height,
                         ChromaSiting siting) {
  const AVPixFmtDescriptor& descriptor = *av_pix_fmt_desc_get(format);
  const int shiftX = descriptor.log2_chroma_w, shiftY = descriptor.log2_chroma_h;
  const double scale = 1 << (descriptor.comp[0].depth - 8);
  const Point offset = sitingOffset(siting, shiftX, shiftY);
  return makeFilledFrame(format, width, height, [&](int c, int x, int y) {
    if (c == 0) return noise(0, x, y, 200);
    const double value = chroma.at(c, x * (1 << shiftX) + offset.x, y * (1 << shiftY) + offset.y);
    return static_cast<int>(std::lround(value * scale));
  });
}

/// Between the output's chroma and the exact one at the output's siting, moved by (dx, dy) pixels
/// of the output; in decibels of the output's whole range.
double chromaPsnr(const AVFrame& output, const DetailedChroma& chroma,
                  const VideoOutputSettings& settings, double dx = 0, double dy = 0) {
  const Point offset = sitingOffset(settings.chromaSiting, 1, 1);
  const double scale = settings.tenBit ? 4 : 1;
  double squares = 0;
  for (int c = 1; c <= 2; ++c) {
    for (int v = 0; v < output.height / 2; ++v) {
      for (int u = 0; u < output.width / 2; ++u) {
        const Point source =
            sourceOf(settings.transform, 2 * u + offset.x + dx, 2 * v + offset.y + dy);
        const double error = sampleAt(output, c, u, v) / scale - chroma.at(c, source.x, source.y);
        squares += error * error;
      }
    }
  }
  return 10 * std::log10(255.0 * 255 * (output.width * output.height / 2) / squares);
}

/// A part of the odd or even offset that the bits of `parity` ask for.
Part partAt(int parity) {
  return {30 + parity % 2, 20 + parity / 2, 112, 96};
}

constexpr PictureSize kDetailedSize{176, 144};

double croppedChromaPsnr(const AVFrame& frame, const DetailedChroma& chroma,
                         const VideoOutputSettings& settings) {
  FrameCropper cropper(settings, kDetailedSize);
  return chromaPsnr(*cropper.crop(frame), chroma, settings);
}

AVChromaLocation locationOf(ChromaSiting siting) {
  constexpr std::array kLocations{AVCHROMA_LOC_LEFT, AVCHROMA_LOC_CENTER,     AVCHROMA_LOC_TOPLEFT,
                                  AVCHROMA_LOC_TOP,  AVCHROMA_LOC_BOTTOMLEFT, AVCHROMA_LOC_BOTTOM};
  return kLocations.at(static_cast<size_t>(siting));
}

constexpr std::array kSitings{ChromaSiting::Left, ChromaSiting::Center,     ChromaSiting::TopLeft,
                              ChromaSiting::Top,  ChromaSiting::BottomLeft, ChromaSiting::Bottom};

bool haveEqualSamples(const AVFrame& a, const AVFrame& b, int tolerance = 0) {
  if (a.format != b.format || a.width != b.width || a.height != b.height) return false;
  for (int c = 0; c < 3; ++c) {
    for (int y = 0; y < planeHeight(a, c); ++y) {
      for (int x = 0; x < planeWidth(a, c); ++x) {
        if (std::abs(sampleAt(a, c, x, y) - sampleAt(b, c, x, y)) > tolerance) return false;
      }
    }
  }
  return true;
}

AvFramePtr croppedOnce(const AVFrame& frame, const VideoOutputSettings& settings) {
  const PictureSize size{static_cast<double>(frame.width), static_cast<double>(frame.height)};
  return FrameCropper(settings, size).crop(frame);
}

/// Samples laid upward instead of downward.
void layUpward(AVFrame& frame) {
  for (int c = 0; c < 3; ++c) {
    frame.data[c] += static_cast<ptrdiff_t>(planeHeight(frame, c) - 1) * frame.linesize[c];
    frame.linesize[c] = -frame.linesize[c];
  }
}

TEST(FrameCropper, LumaIsTheSourcesForEveryTurnOffsetAndFormat) {
  for (const AVPixelFormat format :
       {AV_PIX_FMT_YUV420P, AV_PIX_FMT_YUV422P, AV_PIX_FMT_YUV444P, AV_PIX_FMT_YUV411P,
        AV_PIX_FMT_YUV440P, AV_PIX_FMT_YUV410P, AV_PIX_FMT_YUVA420P, AV_PIX_FMT_NV12,
        AV_PIX_FMT_NV21, AV_PIX_FMT_YUYV422, AV_PIX_FMT_UYVY422, AV_PIX_FMT_YUV420P10LE,
        AV_PIX_FMT_YUV420P10BE, AV_PIX_FMT_YUV422P10LE, AV_PIX_FMT_YUV444P10LE, AV_PIX_FMT_P010LE,
        AV_PIX_FMT_P010BE, AV_PIX_FMT_NV20LE}) {
    const auto frame = noiseFrame(format, 77, 61);
    for (const Turn& turn : kTurns) {
      for (const Part& part : {Part{0, 0, 76, 60}, Part{1, 1, 76, 60}, Part{3, 6, 34, 20},
                               Part{4, 7, 2, 2}, Part{10, 8, 64, 32}}) {
        auto settings = settingsFor(part, turn);
        settings.tenBit = av_pix_fmt_desc_get(format)->comp[0].depth == 10;
        const int largest = settings.tenBit ? 1023 : 255;
        EXPECT_EQ(lumaDifferences(*croppedOnce(*frame, settings), settings.transform,
                                  [&](int x, int y) { return noise(0, x, y, largest); }),
                  0)
            << av_get_pix_fmt_name(format) << ' ' << turn.name << ' ' << part.x << ',' << part.y;
      }
    }
  }
}

TEST(FrameCropper, AnEvenUprightCropCopiesNothing) {
  for (const AVPixelFormat format :
       {AV_PIX_FMT_YUV420P, AV_PIX_FMT_YUVA420P, AV_PIX_FMT_YUV420P10}) {
    const auto frame = noiseFrame(format, 78, 60);
    auto settings = settingsFor({6, 4, 40, 32}, kTurns[0]);
    settings.tenBit = format == AV_PIX_FMT_YUV420P10;
    const int bytes = settings.tenBit ? 2 : 1;
    const auto output = croppedOnce(*frame, settings);
    EXPECT_EQ(output->data[0], frame->data[0] + 4 * frame->linesize[0] + 6 * bytes);
    EXPECT_EQ(output->data[1], frame->data[1] + 2 * frame->linesize[1] + 3 * bytes);
    EXPECT_EQ(output->data[2], frame->data[2] + 2 * frame->linesize[2] + 3 * bytes);
    EXPECT_EQ(output->linesize[2], frame->linesize[2]);
    EXPECT_EQ(output->data[3], nullptr);
  }
}

TEST(FrameCropper, AnOddUprightCropCopiesNoLuma) {
  const auto frame = noiseFrame(AV_PIX_FMT_NV12, 78, 60);
  const auto output = croppedOnce(*frame, settingsFor({7, 3, 40, 32}, kTurns[0]));
  EXPECT_EQ(output->data[0], frame->data[0] + 3 * frame->linesize[0] + 7);
  EXPECT_NE(output->buf[1]->buffer, frame->buf[0]->buffer);
}

TEST(FrameCropper, ACroppedPictureOutlivesCropperAndSource) {
  auto settings = settingsFor({7, 4, 40, 32}, kTurns[0]);
  auto frame = noiseFrame(AV_PIX_FMT_YUV420P, 78, 60);
  const auto output = croppedOnce(*frame, settings);
  frame.reset();
  EXPECT_EQ(lumaDifferences(*output, settings.transform,
                            [](int x, int y) { return noise(0, x, y, 255); }),
            0);
}

TEST(FrameCropper, AFrameThatNobodyCountsIsCopied) {
  const auto frame = noiseFrame(AV_PIX_FMT_YUV420P, 78, 60);
  const auto uncounted = makeFrame();
  uncounted->format = frame->format;
  uncounted->width = frame->width;
  uncounted->height = frame->height;
  std::copy_n(frame->data, 3, uncounted->data);
  std::copy_n(frame->linesize, 3, uncounted->linesize);
  const auto settings = settingsFor({6, 4, 40, 32}, kTurns[0]);
  const auto output = croppedOnce(*uncounted, settings);
  EXPECT_NE(output->data[0], frame->data[0] + 4 * frame->linesize[0] + 6);
  EXPECT_TRUE(haveEqualSamples(*output, *croppedOnce(*frame, settings)));
}

TEST(FrameCropper, RowsThatRunUpwardAreFollowed) {
  for (const Turn& turn : kTurns) {
    const auto settings = settingsFor({7, 4, 40, 32}, turn);
    const auto frame = noiseFrame(AV_PIX_FMT_YUV420P, 78, 60);
    const auto upward = makeFilledFrame(AV_PIX_FMT_YUV420P, 78, 60, [](int c, int x, int y) {
      return noise(c, x, (c == 0 ? 59 : 29) - y, 255);
    });
    layUpward(*upward);
    const auto output = croppedOnce(*upward, settings);
    EXPECT_TRUE(haveEqualSamples(*output, *croppedOnce(*frame, settings))) << turn.name;
    EXPECT_GT(output->linesize[0], 0);
  }
}

TEST(FrameCropper, PlanesMayBeginAnywhereInMemory) {
  const auto frame = noiseFrame(AV_PIX_FMT_YUV444P10, 96, 60);
  const auto settings = settingsFor({7, 4, 40, 32}, kTurns[2]);
  const auto shifted = noiseFrame(AV_PIX_FMT_YUV444P10, 96, 60);
  for (int c = 0; c < 3; ++c)
    shifted->data[c] += 2;
  shifted->width -= 1;
  auto shiftedSettings = settings;
  shiftedSettings.transform.tx -= 1;
  EXPECT_TRUE(
      haveEqualSamples(*croppedOnce(*shifted, shiftedSettings), *croppedOnce(*frame, settings)));
}

TEST(FrameCropper, ChromaKeepsItsPlaceForEveryTurnOffsetAndSiting) {
  const DetailedChroma chroma;
  for (const ChromaSiting siting : kSitings) {
    const auto frame = detailedFrame(chroma, AV_PIX_FMT_YUV420P, 176, 144, siting);
    frame->chroma_location = locationOf(siting);
    for (const Turn& turn : kTurns) {
      for (int parity = 0; parity < 4; ++parity) {
        auto settings = settingsFor(partAt(parity), turn);
        settings.chromaSiting = siting;
        EXPECT_GE(croppedChromaPsnr(*frame, chroma, settings), 44)
            << turn.name << ", parity " << parity << ", siting " << static_cast<int>(siting);
      }
    }
  }
}

TEST(FrameCropper, ChromaOfFinerSourcesIsBroughtToTheOutputsSiting) {
  const DetailedChroma chroma;
  for (const AVPixelFormat format :
       {AV_PIX_FMT_YUV422P, AV_PIX_FMT_YUV444P, AV_PIX_FMT_YUV440P, AV_PIX_FMT_YUV422P10,
        AV_PIX_FMT_YUV444P12, AV_PIX_FMT_YUV444P16, AV_PIX_FMT_NV24}) {
    const auto frame = detailedFrame(chroma, format, 176, 144, ChromaSiting::Left);
    for (const Turn& turn : kTurns) {
      for (int parity = 0; parity < 4; ++parity) {
        auto settings = settingsFor(partAt(parity), turn);
        settings.chromaSiting = parity % 2 ? ChromaSiting::TopLeft : ChromaSiting::Left;
        settings.tenBit = parity / 2;
        EXPECT_GE(croppedChromaPsnr(*frame, chroma, settings), 44)
            << av_get_pix_fmt_name(format) << ' ' << turn.name << ", parity " << parity;
      }
    }
  }
}

TEST(FrameCropper, TheMaterialShowsChromaThatIsOnePixelOff) {
  const DetailedChroma chroma;
  const auto frame = detailedFrame(chroma, AV_PIX_FMT_YUV420P, 176, 144, ChromaSiting::Left);
  const auto settings = settingsFor(partAt(3), kTurns[1]);
  const auto output = croppedOnce(*frame, settings);
  for (const auto& [dx, dy] :
       {std::pair(1, 0), std::pair(-1, 0), std::pair(0, 1), std::pair(0, -1)})
    EXPECT_LT(chromaPsnr(*output, chroma, settings, dx, dy), 35);
}

TEST(FrameCropper, SitingsOfSourceAndOutputMayDiffer) {
  const DetailedChroma chroma;
  for (const ChromaSiting from : kSitings) {
    const auto frame = detailedFrame(chroma, AV_PIX_FMT_YUV420P, 176, 144, from);
    frame->chroma_location = locationOf(from);
    for (const ChromaSiting to : kSitings) {
      auto settings = settingsFor(partAt(0), kTurns[1]);
      settings.chromaSiting = to;
      EXPECT_GE(croppedChromaPsnr(*frame, chroma, settings), 44)
          << static_cast<int>(from) << " to " << static_cast<int>(to);
    }
  }
}

TEST(FrameCropper, PackedFormatsGiveWhatPlanarOnesDo) {
  const std::array<std::pair<AVPixelFormat, AVPixelFormat>, 16> pairs{{
      {AV_PIX_FMT_NV12, AV_PIX_FMT_YUV420P},
      {AV_PIX_FMT_NV21, AV_PIX_FMT_YUV420P},
      {AV_PIX_FMT_NV16, AV_PIX_FMT_YUV422P},
      {AV_PIX_FMT_NV24, AV_PIX_FMT_YUV444P},
      {AV_PIX_FMT_YUYV422, AV_PIX_FMT_YUV422P},
      {AV_PIX_FMT_UYVY422, AV_PIX_FMT_YUV422P},
      {AV_PIX_FMT_P010LE, AV_PIX_FMT_YUV420P10},
      {AV_PIX_FMT_P016LE, AV_PIX_FMT_YUV420P16},
      {AV_PIX_FMT_Y210LE, AV_PIX_FMT_YUV422P10},
      {AV_PIX_FMT_YUV422P12BE, AV_PIX_FMT_YUV422P12},
      {AV_PIX_FMT_YUVA444P10LE, AV_PIX_FMT_YUV444P10},
      {AV_PIX_FMT_RGB24, AV_PIX_FMT_GBRP},
      {AV_PIX_FMT_BGRA, AV_PIX_FMT_GBRP},
      {AV_PIX_FMT_0RGB, AV_PIX_FMT_GBRP},
      {AV_PIX_FMT_RGB48BE, AV_PIX_FMT_GBRP16},
      {AV_PIX_FMT_X2RGB10LE, AV_PIX_FMT_GBRP10},
  }};
  for (const auto& [packed, planar] : pairs) {
    for (const Turn& turn : {kTurns[0], kTurns[3]}) {
      const auto settings = settingsFor({5, 3, 40, 32}, turn);
      EXPECT_TRUE(haveEqualSamples(*croppedOnce(*noiseFrame(packed, 78, 60), settings),
                                   *croppedOnce(*noiseFrame(planar, 78, 60), settings)))
          << av_get_pix_fmt_name(packed);
    }
  }
}

TEST(FrameCropper, TenBitsToEightAreDitheredAboutTheirValue) {
  for (const int value : {256, 257, 258, 259, 600, 601}) {
    const auto frame =
        makeFilledFrame(AV_PIX_FMT_YUV420P10, 64, 64, [&](int, int, int) { return value; });
    const auto output = croppedOnce(*frame, settingsFor({1, 0, 32, 32}, kTurns[1]));
    for (int c = 0; c < 3; ++c) {
      double sum = 0;
      const int width = planeWidth(*output, c), height = planeHeight(*output, c);
      for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
          EXPECT_LT(std::abs(sampleAt(*output, c, x, y) - value / 4.0), 1);
          sum += sampleAt(*output, c, x, y);
        }
      }
      EXPECT_NEAR(sum / (width * height), value / 4.0, 0.15);
    }
  }
}

TEST(FrameCropper, EightBitsBecomeTenByAShift) {
  const auto frame = noiseFrame(AV_PIX_FMT_YUV420P, 78, 60);
  for (const Turn& turn : kTurns) {
    auto settings = settingsFor({7, 4, 40, 32}, turn);
    settings.tenBit = true;
    EXPECT_EQ(lumaDifferences(*croppedOnce(*frame, settings), settings.transform,
                              [](int x, int y) { return noise(0, x, y, 255) * 4; }),
              0)
        << turn.name;
  }
}

TEST(FrameCropper, FullRangeIsRoundedOnceToVideoRange) {
  for (const AVPixelFormat format : {AV_PIX_FMT_YUVJ420P, AV_PIX_FMT_YUV420P}) {
    const auto frame = makeFilledFrame(format, 32, 32, [](int c, int x, int y) {
      return c == 0 ? (y * 32 + x) % 256 : y * 16 + x;
    });
    frame->color_range = AVCOL_RANGE_JPEG;
    const auto output = croppedOnce(*frame, settingsFor({0, 0, 32, 32}, kTurns[0]));
    EXPECT_EQ(output->color_range, AVCOL_RANGE_MPEG);
    for (int i = 0; i < 256; ++i) {
      EXPECT_NEAR(sampleAt(*output, 0, i % 32, i / 32), 16 + i * 219 / 255.0, 0.501) << i;
      for (int c = 1; c < 3; ++c)
        EXPECT_NEAR(sampleAt(*output, c, i % 16, i / 16), 128 + (i - 128) * 224 / 255.0, 0.501)
            << i;
    }
  }
}

TEST(FrameCropper, RgbIsConvertedByTheGivenMatrix) {
  struct Matrix {
    int code;
    double red, blue;
  };
  for (const Matrix& matrix :
       {Matrix{1, 0.2126, 0.0722}, Matrix{6, 0.299, 0.114}, Matrix{9, 0.2627, 0.0593}}) {
    for (const std::array<int, 3>& color : {std::array{255, 255, 255}, std::array{0, 0, 0},
                                            std::array{255, 0, 0}, std::array{13, 200, 99}}) {
      const auto frame = makeFilledFrame(AV_PIX_FMT_RGB24, 32, 32, [&](int c, int, int) {
        return color.at(static_cast<size_t>(c));
      });
      auto settings = settingsFor({3, 3, 16, 16}, kTurns[4]);
      settings.matrixForRgb = matrix.code;
      const auto output = croppedOnce(*frame, settings);
      const double luma = matrix.red * color[0] + (1 - matrix.red - matrix.blue) * color[1] +
                          matrix.blue * color[2];
      EXPECT_NEAR(sampleAt(*output, 0, 8, 8), 16 + luma * 219 / 255, 0.51);
      EXPECT_NEAR(sampleAt(*output, 1, 4, 4),
                  128 + (color[2] - luma) / (2 - 2 * matrix.blue) * 224 / 255, 0.51);
      EXPECT_NEAR(sampleAt(*output, 2, 4, 4),
                  128 + (color[0] - luma) / (2 - 2 * matrix.red) * 224 / 255, 0.51);
      EXPECT_EQ(output->colorspace, matrix.code);
    }
  }
}

TEST(FrameCropper, PalettesAndFewBitsBecomeTheirColors) {
  const auto settings = settingsFor({1, 1, 16, 16}, kTurns[0]);
  const auto reference = makeFilledFrame(AV_PIX_FMT_RGB24, 32, 32,
                                         [](int c, int x, int) { return c == x % 3 ? 255 : 0; });
  const auto expected = croppedOnce(*reference, settings);

  const auto paletted =
      makeFilledFrame(AV_PIX_FMT_PAL8, 32, 32, [](int, int x, int) { return x % 3; });
  const std::array<uint32_t, 3> palette{0xffff0000, 0xff00ff00, 0xff0000ff};
  std::memcpy(paletted->data[1], palette.data(), sizeof palette);
  EXPECT_TRUE(haveEqualSamples(*croppedOnce(*paletted, settings), *expected));

  for (const AVPixelFormat format : {AV_PIX_FMT_RGB565LE, AV_PIX_FMT_RGB565BE, AV_PIX_FMT_BGR555LE,
                                     AV_PIX_FMT_RGB8, AV_PIX_FMT_RGB4}) {
    const auto frame = makeFilledFrame(format, 32, 32, [&](int c, int x, int) {
      return c == x % 3 ? (1 << av_pix_fmt_desc_get(format)->comp[c].depth) - 1 : 0;
    });
    EXPECT_TRUE(haveEqualSamples(*croppedOnce(*frame, settings), *expected))
        << av_get_pix_fmt_name(format);
  }
}

TEST(FrameCropper, GrayHasNoColor) {
  for (const AVPixelFormat format : {AV_PIX_FMT_GRAY8, AV_PIX_FMT_GRAY10, AV_PIX_FMT_YA8}) {
    const auto frame = noiseFrame(format, 78, 60);
    frame->color_range = AVCOL_RANGE_MPEG;
    auto settings = settingsFor({7, 4, 40, 32}, kTurns[1]);
    settings.tenBit = format == AV_PIX_FMT_GRAY10;
    const auto output = croppedOnce(*frame, settings);
    EXPECT_EQ(
        lumaDifferences(*output, settings.transform,
                        [&](int x, int y) { return noise(0, x, y, settings.tenBit ? 1023 : 255); }),
        0);
    for (int c = 1; c < 3; ++c) {
      EXPECT_EQ(sampleAt(*output, c, 0, 0), settings.tenBit ? 512 : 128);
      EXPECT_EQ(sampleAt(*output, c, 15, 19), settings.tenBit ? 512 : 128);
    }
  }
}

TEST(FrameCropper, BlackAndWhiteKnowWhichIsWhich) {
  for (const AVPixelFormat format : {AV_PIX_FMT_MONOBLACK, AV_PIX_FMT_MONOWHITE}) {
    const auto frame = makeFilledFrame(format, 64, 32, [](int, int x, int) { return x / 5 % 2; });
    const auto settings = settingsFor({9, 4, 40, 20}, kTurns[0]);
    EXPECT_EQ(lumaDifferences(*croppedOnce(*frame, settings), settings.transform,
                              [&](int x, int) {
                                return (x / 5 % 2 == 1) == (format == AV_PIX_FMT_MONOBLACK) ? 235
                                                                                            : 16;
                              }),
              0)
        << av_get_pix_fmt_name(format);
  }
}

TEST(FrameCropper, APartOfAScaledPictureIsThatPartOfTheWhole) {
  const auto frame = noiseFrame(AV_PIX_FMT_YUV420P, 144, 116);
  const PictureSize naturalSize{192, 116};
  for (const Turn& turn : kTurns) {
    const auto whole =
        FrameCropper(settingsFor({0, 0, 192, 116}, kTurns[0]), naturalSize).crop(*frame);
    const auto settings = settingsFor({42, 18, 100, 60}, turn);
    const auto part = FrameCropper(settings, naturalSize).crop(*frame);
    for (int v = 0; v < part->height; ++v) {
      for (int u = 0; u < part->width; ++u) {
        const Point source = sourceOf(settings.transform, u + 0.5, v + 0.5);
        EXPECT_NEAR(sampleAt(*part, 0, u, v),
                    sampleAt(*whole, 0, static_cast<int>(source.x), static_cast<int>(source.y)), 1);
      }
    }
    if (turn.a == 1 && turn.d == 1) {
      EXPECT_TRUE(haveEqualSamples(*part, *croppedOnce(*whole, settings), 1));
    }
  }
}

TEST(FrameCropper, ChromaKeepsItsPlaceWherePixelsAreNotSquare) {
  // The stored pixels are 4/3 as wide, and hold less detail.
  const DetailedChroma chroma(0.165);
  const auto frame = makeFilledFrame(AV_PIX_FMT_YUV420P, 132, 144, [&](int c, int x, int y) {
    return c == 0 ? 128
                  : static_cast<int>(std::lround(chroma.at(c, (2 * x + 0.5) * 4 / 3, 2 * y + 1)));
  });
  for (const Turn& turn : kTurns)
    EXPECT_GE(croppedChromaPsnr(*frame, chroma, settingsFor(partAt(3), turn)), 44) << turn.name;
}

TEST(FrameCropper, FramesOfOtherKindsMayComeInBetween) {
  const auto settings = settingsFor({6, 4, 40, 32}, kTurns[1]);
  FrameCropper cropper(settings, {78, 60});
  const auto first = noiseFrame(AV_PIX_FMT_YUV420P, 78, 60);
  const auto expected = cropper.crop(*first);
  const auto gray =
      makeFilledFrame(AV_PIX_FMT_YUV444P10, 156, 120, [](int, int, int) { return 512; });
  const auto second = cropper.crop(*gray);
  EXPECT_EQ(second->width, 32);
  EXPECT_EQ(second->height, 40);
  EXPECT_EQ(sampleAt(*second, 0, 31, 39), 128);
  EXPECT_EQ(sampleAt(*second, 2, 15, 19), 128);
  EXPECT_TRUE(haveEqualSamples(*cropper.crop(*first), *expected));
}

TEST(FrameCropper, TimesAndTagsAreTheFrames) {
  const auto frame = noiseFrame(AV_PIX_FMT_YUV422P, 78, 60);
  frame->pts = 1001;
  frame->time_base = {1, 30000};
  frame->color_primaries = AVCOL_PRI_BT2020;
  frame->color_trc = AVCOL_TRC_ARIB_STD_B67;
  frame->colorspace = AVCOL_SPC_YCGCO;
  frame->pict_type = AV_PICTURE_TYPE_I;
  ASSERT_TRUE(av_frame_new_side_data(frame.get(), AV_FRAME_DATA_DISPLAYMATRIX, 36));
  auto settings = settingsFor({6, 4, 40, 32}, kTurns[1]);
  settings.chromaSiting = ChromaSiting::TopLeft;
  const auto output = croppedOnce(*frame, settings);
  EXPECT_EQ(output->format, AV_PIX_FMT_YUV420P);
  EXPECT_EQ(output->width, 32);
  EXPECT_EQ(output->height, 40);
  EXPECT_EQ(output->pts, 1001);
  EXPECT_EQ(output->time_base.den, 30000);
  EXPECT_EQ(output->color_primaries, AVCOL_PRI_BT2020);
  EXPECT_EQ(output->color_trc, AVCOL_TRC_ARIB_STD_B67);
  EXPECT_EQ(output->colorspace, AVCOL_SPC_YCGCO);
  EXPECT_EQ(output->color_range, AVCOL_RANGE_MPEG);
  EXPECT_EQ(output->chroma_location, AVCHROMA_LOC_TOPLEFT);
  EXPECT_EQ(output->pict_type, AV_PICTURE_TYPE_NONE);
  EXPECT_EQ(output->nb_side_data, 0);
}

TEST(FrameCropper, TheSmallestPicturesWork) {
  for (const AVPixelFormat format : {AV_PIX_FMT_YUV420P, AV_PIX_FMT_YUV444P10, AV_PIX_FMT_RGB24}) {
    const auto frame = noiseFrame(format, 3, 3);
    for (const Turn& turn : kTurns)
      EXPECT_EQ(croppedOnce(*frame, settingsFor({1, 1, 2, 2}, turn))->width, 2);
  }
}

TEST(FrameCropper, UnreadableFormatsAreRefused) {
  for (const AVPixelFormat format : {AV_PIX_FMT_NONE, AV_PIX_FMT_VAAPI, AV_PIX_FMT_BAYER_BGGR8,
                                     AV_PIX_FMT_GRAYF32, AV_PIX_FMT_XYZ12LE}) {
    EXPECT_FALSE(FrameCropper::accepts(format));
    const auto frame = makeFrame();
    frame->format = format;
    frame->width = frame->height = 64;
    EXPECT_THROW(croppedOnce(*frame, settingsFor({0, 0, 2, 2}, kTurns[0])), Failure);
  }
  EXPECT_TRUE(FrameCropper::accepts(AV_PIX_FMT_YUV420P));
}

TEST(FrameCropper, AMatrixThatIsNoneIsRefusedForRgb) {
  const auto frame = noiseFrame(AV_PIX_FMT_RGB24, 32, 32);
  auto settings = settingsFor({0, 0, 16, 16}, kTurns[0]);
  settings.matrixForRgb = 10;
  EXPECT_THROW(croppedOnce(*frame, settings), Failure);
}

TEST(FrameCropper, APartBeyondTheSourceIsRefused) {
  EXPECT_THROW(FrameCropper(settingsFor({40, 0, 40, 32}, kTurns[0]), {78, 60}),
               std::invalid_argument);
}

}  // namespace
}  // namespace vantrel
