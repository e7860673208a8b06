#include "platform/movie/movie.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include "base/cancelled.h"
#include "platform/movie/movie_error.h"
#include "support/movie_maker.h"
#include "support/temporary_folder.h"

namespace vantrel {
namespace {

using testing::runFfmpeg;
using testing::TemporaryFolder;
using testing::writeFile;
using Kind = MovieTrack::Kind;

/// Arguments for a film of one second, 320 by 240 pixels, 25 frames a second, with a tone.
std::vector<std::string> film(const std::filesystem::path& path,
                              const std::vector<std::string>& options = {}) {
  std::vector<std::string> arguments = {
      "-f", "lavfi", "-i", "testsrc2=size=320x240:rate=25:duration=1",
      "-f", "lavfi", "-i", "sine=frequency=440:sample_rate=48000:duration=1"};
  arguments.insert(arguments.end(), {"-preset", "ultrafast"});
  arguments.insert(arguments.end(), options.begin(), options.end());
  arguments.push_back(path.string());
  return arguments;
}

Movie openFilm(const std::filesystem::path& path, const std::vector<std::string>& options = {}) {
  runFfmpeg(film(path, options));
  return Movie::open(path);
}

std::string messageOf(const std::filesystem::path& path) {
  try {
    (void)Movie::open(path);
  } catch (const std::exception& error) {
    return error.what();
  }
  return {};
}

TEST(Movie, SaysWhatAQuickTimeMovieHolds) {
  const TemporaryFolder folder;
  const Movie movie = openFilm(folder / "film.mov", {"-video_track_timescale", "25000"});
  EXPECT_EQ(movie.path(), folder / "film.mov");
  EXPECT_DOUBLE_EQ(movie.duration().seconds(), 1);
  EXPECT_EQ(movie.startOffset(), 0);

  const auto video = movie.tracks(Kind::Video);
  ASSERT_EQ(video.size(), 1U);
  EXPECT_EQ(video[0].naturalSize, (PictureSize{320, 240}));
  EXPECT_EQ(video[0].storedSize, (PictureSize{320, 240}));
  EXPECT_EQ(video[0].preferredTransform, AffineTransform());
  EXPECT_DOUBLE_EQ(video[0].nominalFrameRate, 25);
  EXPECT_EQ(video[0].timescale, 25000);
  EXPECT_GT(video[0].estimatedDataRate, 10000);
  EXPECT_EQ(video[0].id, 1);
  EXPECT_TRUE(video[0].format);

  const auto audio = movie.tracks(Kind::Audio);
  ASSERT_EQ(audio.size(), 1U);
  EXPECT_EQ(audio[0].streamIndex, 1);
  EXPECT_EQ(audio[0].timescale, 48000);
  EXPECT_TRUE(audio[0].fitsQuickTime);
  EXPECT_TRUE(audio[0].hasFormatDescription);
}

TEST(Movie, RefusesWhatIsNoFile) {
  const TemporaryFolder folder;
  ASSERT_EQ(::mkfifo((folder / "pipe.mov").c_str(), 0600), 0);
  EXPECT_THROW(Movie::open(folder / "pipe.mov"), std::system_error);
  EXPECT_EQ(messageOf(folder.path()),
            "“" + folder.path().filename().string() + "” could not be opened: Is a directory");
  EXPECT_EQ(messageOf(folder / "none.mov"),
            "“none.mov” could not be opened: No such file or directory");
}

TEST(Movie, RefusesWhatIsNoMovie) {
  const TemporaryFolder folder;
  writeFile(folder / "empty.mov", "");
  EXPECT_THROW(Movie::open(folder / "empty.mov"), MovieError);
  writeFile(folder / "noise.mp4", std::string(2000, '\x5A'));
  EXPECT_EQ(messageOf(folder / "noise.mp4"),
            "“noise.mp4” could not be opened: Invalid data found when processing input");
  writeFile(folder / "notes.txt", "Some words.\nMore words.\n");
  EXPECT_THROW(Movie::open(folder / "notes.txt"), MovieError);
}

TEST(Movie, FollowsNoPlaylist) {
  const TemporaryFolder folder;
  runFfmpeg(film(folder / "film.ts"));
  writeFile(folder / "list.m3u8",
            "#EXTM3U\n#EXT-X-TARGETDURATION:1\n#EXTINF:1,\nfilm.ts\n#EXT-X-ENDLIST\n");
  EXPECT_THROW(Movie::open(folder / "list.m3u8"), MovieError);
  writeFile(folder / "list.ffconcat", "ffconcat version 1.0\nfile film.ts\n");
  EXPECT_THROW(Movie::open(folder / "list.ffconcat"), MovieError);
}

TEST(Movie, StopsWhenTold) {
  const TemporaryFolder folder;
  runFfmpeg(film(folder / "film.mov"));
  std::stop_source source;
  source.request_stop();
  EXPECT_THROW(Movie::open(folder / "film.mov", source.get_token()), Cancelled);
}

TEST(Movie, CountsTransportStreamsFromTheirStart) {
  const TemporaryFolder folder;
  const Movie movie = openFilm(folder / "film.ts");
  EXPECT_LT(movie.startOffset(), -1000000);
  EXPECT_NEAR(movie.duration().seconds(), 1, 0.1);
  EXPECT_EQ(movie.timescale(), 90000);
}

}  // namespace
}  // namespace vantrel
