#include "platform/image/coded_profile.h"

#include <gmock/gmock.h>

#include <cmath>
#include <cstring>

#include "platform/image/color_profile.h"
#include "platform/image/display_renderer.h"

namespace vantrel {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::Optional;

// Code points of ITU-T H.273.
constexpr int kUnspecified = 2;
constexpr int kBt709 = 1, kBt2020 = 9, kDisplayP3 = 12;
constexpr int kVideo = 1, kGamma22 = 4, kGamma28 = 5, kLinear = 8, kSrgb = 13, kPq = 16, kHlg = 18;

Bitmap onePixel(PixelLayout layout, uint16_t sample, std::vector<uint8_t> profile) {
  const auto channels = static_cast<size_t>(layout.channels());
  std::shared_ptr<std::byte> pixels(new std::byte[channels * 2],
                                    std::default_delete<std::byte[]>());
  for (size_t c = 0; c < channels; ++c) {
    std::memcpy(pixels.get() + 2 * c, &sample, 2);
  }
  BitmapColor color;
  color.iccProfile = std::move(profile);
  return Bitmap(1, 1, layout, pixels, channels * 2, std::move(color));
}

/// The 8-bit sRGB value of a grey signal from 0 to 1.
int shownValue(int primaries, int transfer, double signal, ColorModel model = ColorModel::Rgb) {
  const DisplayRenderer renderer(onePixel({model, SampleFormat::UInt16},
                                          static_cast<uint16_t>(std::lround(signal * 65535)),
                                          codedProfile(primaries, transfer, model)));
  uint8_t pixel[4];
  renderer.render({0, 0, 1, 1}, 1, pixel, 4);
  return pixel[0];
}

std::optional<std::string> nameOf(int primaries, int transfer, ColorModel model = ColorModel::Rgb) {
  return colorProfileName(
      onePixel({model, SampleFormat::UInt16}, 0, codedProfile(primaries, transfer, model)));
}

TEST(CodedProfile, SrgbAndTheUnknownNeedNone) {
  EXPECT_THAT(codedProfile(kBt709, kSrgb, ColorModel::Rgb), IsEmpty());
  EXPECT_THAT(codedProfile(kUnspecified, kUnspecified, ColorModel::Rgb), IsEmpty());
  EXPECT_THAT(codedProfile(0, 999, ColorModel::Rgb), IsEmpty());
  EXPECT_THAT(codedProfile(kDisplayP3, kSrgb, ColorModel::Gray), IsEmpty());
}

TEST(CodedProfile, ProfilesFitAreNamedAndRepeat) {
  for (const int primaries : {1, 4, 5, 6, 7, 8, 9, 11, 12, 22}) {
    for (const int transfer : {1, 4, 5, 6, 7, 8, 14, 15, 16, 17, 18}) {
      const std::vector<uint8_t> profile = codedProfile(primaries, transfer, ColorModel::Rgb);
      EXPECT_TRUE(profileFits(profile, ColorModel::Rgb)) << primaries << ' ' << transfer;
      EXPECT_EQ(profile, codedProfile(primaries, transfer, ColorModel::Rgb));
    }
  }
  EXPECT_TRUE(profileFits(codedProfile(kBt709, kLinear, ColorModel::Gray), ColorModel::Gray));
  EXPECT_THAT(nameOf(kDisplayP3, kSrgb), Optional(std::string("Display P3")));
  EXPECT_THAT(nameOf(kBt2020, kPq), Optional(std::string("BT.2020, PQ")));
  EXPECT_THAT(nameOf(kBt709, kLinear, ColorModel::Gray), Optional(std::string("Gray, linear")));
}

TEST(CodedProfile, PrimariesPlaceColours) {
  EXPECT_THAT(srgbColorIn(codedProfile(kDisplayP3, kSrgb, ColorModel::Rgb), 1, 0, 0),
              ElementsAre(234, 51, 35));
  EXPECT_THAT(srgbColorIn(codedProfile(kDisplayP3, kSrgb, ColorModel::Rgb), 1, 1, 1),
              ElementsAre(255, 255, 255));
}

TEST(CodedProfile, CurvesGiveLight) {
  // Light by the formula of each curve, then the sRGB curve.
  EXPECT_NEAR(shownValue(kBt709, kLinear, 0.5), 188, 1);
  EXPECT_NEAR(shownValue(kBt709, kGamma22, 0.5), 128, 1);
  EXPECT_NEAR(shownValue(kBt709, kGamma28, 0.5), 106, 1);
  EXPECT_NEAR(shownValue(kBt709, kVideo, 0.5), 139, 1);
  EXPECT_NEAR(shownValue(kBt709, kLinear, 0.5, ColorModel::Gray), 188, 1);
}

TEST(CodedProfile, DiffuseWhiteOfHighDynamicRangeIsWhite) {
  // BT.2408: 203 cd/m² is 58 % of a PQ signal and 75 % of HLG.
  EXPECT_NEAR(shownValue(kBt2020, kPq, 0.58069), 255, 1);
  EXPECT_NEAR(shownValue(kBt2020, kHlg, 0.75), 255, 1);
  EXPECT_EQ(shownValue(kBt2020, kPq, 1), 255);
  // 20.3 cd/m² is a tenth of it: 89 in sRGB.
  EXPECT_NEAR(shownValue(kBt2020, kPq, 0.35830), 89, 1);
}

}  // namespace
}  // namespace vantrel
