#include "platform/image/profile_builder.h"

#include <gtest/gtest.h>

#include "platform/image/color_profile.h"

namespace vantrel {
namespace {

Bitmap onePixel(ColorModel model, std::vector<uint8_t> profile) {
  BitmapColor color;
  color.iccProfile = std::move(profile);
  const PixelLayout layout{model, SampleFormat::UInt8, false};
  return {1,
          1,
          layout,
          std::shared_ptr<const std::byte>(new std::byte[4]{},
                                           std::default_delete<const std::byte[]>()),
          4,
          color};
}

TEST(ProfileBuilder, NamesTheProfile) {
  EXPECT_EQ(colorProfileName(onePixel(ColorModel::Rgb, rgbProfile(kSrgbChromaticities, 1.8))),
            "Calibrated RGB, gamma 1.80");
  EXPECT_EQ(
      colorProfileName(onePixel(ColorModel::Rgb, rgbProfile(kSrgbChromaticities, std::nullopt))),
      "Calibrated RGB, sRGB curve");
  EXPECT_EQ(colorProfileName(onePixel(ColorModel::Gray, grayProfile(2.2))),
            "Calibrated Gray, gamma 2.20");
}

TEST(ProfileBuilder, MakesTheSameBytesEachTime) {
  EXPECT_EQ(rgbProfile(kSrgbChromaticities, 1.8), rgbProfile(kSrgbChromaticities, 1.8));
  EXPECT_NE(rgbProfile(kSrgbChromaticities, 1.8), rgbProfile(kSrgbChromaticities, 1.9));
}

TEST(ProfileBuilder, MakesSrgbFromItsPrimariesAndCurve) {
  const std::array<uint8_t, 3> color =
      srgbColorIn(rgbProfile(kSrgbChromaticities, std::nullopt), 1, 128 / 255.0, 0.1);
  EXPECT_EQ(color, (std::array<uint8_t, 3>{255, 128, 26}));
}

TEST(ProfileBuilder, MakesLinearLight) {
  // IEC 61966-2-1: 188 of 255 is linear 0.5029.
  const std::array<uint8_t, 3> color =
      srgbColorIn(rgbProfile(kSrgbChromaticities, 1.0), 188 / 255.0, 188 / 255.0, 188 / 255.0);
  EXPECT_EQ(color, (std::array<uint8_t, 3>{128, 128, 128}));
}

TEST(ProfileBuilder, RefusesWhatIsNoSpace) {
  EXPECT_TRUE(rgbProfile(kSrgbChromaticities, 0.05).empty());
  EXPECT_TRUE(rgbProfile(kSrgbChromaticities, 11).empty());
  EXPECT_TRUE(grayProfile(0).empty());
  Chromaticities flat = kSrgbChromaticities;
  flat.greenX = flat.redX;
  flat.greenY = flat.redY;
  EXPECT_TRUE(rgbProfile(flat, 2.2).empty());
  Chromaticities dark = kSrgbChromaticities;
  dark.whiteY = 0;
  EXPECT_TRUE(rgbProfile(dark, 2.2).empty());
}

}  // namespace
}  // namespace vantrel
