#include <gtest/gtest.h>

#include "platform/movie/movie.h"
#include "platform/movie/test_film.h"

namespace vantrel {
namespace {

using testing::makeFilm;
using testing::remux;
using testing::runFfmpeg;
using testing::TemporaryFolder;
using Kind = MovieTrack::Kind;

/// One film in many containers.
class MovieLength : public ::testing::Test {
 protected:
  static void SetUpTestSuite() {
    s_folder = std::make_unique<TemporaryFolder>();
    makeFilm(film());
  }
  static void TearDownTestSuite() { s_folder.reset(); }

  [[nodiscard]] static std::filesystem::path film() { return *s_folder / "film.mp4"; }
  [[nodiscard]] static Movie remuxed(const std::string& name,
                                     const std::vector<std::string>& options = {}) {
    remux(film(), *s_folder / name, options);
    return Movie::open(*s_folder / name);
  }

  static inline std::unique_ptr<TemporaryFolder> s_folder;
};

TEST_F(MovieLength, IsThatOfTheEditsInAQuickTimeMovie) {
  const Movie movie = remuxed("film.mov", {"-movie_timescale", "600"});
  EXPECT_EQ(movie.duration(), (MediaTime{600, 600}));
  EXPECT_EQ(movie.timescale(), 600);
  EXPECT_EQ(movie.startOffset(), 0);
}

TEST_F(MovieLength, IncludesAPauseBeforeAQuickTimeTrack) {
  runFfmpeg({"-itsoffset", "0.5", "-i", film().string(), "-c", "copy", "-movie_timescale", "600",
             (*s_folder / "late.mov").string()});
  const Movie movie = Movie::open(*s_folder / "late.mov");
  EXPECT_EQ(movie.duration(), (MediaTime{900, 600}));
  EXPECT_EQ(movie.startOffset(), 0);
}

TEST_F(MovieLength, IsFoundInTheFragmentsWhereNoHeaderTellsIt) {
  const Movie movie = remuxed("fragments.mp4", {"-an", "-movflags", "frag_keyframe+empty_moov",
                                                "-frag_duration", "200000"});
  EXPECT_EQ(movie.duration(), (MediaTime{1000, 1000}));
  EXPECT_DOUBLE_EQ(movie.tracks(Kind::Video).at(0).nominalFrameRate, 25);
  EXPECT_GT(movie.tracks(Kind::Video).at(0).estimatedDataRate, 10000);
}

TEST_F(MovieLength, CountsTransportStreamsFromTheirStart) {
  const Movie movie = remuxed("film.ts", {"-an"});
  EXPECT_LT(movie.startOffset(), -1000000);
  EXPECT_EQ(movie.duration(), (MediaTime{90000, 90000}));
  EXPECT_EQ(movie.timescale(), 90000);
}

TEST_F(MovieLength, IsToldByTheHeaderOfOtherContainers) {
  for (const char* name : {"film.mkv", "film.flv", "film.avi", "film.m4v", "film.3gp"}) {
    const Movie movie = remuxed(name, {"-an"});
    EXPECT_DOUBLE_EQ(movie.duration().seconds(), 1) << name;
    EXPECT_EQ(movie.startOffset(), 0) << name;
  }
}

TEST_F(MovieLength, IsFoundInThePacketsWhereNoHeaderTellsIt) {
  EXPECT_DOUBLE_EQ(remuxed("live.mkv", {"-an", "-live", "1"}).duration().seconds(), 1);
  EXPECT_DOUBLE_EQ(remuxed("film.h264", {"-an"}).duration().seconds(), 1);
}

TEST_F(MovieLength, CountsAMatroskaFileFromItsStart) {
  runFfmpeg({"-itsoffset", "3", "-i", film().string(), "-c", "copy", "-an", "-copyts",
             (*s_folder / "late.mkv").string()});
  const Movie movie = Movie::open(*s_folder / "late.mkv");
  EXPECT_EQ(movie.startOffset(), -3000000);
  EXPECT_DOUBLE_EQ(movie.duration().seconds(), 1);
}

TEST_F(MovieLength, GoesWithADataRateInEveryContainer) {
  const double expected = Movie::open(film()).tracks(Kind::Video).at(0).estimatedDataRate;
  for (const char* name : {"rate.mkv", "rate.ts", "rate.flv", "rate.avi", "rate.mov"}) {
    const Movie movie = remuxed(name);
    EXPECT_NEAR(movie.tracks(Kind::Video).at(0).estimatedDataRate, expected, expected / 20) << name;
    EXPECT_GT(movie.tracks(Kind::Audio).at(0).estimatedDataRate, 30000) << name;
    EXPECT_LT(movie.tracks(Kind::Audio).at(0).estimatedDataRate, 150000) << name;
  }
}

TEST_F(MovieLength, CorrectsARateThatTheFileHasNoRoomFor) {
  runFfmpeg(
      {"-i", film().string(), "-an", "-c:v", "mpeg1video", (*s_folder / "film.m1v").string()});
  const Movie movie = Movie::open(*s_folder / "film.m1v");
  EXPECT_DOUBLE_EQ(movie.duration().seconds(), 1);
  const auto bytes = static_cast<double>(std::filesystem::file_size(*s_folder / "film.m1v"));
  EXPECT_NEAR(movie.tracks(Kind::Video).at(0).estimatedDataRate, bytes * 8, bytes);
}

}  // namespace
}  // namespace vantrel
