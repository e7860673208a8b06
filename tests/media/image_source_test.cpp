#include "media/image_source.h"

#include <gtest/gtest.h>

#include "base/cancelled.h"
#include "support/heif_maker.h"
#include "support/icc_maker.h"
#include "support/image_makers.h"
#include "support/temporary_folder.h"
#include "support/tiff_maker.h"

namespace vantrel {
namespace {

using testing::Bytes;
using testing::JpegSpec;
using testing::pngChunk;
using testing::PngSpec;
using testing::saveBytes;

PngSpec png(int colorType = 2) {
  PngSpec spec;
  spec.colorType = colorType;
  spec.sample = [](uint32_t, uint32_t, int) { return uint16_t{255}; };
  if (colorType == 3) {
    spec.before = {pngChunk("PLTE", {1, 2, 3})};
    spec.sample = [](uint32_t, uint32_t, int) { return uint16_t{0}; };
  }
  return spec;
}

JpegSpec jpeg(int width = 40, int height = 30, int channels = 1) {
  JpegSpec spec;
  spec.width = width;
  spec.height = height;
  spec.channels = channels;
  spec.sample = [](int x, int y, int) { return static_cast<uint8_t>(x + y); };
  return spec;
}

class ImageSourceTest : public ::testing::Test {
 protected:
  ImageSource load(const Bytes& bytes, const std::string& name = "image") {
    saveBytes(m_folder / name, bytes);
    return ImageSource::load(m_folder / name);
  }

  void expectError(const Bytes& bytes, ImageError::Case error) {
    try {
      load(bytes);
      ADD_FAILURE() << "it was loaded";
    } catch (const ImageError& thrown) {
      EXPECT_EQ(thrown, ImageError(error)) << thrown.what();
    }
  }

  static Bytes bytesOf(const std::string& text) { return {text.begin(), text.end()}; }

  testing::TemporaryFolder m_folder;
};

TEST_F(ImageSourceTest, HoldsThePictureAndItsFacts) {
  const Bytes file = testing::makePng(png());
  const ImageSource source = load(file);
  EXPECT_EQ(source.image.bounds(), (PixelRect{0, 0, 4, 3}));
  EXPECT_EQ(source.type, ContentType::png());
  EXPECT_EQ(source.bytes, static_cast<int64_t>(file.size()));
  EXPECT_EQ(source.colorProfileName, QStringLiteral("sRGB IEC61966-2.1"));
  EXPECT_EQ(source.formatName(), QStringLiteral("PNG"));
  EXPECT_FALSE(source.hasTransparency());
}

TEST_F(ImageSourceTest, StandsUpright) {
  JpegSpec spec = jpeg(4000, 3000);
  spec.segments = {{1, testing::exifSegment(6)}};
  const Bytes file = testing::makeJpeg(spec);
  const ImageSource source = load(file);
  EXPECT_EQ(source.image.bounds(), (PixelRect{0, 0, 3000, 4000}));
  EXPECT_EQ(source.type, ContentType::jpeg());
  EXPECT_EQ(source.bytes, static_cast<int64_t>(file.size()));
}

TEST_F(ImageSourceTest, HasTheTypeOfItsContentAndNotOfItsName) {
  const ImageSource source = load(testing::makeJpeg(jpeg()), "photo.png");
  EXPECT_EQ(source.type, ContentType::jpeg());
  EXPECT_EQ(source.formatName(), QStringLiteral("JPEG"));
}

TEST_F(ImageSourceTest, RefusesOtherTypes) {
  expectError(bytesOf("GIF89a............."), ImageError::unsupported);
  expectError(bytesOf("BM................."), ImageError::unsupported);
  expectError(bytesOf("RIFF....WEBPVP8L..."), ImageError::unsupported);
  expectError(bytesOf("plain text"), ImageError::unsupported);
  expectError({}, ImageError::unsupported);
}

TEST_F(ImageSourceTest, RefusesWhatIsNoFile) {
  EXPECT_THROW((void)ImageSource::load(m_folder.path()), ImageError);
  EXPECT_THROW((void)ImageSource::load(m_folder / "missing.png"), ImageError);
}

TEST_F(ImageSourceTest, RefusesAnimations) {
  PngSpec spec = png();
  spec.before = {pngChunk("acTL", {0, 0, 0, 2, 0, 0, 0, 0})};
  expectError(testing::makePng(spec), ImageError::multipleImages);
}

TEST_F(ImageSourceTest, RefusesPages) {
  testing::TiffSpec page;
  page.sample = [](uint32_t x, uint32_t y, int) { return x + y; };
  testing::saveTiff(m_folder / "one.png", {page});
  const ImageSource source = ImageSource::load(m_folder / "one.png");
  EXPECT_EQ(source.type, ContentType::tiff());
  EXPECT_EQ(source.formatName(), QStringLiteral("TIFF"));
  testing::saveTiff(m_folder / "two.tif", {page, page});
  expectError(testing::loadBytes(m_folder / "two.tif"), ImageError::multipleImages);
}

TEST_F(ImageSourceTest, LoadsHeicWithItsFactsButNotItsFurtherPictures) {
  if (!testing::canMakeHeif()) GTEST_SKIP() << "no encoder for HEIC";
  testing::HeifSpec picture;
  picture.sample = [](int x, int y, int) { return static_cast<uint16_t>(x + y); };
  // The file format turns the picture; its EXIF data must not turn it again.
  picture.orientation = 6;
  picture.exif = testing::exifBlock(6);
  const std::filesystem::path path = m_folder / "one.jpg";
  testing::saveHeif(path, {picture});
  const ImageSource source = ImageSource::load(path);
  EXPECT_EQ(source.image.bounds(), (PixelRect{0, 0, 12, 20}));
  EXPECT_EQ(source.type, ContentType::heic());
  EXPECT_EQ(source.formatName(), QStringLiteral("HEIC"));
  EXPECT_EQ(source.bytes, static_cast<int64_t>(std::filesystem::file_size(path)));
  testing::saveHeif(path, {picture, picture});
  expectError(testing::loadBytes(path), ImageError::multipleImages);
}

TEST_F(ImageSourceTest, CountsBeforeItDecodes) {
  PngSpec spec = png();
  spec.before = {pngChunk("acTL", {0, 0, 0, 2, 0, 0, 0, 0})};
  expectError(testing::makePngAround(spec, {1, 2, 3}), ImageError::multipleImages);
}

TEST_F(ImageSourceTest, RefusesDamage) {
  expectError(testing::makePngAround(png(), {1, 2, 3}), ImageError::unreadable);
  Bytes photo = testing::makeJpeg(jpeg());
  photo.resize(photo.size() / 2);
  expectError(photo, ImageError::unreadable);
}

TEST_F(ImageSourceTest, RefusesPicturesThatTakeTooMuchMemory) {
  PngSpec spec = png(6);
  spec.depth = 16;
  const Bytes data = testing::deflated(testing::pngRows(spec));
  spec.width = spec.height = 30000;
  expectError(testing::makePngAround(spec, data), ImageError::unreadable);
}

TEST_F(ImageSourceTest, StopsWhenAskedTo) {
  saveBytes(m_folder / "image", testing::makePng(png()));
  std::stop_source stop;
  stop.request_stop();
  EXPECT_THROW((void)ImageSource::load(m_folder / "image", stop.get_token()), Cancelled);
}

TEST_F(ImageSourceTest, NamesItsColors) {
  EXPECT_EQ(load(testing::makePng(png(0))).colorProfileName, QStringLiteral("Generic Gray"));
  EXPECT_EQ(load(testing::makeJpeg(jpeg(8, 8, 4))).colorProfileName,
            QStringLiteral("Generic CMYK"));
  PngSpec wide = png();
  wide.before = {testing::iccpChunk(testing::wideRgbProfile(L"Breit \u00e9"))};
  EXPECT_EQ(load(testing::makePng(wide)).colorProfileName, QString::fromUtf8("Breit \u00e9"));
}

TEST_F(ImageSourceTest, LoadsWithoutANameOfItsColors) {
  PngSpec nameless = png();
  nameless.before = {testing::iccpChunk(testing::wideRgbProfile(L"  "))};
  const ImageSource source = load(testing::makePng(nameless));
  EXPECT_EQ(source.colorProfileName, std::nullopt);
  EXPECT_FALSE(source.image.color().iccProfile.empty());
}

TEST_F(ImageSourceTest, IsTransparentByItsLayoutAlone) {
  EXPECT_TRUE(load(testing::makePng(png(6))).hasTransparency());
  EXPECT_TRUE(load(testing::makePng(png(4))).hasTransparency());
  EXPECT_FALSE(load(testing::makePng(png(3))).hasTransparency());
  PngSpec palette = png(3);
  palette.before.push_back(pngChunk("tRNS", {255}));
  EXPECT_TRUE(load(testing::makePng(palette)).hasTransparency());
}

TEST_F(ImageSourceTest, SharesItsPixelsWithCopies) {
  const ImageSource source = load(testing::makePng(png()));
  const ImageSource copy = source;
  EXPECT_EQ(copy.image.row(0), source.image.row(0));
}

TEST(ImageSource, NamesEveryFormat) {
  ImageSource source;
  EXPECT_EQ(source.formatName(), QStringLiteral("Image"));
  EXPECT_EQ(source.bytes, 0);
  source.type = ContentType::tiff();
  EXPECT_EQ(source.formatName(), QStringLiteral("TIFF"));
  source.type = ContentType::heic();
  EXPECT_EQ(source.formatName(), QStringLiteral("HEIC"));
  source.type = ContentType::heif();
  EXPECT_EQ(source.formatName(), QStringLiteral("HEIF"));
}

TEST(ImageSource, OffersItsTypesInOrder) {
  const std::vector<ContentType> expected = {ContentType::png(), ContentType::jpeg(),
                                             ContentType::heic(), ContentType::heif(),
                                             ContentType::tiff()};
  EXPECT_EQ(ImageSource::supportedTypes(), expected);
  EXPECT_EQ(&ImageSource::supportedTypes(), &ImageSource::supportedTypes());
}

}  // namespace
}  // namespace vantrel
