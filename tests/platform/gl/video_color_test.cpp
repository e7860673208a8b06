#include <array>
#include <tuple>

#include "platform/gl/tone_curve.h"
#include "platform/gl/video_content_fixture.h"

namespace vantrel {
namespace {

using namespace testing;

using Model = VideoPicture::Model;
using Color = std::array<double, 3>;

constexpr int kYCgCo = 8;

struct Matrix {
  int code = 0;
  double red = 0, blue = 0;
};

/// ITU-T H.273, equations 23 to 25 and 30 to 32, from codes of any depth and range, to 255.
class Reference {
 public:
  Reference(const Matrix& matrix, int depth, bool isFullRange)
      : m_matrix(matrix),
        m_unit(std::exp2(depth - 8)),
        m_highest(std::exp2(depth) - 1),
        m_isFullRange(isFullRange) {}

  [[nodiscard]] double luma(int code) const {
    return m_isFullRange ? code / m_highest : (code / m_unit - 16) / 219;
  }
  [[nodiscard]] double difference(int code) const {
    const double middle = 128 * m_unit;
    return (code - middle) / (m_isFullRange ? m_highest : 224 * m_unit);
  }
  [[nodiscard]] Color shown(int y, int cb, int cr) const {
    return shown(luma(y), difference(cb), difference(cr));
  }
  [[nodiscard]] Color shown(double y, double cb, double cr) const {
    const auto& [code, kr, kb] = m_matrix;
    Color rgb;
    if (code == kYCgCo) {
      rgb = {y - cb + cr, y + cb, y - cb - cr};
    } else {
      const double red = y + 2 * (1 - kr) * cr, blue = y + 2 * (1 - kb) * cb;
      rgb = {red, (y - kr * red - kb * blue) / (1 - kr - kb), blue};
    }
    for (double& channel : rgb)
      channel = 255 * std::min(std::max(channel, 0.0), 1.0);
    return rgb;
  }

 private:
  Matrix m_matrix;
  double m_unit, m_highest;
  bool m_isFullRange;
};

constexpr Matrix kBt709{1, 0.2126, 0.0722};

class VideoMatrix : public VideoContentFixture,
                    public ::testing::WithParamInterface<std::tuple<Matrix, int, bool>> {};

TEST_P(VideoMatrix, GivesItsColors) {
  const auto& [matrix, depth, isFullRange] = GetParam();
  MadePicture made{.width = 12, .height = 12, .depth = depth, .isFullRange = isFullRange};
  made.color.matrix = matrix.code;
  const int unit = 1 << (depth - 8);
  const auto sample = [unit](int c, int x, int y) {
    if (c == 0) return (16 + 20 * x) * unit + x;
    return (c == 1 ? 40 + 17 * y : 16 + (x * 5 + y * 13) % 224) * unit + y % unit;
  };
  const Reference reference(matrix, depth, isFullRange);
  const QImage image = drawn(makePicture(made, sample), QRectF(0, 0, 12, 12));
  for (int y = 0; y < 12; ++y) {
    for (int x = 0; x < 12; ++x) {
      const Color color = reference.shown(sample(0, x, y), sample(1, x, y), sample(2, x, y));
      expectNear(image.pixelColor(x, y), color[0], color[1], color[2]);
    }
  }
}

INSTANTIATE_TEST_SUITE_P(
    All, VideoMatrix,
    ::testing::Combine(::testing::Values(kBt709, Matrix{4, 0.30, 0.11}, Matrix{5, 0.299, 0.114},
                                         Matrix{6, 0.299, 0.114}, Matrix{7, 0.212, 0.087},
                                         Matrix{kYCgCo, 0, 0}, Matrix{9, 0.2627, 0.0593}),
                       ::testing::Values(8, 10, 12, 16), ::testing::Bool()));

class VideoColor : public VideoContentFixture {
 protected:
  /// Of a flat gray of ten bits and video range.
  double shownGray(ColorTags color, int code, const HdrMetadata& hdr = {}) {
    MadePicture made{.width = 4, .height = 4, .depth = 10, .color = color};
    const auto picture = makeFlat(made, code, 512, 512);
    picture->hdrMetadata = hdr;
    const QColor result = shown(picture);
    EXPECT_NEAR(result.red(), result.green(), 1);
    EXPECT_NEAR(result.red(), result.blue(), 1);
    return result.green();
  }
};

TEST_F(VideoColor, OfRgbAndGrayIsTheirs) {
  for (const int depth : {8, 9, 14, 16}) {
    const double highest = (1 << depth) - 1;
    MadePicture made{.width = 5, .height = 3, .model = Model::Rgb, .depth = depth};
    made.isFullRange = true;
    const auto code = [highest](double value) { return static_cast<int>(value / 255 * highest); };
    expectNear(shown(makeFlat(made, code(200), code(17), code(90))), 200, 17, 90);
    made.model = Model::Gray;
    expectNear(shown(makeFlat(made, code(140), 0, 0)), 140, 140, 140);
    made.isFullRange = false;
    expectNear(shown(makeFlat(made, 126 << (depth - 8), 0, 0)), 128, 128, 128);
  }
}

TEST_F(VideoColor, OfTelevisionIsShownAsItsCodeValues) {
  // Whichever of television's curves and primaries.
  for (const int transfer : {1, 2, 4, 5, 6, 7, 11, 13, 14, 15}) {
    for (const int primaries : {1, 2, 5, 6, 7, 22}) {
      MadePicture made{.width = 4, .height = 4, .color = {primaries, transfer, 5}};
      expectNear(shown(makeFlat(made, 81, 90, 240)), 254, 0, 0);
    }
  }
}

/// The signal of an sRGB display for light, to 255.
double srgbSignal(double light) {
  const double clamped = std::min(std::max(light, 0.0), 1.0);
  return 255 *
         (clamped <= 0.0031308 ? 12.92 * clamped : 1.055 * std::pow(clamped, 1 / 2.4) - 0.055);
}
double srgbLight(double signal) {
  return signal <= 0.04045 ? signal / 12.92 : std::pow((signal + 0.055) / 1.055, 2.4);
}

TEST_F(VideoColor, OfOtherPrimariesIsConverted) {
  MadePicture made{.width = 4, .height = 4, .model = Model::Rgb, .depth = 16};
  made.isFullRange = true;
  made.color = {12, 13, 0};
  // From Display P3 to sRGB, by the matrix that W3C's CSS Color 4 gives.
  const double red = srgbLight(0.6), green = srgbLight(0.5), blue = srgbLight(0.4);
  const auto code = [](double signal) { return static_cast<int>(std::lround(signal * 65535)); };
  expectNear(shown(makeFlat(made, code(0.6), code(0.5), code(0.4))),
             srgbSignal(1.2249402 * red - 0.2249402 * green),
             srgbSignal(-0.0420570 * red + 1.0420570 * green),
             srgbSignal(-0.0196376 * red - 0.0786361 * green + 1.0982736 * blue));
  // White stays white, in any white.
  for (const int primaries : {4, 8, 9, 11, 12}) {
    made.color.primaries = primaries;
    expectNear(shown(makeFlat(made, 65535, 65535, 65535)), 255, 255, 255);
  }
}

TEST_F(VideoColor, OfBt2020IsWiderThanTheDisplay) {
  MadePicture made{.width = 4, .height = 4, .model = Model::Rgb, .depth = 10};
  made.isFullRange = true;
  made.color = {9, 14, 0};
  expectNear(shown(makeFlat(made, 1023, 0, 0)), 255, 0, 0);
  // ITU-R BT.2087: of light 0.5 in each, but for red.
  const int half = static_cast<int>(std::lround(1023 * srgbSignal(0.5) / 255));
  const int more = static_cast<int>(std::lround(1023 * srgbSignal(0.6) / 255));
  expectNear(shown(makeFlat(made, more, half, half)), srgbSignal(0.5 + 0.1 * 1.6605),
             srgbSignal(0.5 - 0.1 * 0.1246), srgbSignal(0.5 - 0.1 * 0.0182));
}

TEST_F(VideoColor, OfLinearLightAndCinemaIsConverted) {
  const auto codeOf = [](double signal) {
    return static_cast<int>(std::lround(64 + 876 * signal));
  };
  EXPECT_NEAR(shownGray({1, 8, 1}, codeOf(0.214)), srgbSignal(0.214), 1);
  EXPECT_NEAR(shownGray({1, 9, 1}, codeOf(0.5)), srgbSignal(0.1), 1);
  EXPECT_NEAR(shownGray({1, 10, 1}, codeOf(0.6)), srgbSignal(0.1), 1);
  EXPECT_NEAR(shownGray({1, 17, 1}, codeOf(0.5)), srgbSignal(std::pow(0.5, 2.6) * 52.37 / 48), 1);
}

/// The code of light in cd/m², in ten bits of video range (ITU-R BT.2100, table 4).
int pqCode(double luminance) {
  const double power = std::pow(luminance / 10000, 0.1593017578125);
  const double signal =
      std::pow((0.8359375 + 18.8515625 * power) / (1 + 18.6875 * power), 78.84375);
  return static_cast<int>(std::lround(64 + 876 * signal));
}

TEST_F(VideoColor, OfPqShowsTheDarkerPartAsItIs) {
  for (const double luminance : {0.5, 2.0, 10.0, 40.0, 80.0})
    EXPECT_NEAR(shownGray({9, 16, 9}, pqCode(luminance)), srgbSignal(luminance / 203), 1.5);
}

TEST_F(VideoColor, OfPqShowsDiffuseWhiteNearlyWhiteAndThePeakWhite) {
  const double white = shownGray({9, 16, 9}, pqCode(203));
  EXPECT_GT(white, 220);
  EXPECT_LT(white, 245);
  EXPECT_NEAR(white, srgbSignal(ToneCurve(1000.0 / 203)(1)), 1.5);
  EXPECT_NEAR(shownGray({9, 16, 9}, pqCode(1000)), 255, 1);
  EXPECT_NEAR(shownGray({9, 16, 9}, pqCode(10000)), 255, 1);
}

TEST_F(VideoColor, OfPqHeedsThePeakOfTheMastering) {
  HdrMetadata hdr;
  hdr.masteringDisplay.emplace().highestLuminance = {40'000'000, 10'000};
  EXPECT_LT(shownGray({9, 16, 9}, pqCode(1000), hdr), 253);
  EXPECT_NEAR(shownGray({9, 16, 9}, pqCode(4000), hdr), 255, 1);
  // A video that is no brighter than the display is shown as it is.
  hdr.masteringDisplay->highestLuminance = {203, 1};
  EXPECT_NEAR(shownGray({9, 16, 9}, pqCode(150), hdr), srgbSignal(150.0 / 203), 1.5);
  // Nonsense counts as nothing, levels of light for what is missing.
  hdr.masteringDisplay->highestLuminance = {1, 0};
  EXPECT_NEAR(shownGray({9, 16, 9}, pqCode(1000), hdr), 255, 1);
  hdr.masteringDisplay.reset();
  hdr.contentLight = ContentLight{4000, 0};
  EXPECT_LT(shownGray({9, 16, 9}, pqCode(1000), hdr), 253);
}

TEST_F(VideoColor, OfHdrNeverFallsWithTheSignal) {
  for (const int transfer : {16, 18}) {
    MadePicture made{.width = 160, .height = 2, .depth = 10, .color = {9, transfer, 9}};
    const auto codeAt = [](int x) { return 64 + 876 * x / 159; };
    const QImage image =
        drawn(makePicture(made, [&](int c, int x, int) { return c == 0 ? codeAt(x) : 512; }),
              QRectF(0, 0, 160, 2));
    for (int x = 1; x < 160; ++x)
      EXPECT_GE(image.pixelColor(x, 0).green(), image.pixelColor(x - 1, 0).green()) << x;
    EXPECT_EQ(image.pixelColor(0, 0).green(), 0);
    EXPECT_EQ(image.pixelColor(159, 0).green(), 255);
  }
}

TEST_F(VideoColor, OfHlgHasItsSystemGamma) {
  // ITU-R BT.2100: a signal of a half is a twelfth of the scene's light, on a display of 1000
  // cd/m².
  const double luminance = 1000 * std::pow(1.0 / 12, 1.2);
  EXPECT_NEAR(shownGray({9, 18, 9}, 64 + 438), srgbSignal(luminance / 203), 2);
  // Three quarters are diffuse white (ITU-R BT.2408), which is shown as that of PQ.
  EXPECT_NEAR(shownGray({9, 18, 9}, 64 + 657), shownGray({9, 16, 9}, pqCode(203)), 2);
}

TEST_F(VideoColor, OfHdrKeepsItsHue) {
  MadePicture made{.width = 4, .height = 4, .model = Model::Rgb, .depth = 16};
  made.isFullRange = true;
  made.color = {1, 16, 0};
  const auto code = [](double luminance) {
    return static_cast<int>(std::lround((pqCode(luminance) - 64) / 876.0 * 65535));
  };
  const QColor bright = shown(makeFlat(made, code(800), code(400), code(100)));
  const double red = srgbLight(bright.redF()), green = srgbLight(bright.greenF());
  EXPECT_NEAR(green / red, 0.5, 0.02);
  EXPECT_NEAR(srgbLight(bright.blueF()) / red, 0.125, 0.02);
}

TEST(ToneCurve, IsContinuousAndRisesToWhite) {
  for (const double peak : {1.2, 1000.0 / 203, 4000.0 / 203, 10000.0 / 203}) {
    const ToneCurve curve(peak);
    double last = 0;
    for (int i = 0; i <= 4000; ++i) {
      const double value = curve(peak * i / 4000);
      EXPECT_GE(value, last);
      EXPECT_LE(value - last, peak / 4000 + 1e-9);
      last = value;
    }
    EXPECT_NEAR(last, 1, 1e-6);
  }
}

TEST(ToneCurve, LeavesAloneWhatTheDisplayHolds) {
  EXPECT_EQ(ToneCurve(1)(0.7), 0.7);
  EXPECT_EQ(ToneCurve(0.5)(0.4), 0.4);
  EXPECT_EQ(ToneCurve(1)(3), 1);
}

struct Siting {
  ChromaSiting siting = ChromaSiting::Left;
  /// Where the first sample lies among two pixels, from the edge.
  double x = 0, y = 0;
};

class ChromaPlaces : public VideoContentFixture, public ::testing::WithParamInterface<Siting> {
 protected:
  /// What lies between the centres of samples, after ITU-R's linear interpolation.
  static double interpolated(const std::array<int, 8>& samples, double at) {
    const double limited = std::min(std::max(at, 0.0), 7.0);
    const auto low = static_cast<size_t>(std::min(limited, 6.0));
    return samples[low] + (limited - static_cast<double>(low)) * (samples[low + 1] - samples[low]);
  }
};

TEST_P(ChromaPlaces, AreThoseOfTheSiting) {
  constexpr std::array kSamples = {128, 128, 60, 200, 128, 90, 90, 170};
  const Siting& siting = GetParam();
  const Reference reference(kBt709, 8, false);
  for (const bool isAlongX : {true, false}) {
    for (const int shift : {0, 1}) {
      // Subsampled along one axis, or along both.
      MadePicture made{.width = 16, .height = 16};
      made.chromaShiftX = isAlongX ? 1 : shift;
      made.chromaShiftY = isAlongX ? shift : 1;
      const auto picture = makePicture(made, [&](int c, int x, int y) {
        return c == 1 ? kSamples.at(static_cast<size_t>(isAlongX ? x : y)) : 128;
      });
      picture->chromaSiting = siting.siting;
      const double first = isAlongX ? siting.x : siting.y;
      for (const int scale : {1, 5}) {
        const QImage image = drawn(picture, QRectF(0, 0, 16 * scale, 16 * scale));
        for (int i = 0; i < 16; ++i) {
          const double cb = interpolated(kSamples, (i + 0.5 - first) / 2);
          const Color color = reference.shown(reference.luma(128), (cb - 128) / 224, 0.0);
          const QPoint place(isAlongX ? i : 4, isAlongX ? 4 : i);
          expectNear(image.pixelColor(place * scale), color[0], color[1], color[2], 2);
        }
      }
    }
  }
}

INSTANTIATE_TEST_SUITE_P(All, ChromaPlaces,
                         ::testing::Values(Siting{ChromaSiting::Left, 0.5, 1},
                                           Siting{ChromaSiting::Center, 1, 1},
                                           Siting{ChromaSiting::TopLeft, 0.5, 0.5},
                                           Siting{ChromaSiting::Top, 1, 0.5},
                                           Siting{ChromaSiting::BottomLeft, 0.5, 1.5},
                                           Siting{ChromaSiting::Bottom, 1, 1.5}));

TEST_F(VideoColor, OfOddSizesReachesTheEdge) {
  MadePicture made{.width = 7, .height = 5, .chromaShiftX = 1, .chromaShiftY = 1};
  const auto picture = makePicture(made, [](int c, int x, int y) {
    return c == 0 ? 100 : x == 3 || y == 2 ? 200 : 128;
  });
  const Reference reference(kBt709, 8, false);
  const Color color = reference.shown(100, 200, 200);
  const QImage image = drawn(picture, QRectF(0, 0, 7, 5));
  expectNear(image.pixelColor(6, 4), color[0], color[1], color[2], 2);
  expectNear(image.pixelColor(0, 0), 98, 98, 98, 1);
}

TEST_F(VideoColor, StaysWhenThePictureIsReduced) {
  MadePicture made{.width = 333, .height = 251, .chromaShiftX = 1, .chromaShiftY = 1};
  const Color color = Reference(kBt709, 8, false).shown(100, 90, 200);
  const auto picture = makeFlat(made, 100, 90, 200);
  for (const double scale : {0.9, 0.5, 0.3, 0.2, 0.11, 0.03}) {
    const QImage image = drawn(picture, QRectF(0, 0, 333 * scale, 251 * scale));
    expectNear(image.pixelColor(3, 3), color[0], color[1], color[2]);
  }
}

TEST_F(VideoColor, StaysInPlaceWhenThePictureIsReduced) {
  // An edge of chroma alone, in the middle.
  MadePicture made{.width = 256, .height = 256, .chromaShiftX = 1, .chromaShiftY = 1};
  const auto picture =
      makePicture(made, [](int c, int x, int) { return c == 2 && x >= 64 ? 200 : 128; });
  picture->chromaSiting = ChromaSiting::Center;
  const Reference reference(kBt709, 8, false);
  const double low = reference.shown(128, 128, 128)[0], high = reference.shown(128, 128, 200)[0];
  for (const int size : {16, 32, 50, 64, 100}) {
    const QImage image = drawn(picture, QRectF(0, 0, size, size));
    EXPECT_NEAR(image.pixelColor(size / 2 - 2, 8).red(), low, 1);
    EXPECT_NEAR(image.pixelColor(size / 2 + 1, 8).red(), high, 1);
    EXPECT_NEAR(image.pixelColor(size / 2 - 1, 8).red() + image.pixelColor(size / 2, 8).red(),
                low + high, 3);
  }
}

}  // namespace
}  // namespace vantrel
