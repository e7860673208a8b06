#include "export/image_exporter.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <filesystem>
#include <limits>
#include <optional>
#include <stop_token>
#include <string>
#include <utility>
#include <vector>

#include "base/cancelled.h"
#include "media/image_error.h"
#include "platform/image/color_profile.h"
#include "platform/image/image_writer.h"
#include "support/bitmap_maker.h"
#include "support/icc_maker.h"
#include "support/image_probe.h"
#include "support/temporary_folder.h"
#include "support/write_failures.h"

namespace vantrel {
namespace {

using testing::JpegContents;
using testing::makeBitmap;
using testing::PngContents;
using testing::scatter;
using Format = ImageEncodingSettings::Format;

constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kNotANumber = std::numeric_limits<double>::quiet_NaN();
constexpr PixelLayout kRgb8{ColorModel::Rgb, SampleFormat::UInt8, false};
constexpr PixelLayout kRgba8{ColorModel::Rgb, SampleFormat::UInt8, true};

ImageSource sourceOf(Bitmap bitmap) {
  ImageSource source;
  source.image = std::move(bitmap);
  return source;
}

ImageEncodingSettings settingsFor(Format format, double quality = 1,
                                  ImageBackground background = {}) {
  ImageEncodingSettings settings;
  settings.format = format;
  settings.quality = quality;
  settings.background = background;
  return settings;
}

class ImageExporterTest : public ::testing::Test {
 protected:
  std::filesystem::path path() const { return m_folder / "export"; }

  void write(const ImageSource& source, const QRectF& crop, const ImageEncodingSettings& settings) {
    ImageExporter::write(source, path(), crop, settings);
  }
  /// Absent when the export succeeds.
  std::optional<ImageError::Case> errorOf(const ImageSource& source, const QRectF& crop,
                                          const ImageEncodingSettings& settings = {}) {
    try {
      write(source, crop, settings);
    } catch (const ImageError& error) {
      return error.error();
    }
    return std::nullopt;
  }
  std::string bytesOf(const ImageSource& source, const QRectF& crop,
                      const ImageEncodingSettings& settings) {
    write(source, crop, settings);
    return testing::readFile(path());
  }

  testing::TemporaryFolder m_folder;
};

TEST_F(ImageExporterTest, CopiesAPngWholeWithItsAlphaWhateverTheBackground) {
  const ImageSource source = sourceOf(makeBitmap(17, 11, kRgba8, scatter));
  const QRectF whole(0, 0, 17, 11);
  const std::string bytes = bytesOf(source, whole, settingsFor(Format::png));
  const PngContents png = testing::readPngFile(path());
  EXPECT_EQ(png.colorType, 6);
  for (int64_t y = 0; y < 11; ++y) {
    for (int64_t x = 0; x < 17; ++x) {
      for (int c = 0; c < 4; ++c) {
        ASSERT_EQ(png.pixels[static_cast<size_t>((y * 17 + x) * 4 + c)], scatter(x, y, c) & 0xFF);
      }
    }
  }
  EXPECT_EQ(bytesOf(source, whole, settingsFor(Format::png, 0, {1, 0, 0})), bytes);
}

TEST_F(ImageExporterTest, CutsTheRectangleOut) {
  const ImageSource source = sourceOf(makeBitmap(50, 40, kRgb8, scatter));
  write(source, QRectF(13, 7, 21, 9), settingsFor(Format::png));
  const PngContents png = testing::readPngFile(path());
  ASSERT_EQ(png.width, 21U);
  ASSERT_EQ(png.height, 9U);
  EXPECT_EQ(png.pixels.front(), scatter(13, 7, 0) & 0xFF);
  EXPECT_EQ(png.pixels.back(), scatter(33, 15, 2) & 0xFF);
}

TEST_F(ImageExporterTest, TakesASinglePixelAtEveryCorner) {
  const ImageSource source = sourceOf(makeBitmap(9, 5, kRgb8, scatter));
  for (const QRectF& crop :
       {QRectF(0, 0, 1, 1), QRectF(8, 0, 1, 1), QRectF(0, 4, 1, 1), QRectF(8, 4, 1, 1)}) {
    write(source, crop, settingsFor(Format::png));
    const PngContents png = testing::readPngFile(path());
    ASSERT_EQ(png.pixels.size(), 3U);
    EXPECT_EQ(png.pixels[0],
              scatter(static_cast<int64_t>(crop.x()), static_cast<int64_t>(crop.y()), 0) & 0xFF);
    write(source, crop, settingsFor(Format::jpeg));
    EXPECT_EQ(testing::readJpegFile(path()).width, 1);
  }
}

TEST_F(ImageExporterTest, RefusesCropsThatAreNotWholePixelsInside) {
  const ImageSource source = sourceOf(makeBitmap(20, 10, kRgb8, scatter));
  const std::vector<QRectF> illegal{
      {0, 0, 0, 10},          {0, 0, 20, 0},          {0, 0, 0.5, 10},
      {0, 0, 10, 0.999},      {0, 0, -1, 5},          {5, 5, -3, -3},
      {0.25, 0, 5, 5},        {0, 0.5, 5, 5},         {0, 0, 5.5, 5},
      {0, 0, 5, 5.5},         {0.5, 0, 4.5, 5},       {0, 0, 21, 10},
      {0, 0, 20, 11},         {1, 0, 20, 10},         {0, 1, 20, 10},
      {-1, 0, 5, 5},          {0, -1, 5, 5},          {20, 0, 1, 1},
      {0, 10, 1, 1},          {0, 0, kInfinity, 5},   {kNotANumber, 0, 5, 5},
      {0, kNotANumber, 5, 5}, {0, 0, kNotANumber, 5}, {0, 0, 5, kNotANumber},
      {-kInfinity, 0, 5, 5},  {0, kInfinity, 5, 5},   {1e300, 0, 5, 5}};
  for (const QRectF& crop : illegal) {
    for (const Format format : ImageEncodingSettings::kFormats) {
      EXPECT_EQ(errorOf(source, crop, settingsFor(format)), ImageError::invalidCrop)
          << crop.x() << ' ' << crop.y() << ' ' << crop.width() << ' ' << crop.height();
    }
  }
  EXPECT_TRUE(testing::namesIn(m_folder.path()).empty());
  EXPECT_EQ(errorOf(source, QRectF(0, 0, 20, 10)), std::nullopt);
}

TEST_F(ImageExporterTest, RefusesEveryCropOfAnEmptyImage) {
  EXPECT_EQ(errorOf(ImageSource(), QRectF(0, 0, 1, 1)), ImageError::invalidCrop);
}

TEST_F(ImageExporterTest, SaysInItsWordsWhatIsWrongWithACrop) {
  EXPECT_STREQ(ImageError(ImageError::invalidCrop).what(),
               "The crop must stay inside the image and contain at least one pixel.");
  EXPECT_STREQ(ImageError(ImageError::encodingFailed).what(),
               "The cropped image could not be exported.");
}

TEST_F(ImageExporterTest, LaysAJpegOverTheBackground) {
  // Clear on the left, half covered by green on the right.
  const auto half = [](int64_t x, int64_t, int channel) -> double {
    if (channel == 3) return x < 16 ? 0 : 128;
    return channel == 1 ? 255 : 0;
  };
  write(sourceOf(makeBitmap(32, 16, kRgba8, half)), QRectF(0, 0, 32, 16),
        settingsFor(Format::jpeg, 1, {1, 0, 0}));
  const JpegContents jpeg = testing::readJpegFile(path());
  EXPECT_EQ(jpeg.channels, 3);
  const std::array<int, 3> clear{255, 0, 0};
  const std::array<int, 3> mixed{127, 128, 0};
  for (int c = 0; c < 3; ++c) {
    EXPECT_NEAR(jpeg.at(4, 8, c), clear[static_cast<size_t>(c)], 2);
    EXPECT_NEAR(jpeg.at(28, 8, c), mixed[static_cast<size_t>(c)], 2);
  }
}

TEST_F(ImageExporterTest, MakesAnSrgbJpegOfGreyWithAlpha) {
  const Bitmap gray =
      makeBitmap(16, 16, {ColorModel::Gray, SampleFormat::UInt8, true},
                 [](int64_t, int64_t, int channel) { return channel ? 0.0 : 80.0; });
  write(sourceOf(gray), QRectF(0, 0, 16, 16), settingsFor(Format::jpeg, 1, {0, 0, 1}));
  const JpegContents jpeg = testing::readJpegFile(path());
  EXPECT_EQ(jpeg.channels, 3);
  EXPECT_EQ(jpeg.iccProfile, srgbProfile());
  EXPECT_NEAR(jpeg.at(5, 5, 2), 255, 2);
}

TEST_F(ImageExporterTest, StaysInAWideSpace) {
  const std::vector<uint8_t> profile = testing::wideRgbProfile();
  const Bitmap clear =
      makeBitmap(16, 16, kRgba8, [](int64_t, int64_t, int) { return 0.0; }, {profile, {}});
  write(sourceOf(clear), QRectF(0, 0, 16, 16), settingsFor(Format::jpeg, 1, {1, 0, 0}));
  const JpegContents jpeg = testing::readJpegFile(path());
  EXPECT_EQ(jpeg.iccProfile, profile);
  const std::array<uint8_t, 3> red = srgbColorIn(profile, 1, 0, 0);
  for (int c = 0; c < 3; ++c)
    EXPECT_NEAR(jpeg.at(5, 5, c), red[static_cast<size_t>(c)], 2);
}

TEST_F(ImageExporterTest, ReadsTheBackgroundOnlyForAJpegOfAPictureWithAlpha) {
  const ImageSource opaque = sourceOf(makeBitmap(20, 20, kRgb8, scatter));
  const QRectF crop(1, 1, 18, 18);
  EXPECT_EQ(bytesOf(opaque, crop, settingsFor(Format::jpeg, 0.8, {1, 0, 0})),
            bytesOf(opaque, crop, settingsFor(Format::jpeg, 0.8, {0, 1, 0})));
}

TEST_F(ImageExporterTest, LimitsTheQuality) {
  const ImageSource source = sourceOf(makeBitmap(60, 60, kRgb8, scatter));
  const QRectF crop(0, 0, 60, 60);
  const auto bytesAt = [&](double quality) {
    return bytesOf(source, crop, settingsFor(Format::jpeg, quality));
  };
  EXPECT_EQ(bytesAt(1.7), bytesAt(1.0));
  EXPECT_EQ(bytesAt(-0.2), bytesAt(0.0));
  EXPECT_NE(bytesAt(0.0), bytesAt(1.0));
}

TEST_F(ImageExporterTest, TurnsEveryFailureOfWritingIntoOneError) {
  const ImageSource source = sourceOf(makeBitmap(1000, 1000, kRgb8, scatter));
  const QRectF crop(0, 0, 1000, 1000);
  for (const Format format : ImageEncodingSettings::kFormats) {
    const ImageEncodingSettings settings = settingsFor(format);
    for (const std::filesystem::path& to :
         {std::filesystem::path("/dev/full"), m_folder / "no/file", m_folder.path()}) {
      try {
        ImageExporter::write(source, to, crop, settings);
        ADD_FAILURE() << to << " was written";
      } catch (const ImageError& error) {
        EXPECT_EQ(error.error(), ImageError::encodingFailed);
      }
    }
    const testing::FileSizeLimit limit(100000);
    EXPECT_EQ(errorOf(source, crop, settings), ImageError::encodingFailed);
  }
}

TEST_F(ImageExporterTest, RefusesAJpegBeyondTheLimitOfTheFormat) {
  const ImageSource source =
      sourceOf(makeBitmap(65501, 1, {ColorModel::Gray, SampleFormat::UInt8, false}, scatter));
  const QRectF crop(0, 0, 65501, 1);
  EXPECT_EQ(errorOf(source, crop, settingsFor(Format::jpeg)), ImageError::encodingFailed);
  EXPECT_EQ(errorOf(source, crop, settingsFor(Format::png)), std::nullopt);
}

TEST_F(ImageExporterTest, LooksForCancellationBeforeTheCrop) {
  std::stop_source stop;
  stop.request_stop();
  const ImageSource source = sourceOf(makeBitmap(4, 4, kRgb8, scatter));
  EXPECT_THROW(ImageExporter::write(source, path(), QRectF(0, 0, 9, 9), {}, stop.get_token()),
               Cancelled);
  EXPECT_TRUE(testing::namesIn(m_folder.path()).empty());
}

TEST_F(ImageExporterTest, IsCancelledWhileItEncodes) {
  const ImageSource source = sourceOf(makeBitmap(2000, 2000, kRgb8, scatter));
  for (const Format format : ImageEncodingSettings::kFormats) {
    std::stop_source stop;
    const std::string name = ImageEncodingSettings::rawValue(format).toStdString();
    testing::WatchedPipe pipe(m_folder / name, [&] { stop.request_stop(); });
    EXPECT_THROW(ImageExporter::write(source, pipe.path(), QRectF(0, 0, 2000, 2000),
                                      settingsFor(format), stop.get_token()),
                 Cancelled);
  }
}

TEST_F(ImageExporterTest, LooksForCancellationOnceMoreWhenTheFileIsComplete) {
  // One band of rows, so that the encoder looks only before it, and more bytes than a pipe holds,
  // so that it is not done before the request.
  const ImageSource source = sourceOf(makeBitmap(280, 280, kRgb8, scatter));
  {
    std::stop_source stop;
    testing::WatchedPipe pipe(m_folder / "encoder", [&] { stop.request_stop(); });
    EXPECT_NO_THROW(writeJpeg(source.image, source.image.bounds(), pipe.path(), 1, {1, 1, 1},
                              stop.get_token()));
  }
  std::stop_source stop;
  testing::WatchedPipe pipe(m_folder / "exporter", [&] { stop.request_stop(); });
  EXPECT_THROW(ImageExporter::write(source, pipe.path(), QRectF(0, 0, 280, 280),
                                    settingsFor(Format::jpeg), stop.get_token()),
               Cancelled);
}

}  // namespace
}  // namespace vantrel
