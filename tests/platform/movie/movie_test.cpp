#include "platform/movie/movie.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include "base/cancelled.h"
#include "platform/movie/movie_error.h"
#include "platform/movie/test_film.h"

namespace vantrel {
namespace {

using testing::Bytes;
using testing::findBox;
using testing::loadBytes;
using testing::makeFilm;
using testing::put32;
using testing::saveBytes;
using testing::TemporaryFolder;
using testing::writeFile;
using Kind = MovieTrack::Kind;

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
  makeFilm(folder / "film.mov", {"-video_track_timescale", "25000"});
  const Movie movie = Movie::open(folder / "film.mov");
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
  makeFilm(folder / "film.ts");
  writeFile(folder / "list.m3u8",
            "#EXTM3U\n#EXT-X-TARGETDURATION:1\n#EXTINF:1,\nfilm.ts\n#EXT-X-ENDLIST\n");
  EXPECT_THROW(Movie::open(folder / "list.m3u8"), MovieError);
  writeFile(folder / "list.ffconcat", "ffconcat version 1.0\nfile film.ts\n");
  EXPECT_THROW(Movie::open(folder / "list.ffconcat"), MovieError);
}

TEST(Movie, StopsWhenTold) {
  const TemporaryFolder folder;
  makeFilm(folder / "film.mov");
  std::stop_source source;
  source.request_stop();
  EXPECT_THROW(Movie::open(folder / "film.mov", source.get_token()), Cancelled);
}

TEST(Movie, SaysWhichSoundFitsAQuickTimeMovie) {
  const TemporaryFolder folder;
  const auto fits = [&folder](const char* codec, const char* name) {
    makeFilm(folder / name, {"-vn", "-t", "0.2", "-c:a", codec});
    return Movie::open(folder / name).tracks(Kind::Audio).at(0).fitsQuickTime;
  };
  for (const char* codec : {"aac", "alac", "ac3", "eac3", "mp2", "libmp3lame", "pcm_s16le"}) {
    EXPECT_TRUE(fits(codec, "sound.mkv")) << codec;
  }
  for (const char* codec : {"pcm_s24be", "pcm_f32le", "pcm_mulaw", "pcm_alaw"}) {
    EXPECT_TRUE(fits(codec, "sound.mov")) << codec;
  }
  for (const char* codec : {"libopus", "flac", "libvorbis", "wavpack", "wmav2"}) {
    EXPECT_FALSE(fits(codec, "sound.mkv")) << codec;
  }
}

TEST(Movie, NamesTheLanguageOfItsTracks) {
  const TemporaryFolder folder;
  makeFilm(folder / "film.mov", {"-t", "0.2", "-metadata:s:a", "language=ger"});
  const Movie movie = Movie::open(folder / "film.mov");
  EXPECT_EQ(movie.tracks(Kind::Audio).at(0).languageCode, "ger");
  EXPECT_EQ(movie.tracks(Kind::Video).at(0).languageCode, "");
  EXPECT_EQ(movie.tracks(Kind::Audio).at(0).extendedLanguageTag, std::nullopt);
}

TEST(Movie, TakesWhatAFileSaysOfATrackWithoutBoxesFromItsTags) {
  const TemporaryFolder folder;
  makeFilm(folder / "film.mkv",
           {"-t", "0.2", "-metadata:s:a", "language=fre", "-metadata:s:a", "title=Version longue"});
  const MovieTrack track = Movie::open(folder / "film.mkv").tracks(Kind::Audio).at(0);
  EXPECT_EQ(track.title, "Version longue");
  EXPECT_EQ(track.languageCode, "fre");
  EXPECT_TRUE(track.isEnabled);
  EXPECT_FALSE(track.quickTime);
}

TEST(Movie, FindsTheBoxesOfATrackByItsNumber) {
  const TemporaryFolder folder;
  makeFilm(folder / "film.mov", {"-t", "0.2"});
  Bytes bytes = loadBytes(folder / "film.mov");
  const size_t first = findBox(bytes, "tkhd");
  put32(bytes, first + 16, 7);
  saveBytes(folder / "film.mov", bytes);
  const Movie movie = Movie::open(folder / "film.mov");
  EXPECT_EQ(movie.tracks(Kind::Video).at(0).id, 7);
  EXPECT_EQ(movie.tracks(Kind::Video).at(0).quickTime.value().trackID, 7U);
  EXPECT_EQ(movie.tracks(Kind::Audio).at(0).quickTime.value().handler, "soun");
}

}  // namespace
}  // namespace vantrel
