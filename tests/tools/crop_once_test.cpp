#include <gmock/gmock.h>

#include <QJsonDocument>
#include <QJsonObject>
#include <cstring>

#include "media/image_source.h"
#include "support/image_makers.h"
#include "support/temporary_folder.h"
#include "tools/crop_once_process.h"

namespace vantrel {
namespace {

using testing::cropOnce;
using testing::CropOnceProcess;
using testing::CropOnceResult;
using ::testing::HasSubstr;
using testing::namesIn;
using ::testing::StartsWith;
using testing::TemporaryFolder;
using Names = std::vector<std::string>;

uint16_t sampleOf(uint32_t x, uint32_t y, int channel) {
  return static_cast<uint16_t>((x * 7 + y * 31 + static_cast<uint32_t>(channel) * 101) & 0xff);
}

/// RGB, or RGB with alpha.
void savePng(const std::filesystem::path& path, int channels = 3, uint32_t width = 23,
             uint32_t height = 17) {
  testing::PngSpec spec;
  spec.width = width;
  spec.height = height;
  spec.colorType = channels == 4 ? 6 : 2;
  spec.sample = sampleOf;
  testing::saveBytes(path, testing::makePng(spec));
}

void saveJpeg(const std::filesystem::path& path) {
  testing::JpegSpec spec;
  spec.width = 40;
  spec.height = 30;
  spec.sample = [](int x, int y, int channel) {
    return static_cast<uint8_t>(
        sampleOf(static_cast<uint32_t>(x), static_cast<uint32_t>(y), channel));
  };
  testing::saveBytes(path, testing::makeJpeg(spec));
}

QJsonObject reportOf(const CropOnceResult& result) {
  EXPECT_EQ(result.exitCode, 0) << result.errors;
  EXPECT_EQ(result.errors, "");
  QJsonParseError error;
  const auto document = QJsonDocument::fromJson(QByteArray::fromStdString(result.output), &error);
  EXPECT_EQ(error.error, QJsonParseError::NoError) << result.output;
  return document.object();
}

TEST(CropOnce, WritesExactlyThePixelsOfTheCrop) {
  const TemporaryFolder folder;
  savePng(folder / "in.png");
  reportOf(cropOnce({folder / "in.png", folder / "out.png", "--left", "1", "--top", "2", "--right",
                     "3", "--bottom", "4"}));
  const Bitmap cropped = ImageSource::load(folder / "out.png").image;
  ASSERT_EQ(cropped.width(), 19);
  ASSERT_EQ(cropped.height(), 11);
  const Bitmap original = ImageSource::load(folder / "in.png").image;
  for (int64_t y = 0; y < cropped.height(); ++y) {
    ASSERT_EQ(std::memcmp(cropped.row(y), original.pixel(1, y + 2),
                          static_cast<size_t>(cropped.width() * cropped.layout().bytesPerPixel())),
              0)
        << y;
  }
  EXPECT_EQ(namesIn(folder.path()), (Names{"in.png", "out.png"}));
}

TEST(CropOnce, ReportsInOneLine) {
  const TemporaryFolder folder;
  savePng(folder / "in.png");
  const CropOnceResult result =
      cropOnce({folder / "in.png", folder / "out.png", "--left", "3", "--bottom", "7"});
  const QJsonObject report = reportOf(result);
  EXPECT_EQ(result.output.find('\n'), result.output.size() - 1);
  EXPECT_EQ(report.keys(),
            (QStringList{QStringLiteral("bytes"), QStringLiteral("height"), QStringLiteral("kind"),
                         QStringLiteral("seconds"), QStringLiteral("width")}));
  EXPECT_EQ(report[u"kind"], QStringLiteral("image"));
  EXPECT_EQ(report[u"width"].toInteger(), 20);
  EXPECT_EQ(report[u"height"].toInteger(), 10);
  EXPECT_EQ(static_cast<uintmax_t>(report[u"bytes"].toInteger()),
            std::filesystem::file_size(folder / "out.png"));
  EXPECT_GT(report[u"seconds"].toDouble(), 0);
  EXPECT_LT(report[u"seconds"].toDouble(), 60);
}

TEST(CropOnce, WithoutMarginsKeepsAllOfAnOddPicture) {
  const TemporaryFolder folder;
  savePng(folder / "in.png");
  const QJsonObject report = reportOf(cropOnce({folder / "in.png", folder / "out.png"}));
  EXPECT_EQ(report[u"width"].toInteger(), 23);
  EXPECT_EQ(report[u"height"].toInteger(), 17);
}

TEST(CropOnce, ReachesTheLastPixel) {
  const TemporaryFolder folder;
  savePng(folder / "in.png");
  const QJsonObject report =
      reportOf(cropOnce({folder / "in.png", folder / "out.png", "--left", "22", "--top", "16"}));
  EXPECT_EQ(report[u"width"].toInteger(), 1);
  EXPECT_EQ(report[u"height"].toInteger(), 1);
}

TEST(CropOnce, KeepsAJpegAJpegAndMakesTheRestPng) {
  const TemporaryFolder folder;
  savePng(folder / "picture");
  saveJpeg(folder / "photo");
  reportOf(cropOnce({folder / "picture", folder / "a"}));
  reportOf(cropOnce({folder / "photo", folder / "b"}));
  EXPECT_EQ(ImageSource::load(folder / "a").type, ContentType::png());
  EXPECT_EQ(ImageSource::load(folder / "b").type, ContentType::jpeg());
}

TEST(CropOnce, WritesTheFormatThatWasAskedFor) {
  const TemporaryFolder folder;
  savePng(folder / "in.png");
  saveJpeg(folder / "in.jpg");
  reportOf(cropOnce({folder / "in.png", folder / "a", "--format", "jpeg"}));
  reportOf(cropOnce({folder / "in.jpg", folder / "b", "--format", "png"}));
  EXPECT_EQ(ImageSource::load(folder / "a").type, ContentType::jpeg());
  EXPECT_EQ(ImageSource::load(folder / "b").type, ContentType::png());
}

TEST(CropOnce, HeedsTheQuality) {
  const TemporaryFolder folder;
  saveJpeg(folder / "in.jpg");
  const auto bytes = [&](const char* quality) {
    return reportOf(cropOnce({folder / "in.jpg", folder / "out", "--quality", quality}))[u"bytes"]
        .toInteger();
  };
  EXPECT_LT(bytes("0.1"), bytes("1"));
  EXPECT_EQ(bytes("1.7"), bytes("1"));
  EXPECT_EQ(bytes("-0.2"), bytes("0"));
  EXPECT_EQ(bytes("0.9"),
            reportOf(cropOnce({folder / "in.jpg", folder / "out"}))[u"bytes"].toInteger());
}

TEST(CropOnce, FillsTransparencyWithTheBackground) {
  const TemporaryFolder folder;
  testing::PngSpec spec;
  spec.width = spec.height = 16;
  spec.colorType = 6;
  spec.sample = [](uint32_t, uint32_t, int) { return uint16_t{0}; };
  testing::saveBytes(folder / "clear.png", testing::makePng(spec));
  reportOf(cropOnce(
      {folder / "clear.png", folder / "out", "--format", "jpeg", "--background", "1,0,0"}));
  const Bitmap image = ImageSource::load(folder / "out").image;
  const auto* pixel = reinterpret_cast<const uint8_t*>(image.pixel(8, 8));
  EXPECT_GT(pixel[0], 250);
  EXPECT_LT(pixel[1], 5);
  EXPECT_LT(pixel[2], 5);
}

TEST(CropOnce, MayReplaceItsSource) {
  const TemporaryFolder folder;
  savePng(folder / "in.png");
  reportOf(cropOnce({folder / "in.png", folder / "in.png", "--left", "3"}));
  EXPECT_EQ(ImageSource::load(folder / "in.png").image.width(), 20);
  EXPECT_EQ(namesIn(folder.path()), Names{"in.png"});
}

TEST(CropOnce, KeepsALinkAndThePermissionsBehindIt) {
  const TemporaryFolder folder;
  savePng(folder / "in.png");
  testing::writeFile(folder / "real.png", "old");
  std::filesystem::permissions(folder / "real.png", std::filesystem::perms(0640));
  std::filesystem::create_symlink("real.png", folder / "link.png");
  reportOf(cropOnce({folder / "in.png", folder / "link.png"}));
  EXPECT_TRUE(std::filesystem::is_symlink(folder / "link.png"));
  EXPECT_EQ(testing::modeOf(folder / "real.png"), 0640U);
  EXPECT_EQ(ImageSource::load(folder / "real.png").image.width(), 23);
}

TEST(CropOnce, TakesNamesThatAreNoText) {
  const TemporaryFolder folder;
  savePng(folder / "caf\xe9.png");
  CropOnceProcess process;
  process.program = "/bin/sh";
  process.start({"-c", R"sh(exec "$0" "$1/caf$(printf '\351').png" "$1/$(printf '\377')")sh",
                 VANTREL_BIN_DIR "/crop-once", folder.path()});
  reportOf(process.finish());
  EXPECT_EQ(namesIn(folder.path()), (Names{"caf\xe9.png", "\xff"}));
}

TEST(CropOnce, SaysNothingElseInAnyLocale) {
  const TemporaryFolder folder;
  savePng(folder / "in.png");
  for (const char* locale : {"C", "C.UTF-8", "de_DE.ISO-8859-1", "unheard-of"}) {
    CropOnceProcess process;
    process.environment = {{"LC_ALL", locale}};
    process.start({folder / "in.png", folder / "out.png"});
    reportOf(process.finish());
  }
}

TEST(CropOnce, MakesNoSessionFolder) {
  const TemporaryFolder folder;
  std::filesystem::create_directory(folder / "tmp");
  savePng(folder / "in.png");
  CropOnceProcess process;
  process.environment = {{"TMPDIR", (folder / "tmp").string()}};
  process.start({folder / "in.png", folder / "out.png"});
  reportOf(process.finish());
  EXPECT_EQ(namesIn(folder / "tmp"), Names{});
}

class CropOnceWrongUsage
    : public ::testing::TestWithParam<std::pair<CropOnceProcess::Arguments, const char*>> {};

TEST_P(CropOnceWrongUsage, ExitsWith64AndTheUsage) {
  const TemporaryFolder folder;
  savePng(folder / "in.png");
  CropOnceProcess::Arguments arguments{folder / "in.png", folder / "out.png"};
  arguments.insert(arguments.end(), GetParam().first.begin(), GetParam().first.end());
  const CropOnceResult result = cropOnce(arguments);
  EXPECT_EQ(result.exitCode, 64);
  EXPECT_EQ(result.output, "");
  EXPECT_THAT(result.errors, StartsWith(std::string("crop-once: ") + GetParam().second + "\n"));
  EXPECT_THAT(result.errors, HasSubstr("usage: crop-once SOURCE DESTINATION"));
  EXPECT_EQ(namesIn(folder.path()), Names{"in.png"});
}

using Usage = std::pair<CropOnceProcess::Arguments, const char*>;
INSTANTIATE_TEST_SUITE_P(
    Arguments, CropOnceWrongUsage,
    ::testing::Values(Usage{{"third"}, "A source and a destination are needed"},
                      Usage{{"--frame"}, "--frame is not an option"},
                      Usage{{"--left"}, "--left takes a value"},
                      Usage{{"--left", "one"}, "--left takes a whole number"},
                      Usage{{"--format", "gif"}, "--format takes jpeg or png"}));

TEST(CropOnce, WithoutArgumentsExitsWith64) {
  const CropOnceResult result = cropOnce({});
  EXPECT_EQ(result.exitCode, 64);
  EXPECT_EQ(result.output, "");
}

}  // namespace
}  // namespace vantrel
