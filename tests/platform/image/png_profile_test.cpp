#include <gtest/gtest.h>

#include "platform/image/color_profile.h"
#include "platform/image/profile_builder.h"
#include "support/icc_maker.h"
#include "support/open_image.h"

namespace vantrel {
namespace {

using testing::Bytes;
using testing::decodeBytes;
using testing::iccpChunk;
using testing::makePng;
using testing::pngChunk;
using testing::PngSpec;

Bytes numbers(const std::vector<uint32_t>& values) {
  Bytes data;
  for (const uint32_t value : values) {
    for (int shift = 24; shift >= 0; shift -= 8)
      data.push_back(static_cast<uint8_t>(value >> shift));
  }
  return data;
}

const Bytes kSrgb = pngChunk("sRGB", {0});
const Bytes kSrgbGamma = pngChunk("gAMA", numbers({45455}));
const Bytes kSrgbPrimaries =
    pngChunk("cHRM", numbers({31270, 32900, 64000, 33000, 30000, 60000, 15000, 6000}));
const Bytes kWidePrimaries =
    pngChunk("cHRM", numbers({31270, 32900, 64000, 33000, 21000, 71000, 15000, 6000}));

Bytes profileWith(std::vector<Bytes> chunks, int colorType = 2) {
  PngSpec spec;
  spec.colorType = colorType;
  spec.sample = [](uint32_t, uint32_t, int) { return uint16_t{0}; };
  spec.before = std::move(chunks);
  if (colorType == 3) spec.before.push_back(pngChunk("PLTE", {1, 2, 3}));
  return decodeBytes(makePng(spec)).color().iccProfile;
}

TEST(PngProfile, IsTheEmbeddedOneByteForByte) {
  const Bytes profile = testing::wideRgbProfile();
  EXPECT_EQ(profileWith({iccpChunk(profile)}), profile);
  EXPECT_EQ(profileWith({iccpChunk(profile)}, 3), profile);
  EXPECT_EQ(profileWith({iccpChunk(profile), kSrgbGamma, kSrgbPrimaries}), profile);
  const Bytes gray = testing::grayProfile(1.8);
  EXPECT_EQ(profileWith({iccpChunk(gray)}, 0), gray);
  EXPECT_EQ(profileWith({iccpChunk(gray)}, 4), gray);
}

TEST(PngProfile, IsIgnoredWhenItBelongsToAnotherModel) {
  EXPECT_TRUE(profileWith({iccpChunk(testing::wideRgbProfile())}, 0).empty());
  EXPECT_TRUE(profileWith({iccpChunk(testing::grayProfile(1.8))}).empty());
  EXPECT_TRUE(profileWith({iccpChunk(testing::inkProfile())}).empty());
}

TEST(PngProfile, IsIgnoredWhenItCannotBeRead) {
  Bytes damaged = testing::wideRgbProfile();
  damaged.resize(damaged.size() / 2);
  EXPECT_TRUE(profileWith({iccpChunk(damaged)}).empty());
  EXPECT_TRUE(profileWith({iccpChunk(Bytes(1000, 7))}).empty());
  EXPECT_TRUE(profileWith({pngChunk("iCCP", {'p', 0, 0, 1, 2, 3, 4})}).empty());
  EXPECT_TRUE(profileWith({pngChunk("iCCP", {})}).empty());
}

TEST(PngProfile, IsIgnoredWhenItClaimsMoreThanItMay) {
  // A profile of zeros whose header claims its 64 MiB, in about 64 KiB.
  Bytes bomb = testing::wideRgbProfile();
  bomb.resize(64 << 20);
  bomb[0] = 4, bomb[1] = bomb[2] = bomb[3] = 0;
  EXPECT_TRUE(profileWith({iccpChunk(bomb)}).empty());
}

TEST(PngProfile, IsSrgbWhenTheFileSaysSo) {
  EXPECT_EQ(profileWith({kSrgb}), srgbProfile());
  EXPECT_EQ(profileWith({kSrgb}, 3), srgbProfile());
  EXPECT_EQ(profileWith({kSrgb, kSrgbGamma, kSrgbPrimaries}), srgbProfile());
  EXPECT_EQ(profileWith({kSrgbGamma}), srgbProfile());
  EXPECT_EQ(profileWith({kSrgbGamma, kSrgbPrimaries}), srgbProfile());
  EXPECT_EQ(profileWith({kSrgbPrimaries}), srgbProfile());
  EXPECT_TRUE(profileWith({}).empty());
}

TEST(PngProfile, IsNoneForGrayWithTheSrgbCurve) {
  EXPECT_TRUE(profileWith({kSrgb}, 0).empty());
  EXPECT_TRUE(profileWith({kSrgbGamma, kSrgbPrimaries}, 0).empty());
  EXPECT_TRUE(profileWith({kWidePrimaries}, 0).empty());
}

TEST(PngProfile, IsMadeFromGammaAndPrimaries) {
  const Bytes linear = pngChunk("gAMA", numbers({100000}));
  EXPECT_EQ(profileWith({linear}), rgbProfile(kSrgbChromaticities, 1.0));
  EXPECT_EQ(profileWith({linear}, 3), rgbProfile(kSrgbChromaticities, 1.0));
  EXPECT_EQ(profileWith({linear, kSrgbPrimaries}, 4), grayProfile(1.0));
  Chromaticities wide = kSrgbChromaticities;
  wide.greenX = 0.21;
  wide.greenY = 0.71;
  EXPECT_EQ(profileWith({kWidePrimaries}), rgbProfile(wide, std::nullopt));
  EXPECT_EQ(profileWith({kSrgbGamma, kWidePrimaries}), rgbProfile(wide, std::nullopt));
  EXPECT_EQ(profileWith({linear, kWidePrimaries}), rgbProfile(wide, 1.0));
  EXPECT_TRUE(profileFits(rgbProfile(wide, 1.0), ColorModel::Rgb));
}

TEST(PngProfile, IsNoneWhenPrimariesOrGammaMakeNoSense) {
  EXPECT_TRUE(profileWith({pngChunk("gAMA", numbers({0}))}).empty());
  EXPECT_TRUE(profileWith({pngChunk("gAMA", numbers({100}))}).empty());
  const Bytes flat =
      pngChunk("cHRM", numbers({31270, 32900, 30000, 30000, 30000, 30000, 30000, 30000}));
  EXPECT_TRUE(profileWith({flat}).empty());
}

}  // namespace
}  // namespace vantrel
