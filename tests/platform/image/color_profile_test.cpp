#include "platform/image/color_profile.h"

#include <gmock/gmock.h>
#include <lcms2.h>

#include <thread>

#include "support/icc_maker.h"

namespace vantrel {
namespace {

using ::testing::ElementsAre;
using ::testing::Optional;

Bitmap onePixel(PixelLayout layout, std::vector<uint8_t> profile = {}) {
  std::shared_ptr<std::byte> pixels(new std::byte[32]{}, std::default_delete<std::byte[]>());
  BitmapColor color;
  color.iccProfile = std::move(profile);
  return Bitmap(1, 1, layout, pixels, 32, std::move(color));
}

TEST(ColorProfile, PictureWithoutProfileIsNamedAfterItsModel) {
  EXPECT_THAT(colorProfileName(onePixel({ColorModel::Rgb})),
              Optional(std::string("sRGB IEC61966-2.1")));
  EXPECT_THAT(colorProfileName(onePixel({ColorModel::Indexed})),
              Optional(std::string("sRGB IEC61966-2.1")));
  EXPECT_THAT(colorProfileName(onePixel({ColorModel::Gray})),
              Optional(std::string("Generic Gray")));
  EXPECT_THAT(colorProfileName(onePixel({ColorModel::Cmyk})),
              Optional(std::string("Generic CMYK")));
  EXPECT_THAT(colorProfileName(onePixel({ColorModel::Lab})), Optional(std::string("Generic Lab")));
}

TEST(ColorProfile, BlanksAtTheEndOfANameAreDropped) {
  EXPECT_THAT(colorProfileName(onePixel({}, testing::wideRgbProfile(L"  Wide space \t\r\n "))),
              Optional(std::string("  Wide space")));
}

TEST(ColorProfile, NameIsUtf8) {
  EXPECT_THAT(colorProfileName(onePixel({}, testing::wideRgbProfile(L"Größe 色"))),
              Optional(std::string("Gr\xC3\xB6\xC3\x9F"
                                   "e \xE8\x89\xB2")));
}

TEST(ColorProfile, ProfileWithoutANameOrWithoutSenseHasNone) {
  EXPECT_EQ(colorProfileName(onePixel({}, testing::wideRgbProfile(L"   "))), std::nullopt);
  EXPECT_EQ(colorProfileName(onePixel({}, {1, 2, 3})), std::nullopt);
  std::vector<uint8_t> cut = testing::wideRgbProfile();
  cut.resize(130);
  EXPECT_EQ(colorProfileName(onePixel({}, cut)), std::nullopt);
}

TEST(ColorProfile, FitsOnlyTheModelOfItsColourSpace) {
  const auto fitting = [](const std::vector<uint8_t>& profile) {
    std::vector<ColorModel> models;
    for (const ColorModel model : {ColorModel::Gray, ColorModel::Rgb, ColorModel::Cmyk,
                                   ColorModel::Lab, ColorModel::Indexed}) {
      if (profileFits(profile, model)) models.push_back(model);
    }
    return models;
  };
  EXPECT_THAT(fitting(testing::wideRgbProfile()),
              ElementsAre(ColorModel::Rgb, ColorModel::Indexed));
  EXPECT_THAT(fitting(testing::grayProfile(1.8)), ElementsAre(ColorModel::Gray));
  EXPECT_THAT(fitting(testing::inkProfile()), ElementsAre(ColorModel::Cmyk));
  EXPECT_THAT(fitting(testing::takeProfileBytes(cmsCreateLab4Profile(nullptr))),
              ElementsAre(ColorModel::Lab));
  EXPECT_THAT(fitting({}), ElementsAre());
  EXPECT_THAT(fitting(std::vector<uint8_t>(500, 'x')), ElementsAre());
}

TEST(ColorProfile, ProfileWithoutTheTagsThatPixelsNeedDoesNotFit) {
  cmsHPROFILE profile = cmsCreateProfilePlaceholder(nullptr);
  cmsSetProfileVersion(profile, 4.3);
  cmsSetDeviceClass(profile, cmsSigDisplayClass);
  cmsSetColorSpace(profile, cmsSigRgbData);
  cmsSetPCS(profile, cmsSigXYZData);
  testing::describe(profile, L"Hollow");
  EXPECT_FALSE(profileFits(testing::takeProfileBytes(profile), ColorModel::Rgb));
}

TEST(ColorProfile, DeviceLinkDoesNotFit) {
  cmsHPROFILE link = cmsCreateInkLimitingDeviceLink(cmsSigCmykData, 300);
  EXPECT_FALSE(profileFits(testing::takeProfileBytes(link), ColorModel::Cmyk));
}

TEST(ColorProfile, DamagedProfilesAreRefusedWithoutHarm) {
  const std::vector<uint8_t> whole = testing::inkProfile();
  for (size_t size = 0; size < whole.size(); size += 97) {
    const std::vector<uint8_t> cut(whole.begin(),
                                   whole.begin() + static_cast<std::ptrdiff_t>(size));
    EXPECT_FALSE(profileFits(cut, ColorModel::Cmyk)) << size;
  }
}

TEST(ColorProfile, SrgbProfileIsNamedAndDated) {
  const std::vector<uint8_t>& profile = srgbProfile();
  ASSERT_GT(profile.size(), 128U);
  EXPECT_LT(profile.size(), 1000U);
  EXPECT_THAT(std::vector<uint8_t>(profile.begin() + 24, profile.begin() + 36),
              ElementsAre(0x07, 0xD0, 0, 1, 0, 1, 0, 0, 0, 0, 0, 0));
  EXPECT_TRUE(profileFits(profile, ColorModel::Rgb));
  EXPECT_THAT(colorProfileName(onePixel({}, profile)), Optional(std::string("sRGB IEC61966-2.1")));
}

TEST(ColorProfile, SrgbColourIsExpressedInAnotherSpace) {
  EXPECT_THAT(srgbColorIn(testing::wideRgbProfile(), 1, 128 / 255.0, 0), ElementsAre(227, 127, 30));
  EXPECT_THAT(srgbColorIn(testing::wideRgbProfile(), 1, 1, 1), ElementsAre(255, 255, 255));
  EXPECT_THAT(srgbColorIn(testing::wideRgbProfile(), 0, 0, 0), ElementsAre(0, 0, 0));
}

TEST(ColorProfile, SrgbColourInSrgbKeepsItsValueRoundedHalfUp) {
  EXPECT_THAT(srgbColorIn({}, 1, 0.5, 0), ElementsAre(255, 128, 0));
  EXPECT_THAT(srgbColorIn({}, 1.7, -0.3, 100.4 / 255), ElementsAre(255, 0, 100));
  EXPECT_THAT(srgbColorIn(srgbProfile(), 200 / 255.0, 100 / 255.0, 3 / 255.0),
              ElementsAre(200, 100, 3));
  EXPECT_THAT(srgbColorIn(testing::grayProfile(2), 1, 0, 0), ElementsAre(255, 0, 0));
}

TEST(ColorProfile, ThreadsDoNotDisturbEachOther) {
  const std::vector<uint8_t> wide = testing::wideRgbProfile();
  std::vector<std::jthread> threads;
  std::array<int, 4> agreed{};
  for (int& count : agreed) {
    threads.emplace_back([&wide, &count] {
      for (int i = 0; i < 50; ++i) {
        const bool broken = profileFits({1, 2, 3}, ColorModel::Rgb);
        const auto color = srgbColorIn(wide, 1, 128 / 255.0, 0);
        if (!broken && color == std::array<uint8_t, 3>{227, 127, 30}) ++count;
      }
    });
  }
  threads.clear();
  EXPECT_THAT(agreed, ElementsAre(50, 50, 50, 50));
}

}  // namespace
}  // namespace vantrel
