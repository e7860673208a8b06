#include <gmock/gmock.h>
#include <signal.h>

#include <QEventLoop>
#include <QFileSystemWatcher>
#include <QJsonDocument>
#include <QJsonObject>

#include "support/film_folder.h"
#include "tools/crop_once_process.h"

namespace vantrel {
namespace {

using ::testing::ContainsRegex;
using testing::cropOnce;
using testing::CropOnceProcess;
using testing::CropOnceResult;
using testing::FilmFolder;
using testing::namesIn;
using testing::readFile;
using testing::runFfprobe;
using testing::TemporaryFolder;
using testing::writeFile;
using Names = std::vector<std::string>;

constexpr const char* kBadCrop =
    "The crop must fit inside the video and have even dimensions of at least two pixels.\n";

QJsonObject reportOf(const CropOnceResult& result) {
  EXPECT_EQ(result.exitCode, 0) << result.errors;
  return QJsonDocument::fromJson(QByteArray::fromStdString(result.output)).object();
}

void expectLine(const CropOnceResult& result, const std::string& line) {
  EXPECT_EQ(result.exitCode, 1);
  EXPECT_EQ(result.output, "");
  EXPECT_EQ(result.errors, line);
}

/// A folder with a film of 160 by 120 pixels, made once, and one for results.
class CropOnceVideo : public ::testing::Test {
 protected:
  static void SetUpTestSuite() {
    s_films = new FilmFolder;
    s_films->make("film.mov");
  }
  static void TearDownTestSuite() {
    delete s_films;
    s_films = nullptr;
  }

  /// Crops a film of the folder to "out.mov".
  CropOnceResult crop(const CropOnceProcess::Arguments& options,
                      const std::string& name = "film.mov") {
    CropOnceProcess::Arguments arguments{*s_films / name, folder / "out.mov"};
    arguments.insert(arguments.end(), options.begin(), options.end());
    return cropOnce(arguments);
  }

  static FilmFolder* s_films;
  TemporaryFolder folder;
};

FilmFolder* CropOnceVideo::s_films = nullptr;

TEST_F(CropOnceVideo, ReportsInOneLine) {
  const CropOnceResult result = crop({"--left", "11", "--top", "7", "--right", "49", "--bottom",
                                      "33", "--codec", "h264", "--mbps", "1"});
  const QJsonObject report = reportOf(result);
  EXPECT_EQ(result.errors, "");
  EXPECT_EQ(result.output.find('\n'), result.output.size() - 1);
  EXPECT_EQ(report.keys(),
            (QStringList{QStringLiteral("bytes"), QStringLiteral("codec"), QStringLiteral("frames"),
                         QStringLiteral("hdr"), QStringLiteral("height"), QStringLiteral("kind"),
                         QStringLiteral("seconds"), QStringLiteral("width")}));
  EXPECT_EQ(report[u"kind"], QStringLiteral("video"));
  EXPECT_EQ(report[u"width"].toInteger(), 100);
  EXPECT_EQ(report[u"height"].toInteger(), 80);
  EXPECT_EQ(report[u"codec"], QStringLiteral("H.264"));
  EXPECT_EQ(report[u"frames"].toInteger(), 25);
  EXPECT_EQ(report[u"hdr"], false);
  EXPECT_EQ(static_cast<uintmax_t>(report[u"bytes"].toInteger()),
            std::filesystem::file_size(folder / "out.mov"));
  EXPECT_GT(report[u"seconds"].toDouble(), 0);
  EXPECT_EQ(namesIn(folder.path()), Names{"out.mov"});
}

TEST_F(CropOnceVideo, WithoutOptionsKeepsThePictureAndTheRateInHevc) {
  const QJsonObject report = reportOf(crop({}));
  EXPECT_EQ(report[u"width"].toInteger(), 160);
  EXPECT_EQ(report[u"height"].toInteger(), 120);
  EXPECT_EQ(report[u"codec"], QStringLiteral("HEVC"));
  EXPECT_EQ(runFfprobe({"-select_streams", "v", "-show_entries", "stream=codec_name", "-of",
                        "csv=p=0", folder / "out.mov"}),
            "hevc\n");
}

TEST_F(CropOnceVideo, CutsTheOddLastColumnAndRow) {
  s_films->make("odd.mkv",
                {"-vf", "crop=33:17:0:0:exact=1", "-pix_fmt", "yuv444p", "-c:v", "ffv1", "-an"});
  const QJsonObject whole = reportOf(crop({"--codec", "h264"}, "odd.mkv"));
  EXPECT_EQ(whole[u"width"].toInteger(), 32);
  EXPECT_EQ(whole[u"height"].toInteger(), 16);
  const QJsonObject lower = reportOf(crop({"--codec", "h264", "--top", "1"}, "odd.mkv"));
  EXPECT_EQ(lower[u"width"].toInteger(), 32);
  EXPECT_EQ(lower[u"height"].toInteger(), 16);
  expectLine(crop({"--left", "2"}, "odd.mkv"), kBadCrop);
}

TEST_F(CropOnceVideo, RefusesMarginsAsTyped) {
  for (const auto& margins :
       {CropOnceProcess::Arguments{"--left", "1"}, CropOnceProcess::Arguments{"--bottom", "-2"},
        CropOnceProcess::Arguments{"--left", "160"},
        CropOnceProcess::Arguments{"--top", "60", "--bottom", "60"},
        CropOnceProcess::Arguments{"--right", "9223372036854775807"}}) {
    expectLine(crop(margins), kBadCrop);
  }
  EXPECT_EQ(namesIn(folder.path()), Names{});
}

TEST_F(CropOnceVideo, TellsHdr) {
  s_films->makeHdr("hdr.mov", "smpte2084");
  EXPECT_EQ(reportOf(crop({}, "hdr.mov"))[u"hdr"], true);
  expectLine(crop({"--codec", "h264"}, "hdr.mov"),
             "HDR video requires HEVC. Select HEVC to preserve the video's dynamic range.\n");
}

TEST_F(CropOnceVideo, PrintsProgressAndBytesWhereAsked) {
  const CropOnceResult result = crop({"--codec", "h264", "--progress"});
  reportOf(result);
  EXPECT_THAT(result.errors, ContainsRegex("^bytes [0-9]+\n|\nbytes [0-9]+\n"));
  EXPECT_THAT(result.errors, ContainsRegex("progress 0\\.[0-9]{4}\n"));
  EXPECT_THAT(result.errors, ContainsRegex("bytes [0-9]+\nprogress 1\\.0000\n$"));
}

TEST_F(CropOnceVideo, MayReplaceItsSource) {
  s_films->make("own.mov");
  reportOf(cropOnce({*s_films / "own.mov", *s_films / "own.mov", "--left", "2"}));
  EXPECT_EQ(reportOf(crop({}, "own.mov"))[u"width"].toInteger(), 158);
}

TEST_F(CropOnceVideo, FailsWithItsOneLine) {
  s_films->make("sound.m4a", {"-vn"});
  expectLine(crop({}, "sound.m4a"), "This file has no readable video track.\n");
  s_films->make("opus.mkv", {"-c:a", "libopus"});
  expectLine(crop({}, "opus.mkv"), "The original audio cannot be copied into a MOV file.\n");
  EXPECT_EQ(namesIn(folder.path()), Names{});
}

class CropOnceVideoCancel : public CropOnceVideo, public ::testing::WithParamInterface<int> {};

TEST_P(CropOnceVideoCancel, CleansUp) {
  // Long enough not to be done before the signal comes.
  s_films->makeRepeated("film.mov", "long.mov", 400);
  writeFile(folder / "out.mov", "old");
  QFileSystemWatcher watcher({QString::fromStdString(folder.path().string())});
  QEventLoop loop;
  QObject::connect(&watcher, &QFileSystemWatcher::directoryChanged, &loop, &QEventLoop::quit);
  CropOnceProcess process;
  process.start({*s_films / "long.mov", folder / "out.mov"});
  loop.exec();
  EXPECT_EQ(namesIn(folder.path()).size(), 2U) << "the working folder must be there by now";
  process.signal(GetParam());
  const CropOnceResult result = process.finish();
  EXPECT_EQ(result.exitCode, 2);
  EXPECT_EQ(result.output, "");
  EXPECT_EQ(result.errors, "Export cancelled\n");
  EXPECT_TRUE(readFile(folder / "out.mov") == "old");
  EXPECT_EQ(namesIn(folder.path()), Names{"out.mov"});
}

INSTANTIATE_TEST_SUITE_P(Signals, CropOnceVideoCancel, ::testing::Values(SIGINT, SIGTERM));

}  // namespace
}  // namespace vantrel
