#include "model/image_encoding_settings.h"

#include <gtest/gtest.h>

#include <limits>

namespace vantrel {
namespace {

using Format = ImageEncodingSettings::Format;

TEST(ImageEncodingSettings, ArePngOfHighQualityOnWhiteAtFirst) {
  const ImageEncodingSettings settings;
  EXPECT_EQ(settings.format, Format::png);
  EXPECT_EQ(settings.quality, 0.9);
  EXPECT_EQ(settings.background, ImageBackground(1, 1, 1));
}

TEST(ImageEncodingSettings, ListTheirFormatsWithLabelsAndExtensions) {
  EXPECT_EQ(ImageEncodingSettings::kFormats, (std::array{Format::png, Format::jpeg}));
  EXPECT_EQ(ImageEncodingSettings::rawValue(Format::png), QStringLiteral("PNG"));
  EXPECT_EQ(ImageEncodingSettings::rawValue(Format::jpeg), QStringLiteral("JPEG"));
  EXPECT_EQ(ImageEncodingSettings::fileExtension(Format::png), QStringLiteral("png"));
  EXPECT_EQ(ImageEncodingSettings::fileExtension(Format::jpeg), QStringLiteral("jpg"));
}

TEST(ImageEncodingSettings, DifferInAnyField) {
  const ImageEncodingSettings settings;
  EXPECT_NE(settings, (ImageEncodingSettings{Format::jpeg, 0.9, {}}));
  EXPECT_NE(settings, (ImageEncodingSettings{Format::png, 0.8, {}}));
  EXPECT_NE(settings, (ImageEncodingSettings{Format::png, 0.9, {1, 1, 0.5}}));
}

TEST(ImageBackground, KeepsEveryEightBitChannel) {
  for (int value = 0; value < 256; ++value) {
    const int half = value / 2;
    const ImageBackground background(QColor(value, 255 - value, half));
    EXPECT_EQ(background, ImageBackground(value / 255.0, (255 - value) / 255.0, half / 255.0));
    EXPECT_EQ(ImageBackground(background.color()), background);
    EXPECT_EQ(background.color().red(), value);
  }
}

TEST(ImageBackground, DropsTheAlpha) {
  EXPECT_EQ(ImageBackground(QColor(0, 0, 0, 0)), ImageBackground(0, 0, 0));
  EXPECT_EQ(ImageBackground(QColor(255, 0, 0, 128)), ImageBackground(1, 0, 0));
  EXPECT_EQ(ImageBackground(0, 0, 0).color().alpha(), 255);
}

TEST(ImageBackground, ConvertsOtherModelsToSrgb) {
  EXPECT_EQ(ImageBackground(QColor::fromHsv(120, 255, 255)), ImageBackground(0, 1, 0));
  EXPECT_EQ(ImageBackground(QColor::fromCmyk(0, 255, 255, 0)), ImageBackground(1, 0, 0));
  EXPECT_EQ(ImageBackground(QColor::fromRgbF(2, 0, -1)), ImageBackground(1, 0, 0));
}

TEST(ImageBackground, IsWhiteForWhatIsNoColour) {
  EXPECT_EQ(ImageBackground(QColor()), ImageBackground(1, 1, 1));
}

TEST(ImageBackground, ShowsChannelsOutOfRangeAtTheNearestEnd) {
  const double nan = std::numeric_limits<double>::quiet_NaN();
  EXPECT_EQ(ImageBackground(7, -7, nan).color(), QColor(255, 0, 0));
}

}  // namespace
}  // namespace vantrel
