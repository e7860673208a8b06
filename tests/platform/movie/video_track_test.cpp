#include <gtest/gtest.h>

#include <array>

#include "platform/movie/movie.h"
#include "platform/movie/test_film.h"
#include "support/movie_maker.h"

namespace vantrel {
namespace {

using testing::Bytes;
using testing::colorFilter;
using testing::findBox;
using testing::loadBytes;
using testing::makeFilm;
using testing::put32;
using testing::remux;
using testing::runFfmpeg;
using testing::saveBytes;
using testing::TemporaryFolder;
using Kind = MovieTrack::Kind;

/// Where these stand behind the type of a track header, version 0 (QuickTime File Format).
constexpr size_t kMatrix = 44, kWidth = 80, kHeight = 84;

std::vector<MovieTrack> videoTracks(const std::filesystem::path& path) {
  return Movie::open(path).tracks(Kind::Video);
}

/// A silent film whose track header is changed.
class VideoTrack : public ::testing::Test {
 protected:
  void SetUp() override {
    makeFilm(path(), {"-an", "-t", "0.2"});
    m_bytes = loadBytes(path());
  }

  [[nodiscard]] std::filesystem::path path() const { return m_folder / "film.mov"; }

  void setMatrix(double a, double b, double c, double d, double x = 0, double y = 0) {
    const size_t matrix = findBox(m_bytes, "tkhd") + kMatrix;
    const std::array<double, 8> values = {a, b, 0, c, d, 0, x, y};
    for (size_t i = 0; i < values.size(); ++i) {
      put32(m_bytes, matrix + 4 * i,
            static_cast<uint32_t>(static_cast<int32_t>(values[i] * 65536)));
    }
  }
  void setDisplaySize(uint32_t width, uint32_t height) {
    put32(m_bytes, findBox(m_bytes, "tkhd") + kWidth, width << 16);
    put32(m_bytes, findBox(m_bytes, "tkhd") + kHeight, height << 16);
  }
  /// Takes the pixel aspect ratio out of the description.
  void hidePixelAspect() { put32(m_bytes, findBox(m_bytes, "pasp"), 0x66726565); }

  [[nodiscard]] MovieTrack open() {
    saveBytes(path(), m_bytes);
    return videoTracks(path()).at(0);
  }

  TemporaryFolder m_folder;
  Bytes m_bytes;
};

TEST_F(VideoTrack, IsTurnedAndMirroredAsTheContainerSays) {
  const double eight[][4] = {{1, 0, 0, 1},  {0, 1, -1, 0}, {-1, 0, 0, -1}, {0, -1, 1, 0},
                             {-1, 0, 0, 1}, {1, 0, 0, -1}, {0, 1, 1, 0},   {0, -1, -1, 0}};
  for (const auto& [a, b, c, d] : eight) {
    setMatrix(a, b, c, d, 240, -8);
    const MovieTrack track = open();
    EXPECT_EQ(track.preferredTransform, (AffineTransform{a, b, c, d, 240, -8}));
    EXPECT_EQ(track.naturalSize, (PictureSize{320, 240}));
  }
}

TEST_F(VideoTrack, IsNotStretchedByADisplaySizeThatIsAlreadyTurned) {
  hidePixelAspect();
  setMatrix(0, 1, -1, 0);
  setDisplaySize(240, 320);
  EXPECT_EQ(open().naturalSize, (PictureSize{320, 240}));
}

TEST_F(VideoTrack, IsAsWideAsTheMatrixStretchesIt) {
  hidePixelAspect();
  setMatrix(2, 0, 0, 1);
  EXPECT_EQ(open().naturalSize, (PictureSize{640, 240}));
  setMatrix(0, 2, -1, 0);
  EXPECT_EQ(open().naturalSize, (PictureSize{640, 240}));
}

TEST_F(VideoTrack, TakesThePixelAspectForItsWidth) {
  makeFilm(path(), {"-an", "-t", "0.2", "-vf", "setsar=64/45"});
  const MovieTrack track = videoTracks(path()).at(0);
  EXPECT_EQ(track.naturalSize, (PictureSize{455, 240}));
  EXPECT_EQ(track.storedSize, (PictureSize{320, 240}));
  remux(path(), m_folder / "film.ts");
  EXPECT_EQ(videoTracks(m_folder / "film.ts").at(0).naturalSize, (PictureSize{455, 240}));
}

TEST_F(VideoTrack, HasTheSizeOfItsDecodedPictures) {
  makeFilm(path(), {"-an", "-t", "0.2", "-vf", "crop=310:230"});
  EXPECT_EQ(videoTracks(path()).at(0).storedSize, (PictureSize{310, 230}));
}

TEST_F(VideoTrack, HasTheColourOfTheContainerOrElseOfTheBitstream) {
  makeFilm(path(), {"-an", "-t", "0.2", "-vf", colorFilter("bt709", "bt709", "smpte170m")});
  m_bytes = loadBytes(path());
  const size_t color = findBox(m_bytes, "colr");
  m_bytes[color + 9] = 5;
  EXPECT_EQ(open().formatDescriptions, (std::vector<ColorTags>{{5, 1, 6}}));
  m_bytes[color + 9] = 2;
  EXPECT_EQ(open().formatDescriptions, (std::vector<ColorTags>{{1, 1, 6}}));
  put32(m_bytes, color, 0x66726565);
  EXPECT_EQ(open().formatDescriptions, (std::vector<ColorTags>{{1, 1, 6}}));
  remux(path(), m_folder / "film.ts");
  EXPECT_EQ(videoTracks(m_folder / "film.ts").at(0).formatDescriptions,
            (std::vector<ColorTags>{{1, 1, 6}}));
}

TEST_F(VideoTrack, LeavesUnknownColourOpen) {
  EXPECT_EQ(open().formatDescriptions, (std::vector<ColorTags>{{2, 2, 2}}));
}

TEST_F(VideoTrack, TellsWhereChromaSamplesLie) {
  EXPECT_EQ(open().chromaSiting, ChromaSiting::Left);
  makeFilm(path(), {"-an", "-t", "0.2", "-x264-params", "chromaloc=2"});
  EXPECT_EQ(videoTracks(path()).at(0).chromaSiting, ChromaSiting::TopLeft);
  makeFilm(path(), {"-an", "-t", "0.2", "-c:v", "mjpeg", "-pix_fmt", "yuvj420p"});
  EXPECT_EQ(videoTracks(path()).at(0).chromaSiting, ChromaSiting::Center);
  makeFilm(path(), {"-an", "-t", "0.2", "-c:v", "mjpeg", "-pix_fmt", "yuvj444p"});
  EXPECT_EQ(videoTracks(path()).at(0).chromaSiting, ChromaSiting::Left);
}

TEST_F(VideoTrack, TakesHdrMetadataFromTheContainerOrTheFirstFrame) {
  const std::string parameters =
      "log-level=none:colorprim=9:transfer=16:colormatrix=9:hdr10=1:max-cll=1000,400:"
      "master-display=G(13250,34500)B(7500,3000)R(34000,16000)WP(15635,16450)L(10000000,1)";
  const auto mkv = m_folder / "hdr.mkv", ts = m_folder / "hdr.ts";
  makeFilm(mkv, {"-an", "-t", "0.1", "-c:v", "libx265", "-pix_fmt", "yuv420p10le", "-x265-params",
                 parameters});
  remux(mkv, ts);
  for (const auto& film : {mkv, ts}) {
    const MovieTrack track = videoTracks(film).at(0);
    EXPECT_EQ(track.formatDescriptions, (std::vector<ColorTags>{{9, 16, 9}}));
    ASSERT_TRUE(track.hdrMetadata.masteringDisplay);
    const MasteringDisplay& display = *track.hdrMetadata.masteringDisplay;
    EXPECT_NEAR(double(display.primaries[0][0].numerator) / display.primaries[0][0].denominator,
                0.68, 1e-6);
    EXPECT_NEAR(double(display.primaries[1][1].numerator) / display.primaries[1][1].denominator,
                0.69, 1e-6);
    EXPECT_NEAR(double(display.whitePoint[0].numerator) / display.whitePoint[0].denominator, 0.3127,
                1e-6);
    EXPECT_EQ(display.highestLuminance.numerator / display.highestLuminance.denominator, 1000);
    EXPECT_EQ(track.hdrMetadata.contentLight, (ContentLight{1000, 400}));
  }
  EXPECT_EQ(open().hdrMetadata, HdrMetadata());
}

TEST_F(VideoTrack, TellsADisabledTrack) {
  EXPECT_TRUE(open().isEnabled);
  m_bytes[findBox(m_bytes, "tkhd") + 7] &= 0xFE;
  EXPECT_FALSE(open().isEnabled);
}

/// Files with pictures that are no film.
class Pictures : public ::testing::Test {
 protected:
  void SetUp() override {
    makeFilm(film());
    runFfmpeg({"-i", film().string(), "-frames:v", "1", png().string()});
  }
  [[nodiscard]] std::filesystem::path film() const { return m_folder / "film.mp4"; }
  [[nodiscard]] std::filesystem::path png() const { return m_folder / "still.png"; }
  /// A file with the sound of the film and the picture.
  [[nodiscard]] std::filesystem::path withCover(const std::string& name,
                                                std::vector<std::string> options = {}) const {
    options.insert(options.begin(), {"-i", film().string(), "-i", png().string(), "-map", "0:a",
                                     "-map", "1", "-c:v", "copy"});
    options.push_back((m_folder / name).string());
    runFfmpeg(options);
    return m_folder / name;
  }

  TemporaryFolder m_folder;
};

TEST_F(Pictures, OnCoversAreNoVideoTracks) {
  EXPECT_TRUE(videoTracks(withCover("song.mp3")).empty());
  EXPECT_TRUE(videoTracks(withCover("song.m4a", {"-disposition:v", "attached_pic"})).empty());
  const Movie song = Movie::open(withCover("song.mov"));
  EXPECT_TRUE(song.tracks(Kind::Video).empty());
  EXPECT_EQ(song.tracks(Kind::Audio).size(), 1U);
}

TEST_F(Pictures, BesideAFilmAreNoVideoTracks) {
  const auto path = withCover("poster.mov", {"-map", "0:v"});
  const std::vector<MovieTrack> tracks = videoTracks(path);
  ASSERT_EQ(tracks.size(), 1U);
  EXPECT_EQ(tracks[0].streamIndex, 2);
}

TEST_F(Pictures, AloneInAMovieAreItsVideoTrack) {
  runFfmpeg({"-i", film().string(), "-frames:v", "1", "-an", (m_folder / "one.mov").string()});
  EXPECT_EQ(videoTracks(m_folder / "one.mov").size(), 1U);
}

TEST_F(Pictures, InFilesOfTheirOwnAreNoVideoTracks) {
  EXPECT_TRUE(videoTracks(png()).empty());
  for (const char* name : {"still.jpg", "still.gif", "still.bmp"}) {
    runFfmpeg({"-i", png().string(), (m_folder / name).string()});
    const Movie movie = Movie::open(m_folder / name);
    EXPECT_TRUE(movie.tracks(Kind::Video).empty()) << name;
  }
}

TEST_F(Pictures, ThatMoveAreAVideoTrack) {
  runFfmpeg({"-i", film().string(), "-t", "0.2", (m_folder / "moving.gif").string()});
  EXPECT_EQ(videoTracks(m_folder / "moving.gif").size(), 1U);
}

}  // namespace
}  // namespace vantrel
