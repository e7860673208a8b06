#include "export/video_exporter.h"

#include <gmock/gmock.h>
#include <sys/stat.h>

#include <algorithm>
#include <limits>
#include <mutex>
#include <optional>

#include "base/cancelled.h"
#include "base/failure.h"
#include "support/film_folder.h"
#include "support/movie_maker.h"
#include "support/ordinary_user.h"
#include "support/write_failures.h"

namespace vantrel {
namespace {

namespace fs = std::filesystem;
using ::testing::Contains;
using testing::FileSizeLimit;
using testing::FilmFolder;
using testing::modeOf;
using testing::namesIn;
using testing::OrdinaryUser;
using testing::readFile;
using testing::runFfprobe;
using ::testing::StartsWith;
using testing::writeFile;
using Codec = EncodingSettings::Codec;
using Names = std::vector<std::string>;

constexpr EncodingSettings kH264{Codec::h264, 1};
const QRectF kCrop(11, 7, 64, 48);

constexpr const char* kNoVideo = "This file has no readable video track.";
constexpr const char* kBadCrop =
    "The crop must fit inside the video and have even dimensions of at least two pixels.";
constexpr const char* kHdr =
    "HDR video requires HEVC. Select HEVC to preserve the video's dynamic range.";
constexpr const char* kBadBitrate = "Choose a positive supported video bitrate.";
constexpr const char* kBadAudio = "The original audio cannot be copied into a MOV file.";

/// What an export told while it ran, from whatever threads.
class Told final {
 public:
  VideoExporter::FileSize fileSize = [this](int64_t bytes) {
    const std::scoped_lock lock(m_mutex);
    m_sizes.push_back(bytes);
  };
  VideoExporter::Progress progress = [this](double fraction) {
    const std::scoped_lock lock(m_mutex);
    m_fractions.push_back(fraction);
  };
  [[nodiscard]] std::vector<int64_t> sizes() const {
    const std::scoped_lock lock(m_mutex);
    return m_sizes;
  }
  [[nodiscard]] std::vector<double> fractions() const {
    const std::scoped_lock lock(m_mutex);
    return m_fractions;
  }

 private:
  mutable std::mutex m_mutex;
  std::vector<int64_t> m_sizes;
  std::vector<double> m_fractions;
};

/// The lines that ffprobe prints for some entries of a stream.
std::string entriesOf(const fs::path& film, const std::string& stream, const std::string& entries) {
  return runFfprobe({"-select_streams", stream, "-show_entries", "stream=" + entries, "-of",
                     "default=noprint_wrappers=1", film.string()});
}

/// A folder with a film of 160 by 120 pixels, a second at 25 frames a second with a tone, made
/// once; and one for what is exported.
class VideoExporterTest : public ::testing::Test {
 protected:
  static void SetUpTestSuite() {
    s_films = new FilmFolder;
    s_films->make("film.mov");
  }
  static void TearDownTestSuite() {
    delete s_films;
    s_films = nullptr;
  }

  [[nodiscard]] static fs::path film() { return *s_films / "film.mov"; }

  static FilmFolder* s_films;
  testing::TemporaryFolder folder;
  std::stop_source stop;
};

FilmFolder* VideoExporterTest::s_films = nullptr;

/// The words of the error that an export ends with.
template <class Export>
std::string messageOf(Export run) {
  try {
    run();
    return "";
  } catch (...) {
    return userMessage(std::current_exception());
  }
}

TEST_F(VideoExporterTest, WritesTheCropAsAQuickTimeMovie) {
  const VideoExportReport report =
      VideoExporter::write(film(), folder / "out.mov", kCrop, {Codec::hevc, 1});
  EXPECT_EQ(report.frames, 25);
  EXPECT_EQ(namesIn(folder.path()), Names{"out.mov"});
  EXPECT_EQ(entriesOf(folder / "out.mov", "v",
                      "codec_name,codec_tag_string,width,height,color_space,nb_frames"),
            "codec_name=hevc\ncodec_tag_string=hvc1\nwidth=64\nheight=48\ncolor_space=bt709\n"
            "nb_frames=25\n");
  EXPECT_EQ(entriesOf(folder / "out.mov", "a", "codec_name,nb_frames"),
            entriesOf(film(), "a", "codec_name,nb_frames"));
}

TEST_F(VideoExporterTest, WritesEitherCodec) {
  VideoExporter::write(film(), folder / "out.mov", kCrop, kH264);
  EXPECT_EQ(entriesOf(folder / "out.mov", "v", "codec_name,codec_tag_string"),
            "codec_name=h264\ncodec_tag_string=avc1\n");
}

TEST_F(VideoExporterTest, WritesTheWholePictureAndTheSmallestPart) {
  for (const QRectF& crop : {QRectF(0, 0, 160, 120), QRectF(157, 117, 2, 2)}) {
    for (const Codec codec : EncodingSettings::kCodecs) {
      VideoExporter::write(film(), folder / "out.mov", crop, {codec, 1});
      EXPECT_EQ(entriesOf(folder / "out.mov", "v", "width,height"),
                "width=" + std::to_string(static_cast<int>(crop.width())) +
                    "\nheight=" + std::to_string(static_cast<int>(crop.height())) + "\n");
    }
  }
}

TEST_F(VideoExporterTest, WritesAnUprightMovieOfATurnedOne) {
  s_films->makeTurned("film.mov", "turned.mov");
  const Movie turned = Movie::open(*s_films / "turned.mov");
  EXPECT_EQ(VideoExporter::geometry(turned).bounds, QRectF(0, 0, 120, 160));
  VideoExporter::write(turned, folder / "out.mov", QRectF(3, 100, 110, 60), kH264);
  const VideoGeometry written = VideoExporter::geometry(Movie::open(folder / "out.mov"));
  EXPECT_EQ(written.bounds, QRectF(0, 0, 110, 60));
  EXPECT_TRUE(written.transform.isIdentity());
}

TEST_F(VideoExporterTest, TellsHowFarItIs) {
  Told told;
  VideoExporter::write(film(), folder / "out.mov", kCrop, kH264, told.fileSize, told.progress);
  const std::vector<double> fractions = told.fractions();
  ASSERT_GE(fractions.size(), 3U);
  EXPECT_TRUE(std::is_sorted(fractions.begin(), fractions.end()));
  EXPECT_GE(fractions.front(), 0);
  EXPECT_EQ(fractions.at(fractions.size() - 2), 0.99);
  EXPECT_EQ(fractions.back(), 1);
  ASSERT_GE(told.sizes().size(), 2U);
  EXPECT_EQ(static_cast<uintmax_t>(told.sizes().back()), fs::file_size(folder / "out.mov"));
}

TEST_F(VideoExporterTest, WorksInAFolderOfItsOwnBesideTheDestination) {
  writeFile(folder / "out.mov", "old");
  Names names;
  VideoExporter::write(film(), folder / "out.mov", kCrop, kH264, {}, [&](double fraction) {
    if (fraction != 0.99) return;
    names = namesIn(folder.path());
    EXPECT_THAT(namesIn(folder / names.front()), Contains("Export.mov"));
    EXPECT_TRUE(readFile(folder / "out.mov") == "old");
  });
  ASSERT_EQ(names.size(), 2U);
  EXPECT_THAT(names.front(), StartsWith("Vantrel-"));
  EXPECT_EQ(namesIn(folder.path()), Names{"out.mov"});
}

TEST_F(VideoExporterTest, ReplacesAFileWithItsPermissionsAndBehindItsLink) {
  fs::create_directory(folder / "far");
  writeFile(folder / "far/real.mov", "old");
  fs::permissions(folder / "far/real.mov", fs::perms(0640));
  fs::create_symlink("far/real.mov", folder / "link.mov");
  VideoExporter::write(film(), folder / "link.mov", kCrop, kH264);
  EXPECT_TRUE(fs::is_symlink(folder / "link.mov"));
  EXPECT_EQ(modeOf(folder / "far/real.mov"), 0640U);
  EXPECT_EQ(entriesOf(folder / "far/real.mov", "v", "width"), "width=64\n");
  EXPECT_EQ(namesIn(folder / "far"), Names{"real.mov"});
  EXPECT_EQ(namesIn(folder.path()), (Names{"far", "link.mov"}));
}

TEST_F(VideoExporterTest, MayReplaceItsSource) {
  fs::copy_file(film(), folder / "film.mov");
  VideoExporter::write(folder / "film.mov", folder / "film.mov", kCrop, kH264);
  EXPECT_EQ(entriesOf(folder / "film.mov", "v", "width,nb_frames"), "width=64\nnb_frames=25\n");
  EXPECT_EQ(namesIn(folder.path()), Names{"film.mov"});
}

TEST_F(VideoExporterTest, MakesTheFoldersOfItsDestination) {
  VideoExporter::write(film(), folder / "a/b/out.mov", kCrop, kH264);
  EXPECT_EQ(namesIn(folder / "a/b"), Names{"out.mov"});
}

TEST_F(VideoExporterTest, TakesAFilmWithoutSound) {
  s_films->make("silent.mov", {"-an"});
  EXPECT_EQ(VideoExporter::write(*s_films / "silent.mov", folder / "out.mov", kCrop, kH264).frames,
            25);
  EXPECT_EQ(entriesOf(folder / "out.mov", "a", "codec_name"), "");
}

TEST_F(VideoExporterTest, KeepsHdrInTenBits) {
  s_films->makeHdr("hlg.mov", "arib-std-b67");
  VideoExporter::write(*s_films / "hlg.mov", folder / "out.mov", kCrop, {Codec::hevc, 1});
  EXPECT_EQ(
      entriesOf(folder / "out.mov", "v",
                "profile,pix_fmt,color_space,color_transfer,"
                "color_primaries"),
      "profile=Main 10\npix_fmt=yuv420p10le\ncolor_space=bt2020nc\ncolor_transfer=arib-std-b67\n"
      "color_primaries=bt2020\n");
}

/// An export that must fail, with an old file in the place of the result.
class VideoExporterFailure : public VideoExporterTest {
 protected:
  void SetUp() override { writeFile(folder / "out.mov", "old"); }
  void TearDown() override {
    EXPECT_TRUE(readFile(folder / "out.mov") == "old");
    EXPECT_EQ(namesIn(folder.path()), Names{"out.mov"});
  }
  std::string messageFor(const fs::path& source, const QRectF& crop = kCrop,
                         const EncodingSettings& settings = kH264) {
    return messageOf([&] { VideoExporter::write(source, folder / "out.mov", crop, settings); });
  }
};

TEST_F(VideoExporterFailure, BadCrop) {
  for (const QRectF& crop :
       {QRectF(0, 0, 101, 100), QRectF(0, 0, 100, 101), QRectF(0, 0, 0, 100), QRectF(0, 0, 2, 1),
        QRectF(-1, 0, 2, 2), QRectF(159, 0, 2, 2), QRectF(0, 119, 2, 2), QRectF(0, 0, 162, 120),
        QRectF(0, 0, std::numeric_limits<double>::quiet_NaN(), 2)}) {
    EXPECT_EQ(messageFor(film(), crop), kBadCrop);
  }
}

TEST_F(VideoExporterFailure, BadBitrate) {
  for (const double rate : {0.0, -1.0, 0.009, 10'001.0, std::numeric_limits<double>::infinity(),
                            std::numeric_limits<double>::quiet_NaN()}) {
    EXPECT_EQ(messageFor(film(), kCrop, {Codec::hevc, rate}), kBadBitrate);
  }
}

TEST_F(VideoExporterFailure, HdrWithoutHevc) {
  for (const char* transfer : {"smpte2084", "arib-std-b67"}) {
    s_films->makeHdr("hdr.mov", transfer);
    EXPECT_EQ(messageFor(*s_films / "hdr.mov", kCrop, kH264), kHdr);
    EXPECT_EQ(messageFor(*s_films / "hdr.mov", kCrop, {Codec::h264, 0}), kHdr);
  }
}

TEST_F(VideoExporterFailure, TheCropIsLookedAtBeforeColourAndRate) {
  s_films->makeHdr("hdr.mov", "smpte2084");
  EXPECT_EQ(messageFor(*s_films / "hdr.mov", QRectF(0, 0, 3, 3), {Codec::h264, 0}), kBadCrop);
}

TEST_F(VideoExporterFailure, WithoutAVideoTrack) {
  s_films->make("sound.m4a", {"-vn"});
  EXPECT_EQ(messageFor(*s_films / "sound.m4a"), kNoVideo);
  s_films->makeCoverArt("cover.m4a");
  EXPECT_EQ(messageFor(*s_films / "cover.m4a"), kNoVideo);
}

TEST_F(VideoExporterFailure, SoundThatAMovieCannotHold) {
  for (const char* codec : {"libopus", "flac"}) {
    s_films->make("sound.mkv", {"-c:a", codec});
    EXPECT_EQ(messageFor(*s_films / "sound.mkv"), kBadAudio) << codec;
  }
}

TEST_F(VideoExporterFailure, FileThatIsNoFilm) {
  writeFile(*s_films / "empty.mov", "");
  writeFile(*s_films / "notes.txt", "some words\n");
  writeFile(*s_films / "notes.mov", std::string(4000, 'x'));
  for (const char* name : {"empty.mov", "notes.txt", "notes.mov"}) {
    EXPECT_THAT(messageFor(*s_films / name),
                StartsWith(std::string("“") + name + "” could not be"));
  }
  EXPECT_EQ(messageFor(*s_films / "missing.mov"),
            "“missing.mov” could not be opened: No such file or directory");
  EXPECT_EQ(messageFor(s_films->path()),
            "“" + s_films->path().filename().string() + "” could not be opened: Is a directory");
}

TEST_F(VideoExporterFailure, FilmThatIsCutShort) {
  s_films->make("whole.mov", {"-movflags", "+faststart"});
  const std::string bytes = readFile(*s_films / "whole.mov");
  for (const double part : {0.5, 0.9, 0.999}) {
    const auto size = static_cast<size_t>(part * static_cast<double>(bytes.size()));
    writeFile(*s_films / "cut.mov", bytes.substr(0, size));
    EXPECT_THAT(messageFor(*s_films / "cut.mov"), StartsWith("“cut.mov” could not be read: "))
        << part;
  }
}

TEST_F(VideoExporterFailure, FileThatMayNotGrow) {
  // At the header, among the pictures, and when all is written once more.
  for (const rlim_t bytes : {0, 3'000, 20'000}) {
    const FileSizeLimit limit(bytes);
    EXPECT_EQ(messageFor(film()), "“out.mov” could not be saved: File too large") << bytes;
  }
}

TEST_F(VideoExporterFailure, CancelledBeforeItStarts) {
  stop.request_stop();
  EXPECT_THROW(
      VideoExporter::write(film(), folder / "out.mov", kCrop, kH264, {}, {}, stop.get_token()),
      Cancelled);
}

TEST_F(VideoExporterFailure, CancelledAtAnyProgress) {
  for (const double stage : {0.0, 0.3, 0.9, 0.99}) {
    std::stop_source own;
    EXPECT_THROW(VideoExporter::write(
                     film(), folder / "out.mov", kCrop, kH264, {},
                     [&](double fraction) {
                       if (fraction >= stage) own.request_stop();
                     },
                     own.get_token()),
                 Cancelled)
        << stage;
    EXPECT_EQ(namesIn(folder.path()), Names{"out.mov"}) << stage;
  }
}

TEST_F(VideoExporterFailure, CancelledWhenItsSizeIsTold) {
  EXPECT_THROW(VideoExporter::write(
                   film(), folder / "out.mov", kCrop, kH264, [&](int64_t) { stop.request_stop(); },
                   {}, stop.get_token()),
               Cancelled);
}

TEST_F(VideoExporterTest, CancelledAfterTheEndHasNoEffect) {
  VideoExporter::write(
      film(), folder / "out.mov", kCrop, kH264, {},
      [&](double fraction) {
        if (fraction == 1) stop.request_stop();
      },
      stop.get_token());
  EXPECT_EQ(entriesOf(folder / "out.mov", "v", "width"), "width=64\n");
}

TEST_F(VideoExporterTest, FailsWhereTheDestinationIsNoFile) {
  fs::create_directory(folder / "album");
  ASSERT_EQ(::mkfifo((folder / "pipe").c_str(), 0600), 0);
  const auto messageFor = [&](const char* name) {
    return messageOf([&] { VideoExporter::write(film(), folder / name, kCrop, kH264); });
  };
  EXPECT_EQ(messageFor("album"), "“album” could not be saved: Is a directory");
  EXPECT_EQ(messageFor("pipe"), "“pipe” could not be saved: Not a regular file");
  EXPECT_EQ(namesIn(folder.path()), (Names{"album", "pipe"}));
}

TEST_F(VideoExporterTest, FailsInAFolderThatMayNotBeChanged) {
  const Movie movie = Movie::open(film());
  fs::permissions(folder.path(), fs::perms(0555));
  const OrdinaryUser ordinary;
  EXPECT_EQ(messageOf([&] { VideoExporter::write(movie, folder / "out.mov", kCrop, kH264); }),
            "“out.mov” could not be saved: Permission denied");
  EXPECT_EQ(namesIn(folder.path()), Names{});
}

}  // namespace
}  // namespace vantrel
