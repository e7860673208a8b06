#include "platform/movie/picture_decoder.h"

#include <gmock/gmock.h>

#include <array>
#include <fstream>
#include <random>

#include "platform/movie/box_bytes.h"
#include "platform/movie/fragment_runs.h"
#include "platform/movie/numbered_film.h"
#include "support/quicktime_maker.h"
#include "support/temporary_folder.h"

namespace vantrel {
namespace {

using namespace testing;
using ::testing::ElementsAre;
using ::testing::ElementsAreArray;

class PictureDecoderTest : public ::testing::Test {
 protected:
  /// Five pictures of 40 milliseconds, the last of a second; `options` may add sound. Versions of
  /// ffmpeg count durations of copied packets in ticks of the source or of the destination: both
  /// are milliseconds.
  void makeFilmOfLongLast(const std::filesystem::path& mkv,
                          const std::vector<std::string>& options = {}) const {
    makeNumberedFilm(m_mov, {"-video_track_timescale", "1000"}, "", 5);
    std::vector<std::string> arguments = {"-i", m_mov};
    arguments.insert(arguments.end(), options.begin(), options.end());
    arguments.insert(arguments.end(), {"-c:v", "copy", "-bsf:v",
                                       "setts=duration='if(eq(N,4),1000,40)'", mkv.string()});
    runFfmpeg(arguments);
  }

  TemporaryFolder m_folder;
  const std::filesystem::path m_mov = m_folder / "film.mov";
};

/// Edits in ticks of the movie, a thousand a second; a picture lasts 40.
class EditedMovie : public PictureDecoderTest {
 protected:
  void SetUp() override { makeNumberedFilm(m_mov); }

  /// Where a picture stands in the media, which B pictures move by two.
  static int32_t mediaTime(double picture) {
    return static_cast<int32_t>((picture + 2) * kPictureTicks);
  }
  std::vector<Shown> with(const std::vector<MadeEdit>& edits) {
    setEdits(m_mov, 1, edits);
    return shownPictures(m_mov);
  }
};

TEST_F(PictureDecoderTest, GivesEachPictureOnceAtItsTime) {
  makeNumberedFilm(m_mov);
  EXPECT_THAT(shownPictures(m_mov), ElementsAreArray(steadily(0, 24)));
}

TEST_F(PictureDecoderTest, KeepsTimesThatAreNotEven) {
  // Behind each tenth picture, two seconds pass.
  makeNumberedFilm(m_mov, {"-fps_mode", "vfr", "-enc_time_base", "1:12800"},
                   ",settb=1/12800,setpts='512*N+25600*floor(N/10)'");
  std::vector<Shown> expected;
  for (int i = 0; i < kPictures; ++i) {
    const int64_t time = 512 * i + 25600 * (i / 10);
    expected.push_back({i, time, i % 10 == 9 ? 26112 : 512});
  }
  auto pictures = shownPictures(m_mov);
  ASSERT_EQ(pictures.size(), expected.size());
  EXPECT_EQ(pictures.back().time, expected.back().time);
  expected.back().duration = pictures.back().duration;
  EXPECT_THAT(pictures, ElementsAreArray(expected));
}

TEST_F(PictureDecoderTest, ShowsTheLastPictureOfMatroskaUntilTheFilmEnds) {
  // Packets of Matroska give the last picture the time of the others.
  const auto mkv = m_folder / "film.mkv";
  makeFilmOfLongLast(mkv);
  const int64_t end = std::llround(
      std::stod(runFfprobe({"-show_entries", "format=duration", "-of", "csv=p=0", mkv.string()})) *
      1000);
  const auto pictures = shownPictures(mkv);
  ASSERT_EQ(pictures.size(), 5U);
  EXPECT_GT(end, 1000);
  EXPECT_EQ(pictures.back().time + pictures.back().duration, end);
}

TEST_F(PictureDecoderTest, ShowsTheLastPictureUntilItsTrackEndsWhereSoundGoesOn) {
  const auto mkv = m_folder / "film.mkv";
  makeFilmOfLongLast(mkv, {"-f", "lavfi", "-i", "sine=d=3", "-c:a", "aac"});
  const auto pictures = shownPictures(mkv);
  ASSERT_EQ(pictures.size(), 5U);
  EXPECT_NEAR(static_cast<double>(pictures.back().duration), 1000, 1);
}

TEST_F(PictureDecoderTest, ShowsTheLastPictureOfAviAsLongAsTheOthers) {
  const auto avi = m_folder / "film.avi";
  makeNumberedFilm(avi, {"-bf", "0"});
  const auto pictures = shownPictures(avi);
  ASSERT_EQ(pictures.size(), static_cast<size_t>(kPictures));
  EXPECT_EQ(pictures.back().duration, pictures.front().duration);
}

TEST_F(PictureDecoderTest, CountsTimesOfEveryContainerFromItsStart) {
  const std::vector<std::pair<std::string, std::vector<std::string>>> films = {
      {"film.mp4", {}},
      {"fragments.mp4", {"-movflags", "frag_keyframe+delay_moov+default_base_moof"}},
      {"dash.mp4", {"-movflags", "dash+delay_moov"}},
      {"negative.mp4", {"-movflags", "negative_cts_offsets"}},
      {"negative_fragments.mp4",
       {"-movflags", "frag_keyframe+empty_moov+default_base_moof+negative_cts_offsets"}},
      {"negative_behind_tables.mp4", {"-movflags", "frag_keyframe+negative_cts_offsets"}},
      {"film.mkv", {}},
      {"film.ts", {}},
      // Half a second before the clock of 33 bits starts again.
      {"wrapped.ts", {"-output_ts_offset", "95443", "-muxdelay", "0"}},
      {"film.avi", {"-c:v", "mpeg4", "-q:v", "2", "-bf", "2"}},
      {"h264.avi", {}},
      {"film.webm", {"-c:v", "libvpx", "-b:v", "1M", "-deadline", "realtime"}},
      {"film.mpg", {"-c:v", "mpeg2video", "-q:v", "2", "-bf", "2"}},
      {"film.3gp", {}},
  };
  for (const auto& [name, options] : films) {
    SCOPED_TRACE(name);
    makeNumberedFilm(m_folder / name, options);
    const Movie movie = Movie::open(m_folder / name);
    PictureDecoder decoder(movie, movie.tracks(MovieTrack::Kind::Video).at(0), {});
    int count = 0;
    for (; const auto picture = decoder.next(); ++count) {
      EXPECT_EQ(numberOf(*picture->frame), count);
      // Some containers count in milliseconds.
      EXPECT_NEAR(picture->time.seconds(), count / 25.0, 0.0006);
      EXPECT_NEAR(picture->duration.seconds(), 0.04, 0.0011);
    }
    EXPECT_EQ(count, kPictures);
  }
}

/// Moves the pictures of each fragment but the first one picture ahead of themselves in the order
/// of decoding; they are shown as before.
void lowerOffsets(const std::filesystem::path& path) {
  BoxFile boxes(path);
  std::fstream file(path, std::ios::in | std::ios::out | std::ios::binary);
  const auto add = [&](uint64_t at, int32_t ticks) {
    std::array<uint8_t, 4> field{};
    ASSERT_EQ(boxes.readAt(at, field), field.size());
    const uint32_t sum = ByteCursor(field).u32() + static_cast<uint32_t>(ticks);
    file.seekp(static_cast<std::streamoff>(at));
    file << bigEndian(sum, 4);
  };
  auto moof = boxes.find(fourCC("moof"), 0, boxes.size());
  while ((moof = boxes.find(fourCC("moof"), moof->end, boxes.size()))) {
    const FileBox traf = boxes.child(*moof, fourCC("traf")).value();
    add(boxes.child(traf, fourCC("tfdt")).value().end - 4, kPictureTicks);
    forEachRun(boxes, *moof, [&add](const FragmentRun& run) {
      for (uint64_t i = 1; i <= run.sampleCount; ++i)
        add(run.box.payload + run.start + i * run.sampleSize - 4, -kPictureTicks);
    });
  }
}

TEST_F(PictureDecoderTest, KnowsHowFarLaterFragmentsGoBelowTheirDecodingTimes) {
  const std::string flags = "empty_moov+default_base_moof+negative_cts_offsets+";
  for (const char* more : {"frag_keyframe", "dash+global_sidx"}) {
    SCOPED_TRACE(more);
    const auto film = m_folder / "film.mp4";
    makeNumberedFilm(film, {"-movflags", flags + more});
    lowerOffsets(film);
    EXPECT_THAT(shownPictures(film), ElementsAreArray(steadily(0, 24)));
  }
}

TEST_F(EditedMovie, StartsLaterBehindAnEmptyEdit) {
  EXPECT_THAT(with({{500, -1}, {1000, mediaTime(0)}}), ElementsAreArray(steadily(0, 24, 6400)));
}

TEST_F(EditedMovie, ShowsAllWithoutEdits) {
  EXPECT_THAT(with({}), ElementsAreArray(steadily(0, 24, 1024)));
}

TEST_F(EditedMovie, StartsBetweenKeyPictures) {
  EXPECT_THAT(with({{720, mediaTime(7)}}), ElementsAreArray(steadily(7, 24)));
}

TEST_F(EditedMovie, ShowsTheRestOfThePictureThatAnEditStartsIn) {
  auto expected = steadily(8, 24, 256);
  expected.insert(expected.begin(), {7, 0, 256});
  EXPECT_THAT(with({{700, mediaTime(7.5)}}), ElementsAreArray(expected));
}

TEST_F(EditedMovie, EndsWithinAPicture) {
  auto expected = steadily(0, 10);
  expected.back().duration = 256;
  EXPECT_THAT(with({{420, mediaTime(0)}}), ElementsAreArray(expected));
}

TEST_F(EditedMovie, TakesAnEndThatIsOnlyRoundedForThatOfThePicture) {
  // The movie's ticks have 12.8 of the track's.
  auto expected = steadily(0, 9, -5);
  expected.front() = {0, 0, 507};
  EXPECT_THAT(with({{400, mediaTime(0) + 5}}), ElementsAreArray(expected));
  EXPECT_THAT(with({{400, mediaTime(0) - 5}}), ElementsAreArray(steadily(0, 9, 5)));
  EXPECT_EQ(with({{999, mediaTime(0)}}).back(), (Shown{24, 24 * 512, 499}));
}

TEST_F(EditedMovie, HoldsTheLastPictureToTheEndOfItsEdit) {
  EXPECT_EQ(with({{1500, mediaTime(0)}}).back(), (Shown{24, 24 * 512, 512 + 6400}));
}

TEST_F(EditedMovie, ShowsPicturesOfOverlappingEditsAgain) {
  auto expected = steadily(0, 14);
  const auto again = steadily(8, 24, 15 * 512);
  expected.insert(expected.end(), again.begin(), again.end());
  EXPECT_THAT(with({{600, mediaTime(0)}, {680, mediaTime(8)}}), ElementsAreArray(expected));
}

TEST_F(EditedMovie, ShowsEditsInTheirOrderWithGaps) {
  auto expected = steadily(15, 19);
  expected.push_back({3, 10 * 512, 512});
  expected.push_back({4, 11 * 512, 256});
  EXPECT_THAT(with({{200, mediaTime(15)}, {200, -1}, {60, mediaTime(3)}}),
              ElementsAreArray(expected));
}

TEST_F(EditedMovie, HoldsThePictureOfAnEditThatStandsStill) {
  EXPECT_THAT(with({{400, mediaTime(5), 0}, {80, mediaTime(6)}}),
              ElementsAre(Shown{5, 0, 5120}, Shown{6, 5120, 512}, Shown{7, 5632, 512}));
}

TEST_F(EditedMovie, FailsWhenItShowsNothing) {
  EXPECT_THROW(with({{1000, -1}}), std::runtime_error);
}

TEST_F(EditedMovie, SeeksToThePictureShownAtATime) {
  setEdits(m_mov, 1, {{600, mediaTime(0)}, {680, mediaTime(8)}});
  const Movie movie = Movie::open(m_mov);
  PictureDecoder decoder(movie, movie.tracks(MovieTrack::Kind::Video).at(0), {});
  for (const int64_t time : {7000, 0, 7680, 511, 12000, 8191, 16383}) {
    decoder.seek({time, kTicks});
    const int64_t position = time / 512;
    const int64_t number = position < 15 ? position : position - 15 + 8;
    const auto picture = decoder.next();
    ASSERT_TRUE(picture) << time;
    EXPECT_EQ(shown(*picture), (Shown{static_cast<int>(number), position * 512, 512}));
  }
  decoder.seek({16384, kTicks});
  EXPECT_FALSE(decoder.next());
}

TEST_F(EditedMovie, SeeksToAnyTimeOfAnyEdits) {
  const std::vector<std::vector<MadeEdit>> lists = {
      {{600, mediaTime(0)}, {680, mediaTime(8)}},
      {{700, mediaTime(7.5)}},
      {{200, -1}, {300, mediaTime(12)}, {100, -1}, {440, mediaTime(2)}, {200, mediaTime(14)}},
      {{400, mediaTime(5), 0}, {480, mediaTime(6)}}};
  std::mt19937 random(4);
  for (const auto& edits : lists) {
    const std::vector<Shown> all = with(edits);
    const Movie movie = Movie::open(m_mov);
    PictureDecoder decoder(movie, movie.tracks(MovieTrack::Kind::Video).at(0), {});
    for (int i = 0; i < 100; ++i) {
      const auto time = static_cast<int64_t>(random() % 14000);
      // Now and then several pictures in front are asked for, and some behind are taken.
      const int64_t lead = random() % 3 == 0 ? 2000 : 0;
      decoder.seek({time, kTicks}, {lead, kTicks});
      const auto isBehind = [](int64_t from) {
        return [from](const Shown& picture) { return picture.time + picture.duration > from; };
      };
      const auto expected = std::find_if(all.begin(), all.end(), isBehind(time));
      const auto earliest = std::find_if(all.begin(), all.end(), isBehind(time - lead));
      auto given = decoder.next();
      ASSERT_TRUE(given || expected == all.end()) << time;
      if (!given) continue;
      auto next = std::find(all.begin(), all.end(), shown(*given));
      ASSERT_NE(next, all.end()) << time;
      EXPECT_GE(next, earliest) << time;
      EXPECT_LE(next, expected) << time;
      for (auto taken = random() % 6; taken > 0 && ++next != all.end(); --taken) {
        given = decoder.next();
        ASSERT_TRUE(given) << time;
        EXPECT_EQ(shown(*given), *next);
      }
    }
  }
}

TEST_F(PictureDecoderTest, GivesThePicturesInFrontOfATimeFromTheKeyPictureOn) {
  makeNumberedFilm(m_mov);
  const Movie movie = Movie::open(m_mov);
  PictureDecoder decoder(movie, movie.tracks(MovieTrack::Kind::Video).at(0), {});
  const std::vector<std::pair<int, std::pair<int, int>>> leads = {
      {18, {3, 15}}, {18, {20, 10}}, {24, {0, 24}}, {3, {25, 0}}, {12, {1, 11}}};
  for (const auto& [number, lead] : leads) {
    decoder.seek({24 * kPictureTicks, kTicks});
    EXPECT_EQ(numberOf(*decoder.next()->frame), 24);
    decoder.seek({number * kPictureTicks, kTicks}, {lead.first * kPictureTicks, kTicks});
    for (int expected = lead.second; expected <= number; ++expected)
      EXPECT_EQ(numberOf(*decoder.next()->frame), expected);
  }
}

TEST_F(PictureDecoderTest, SeeksAnewBeforeAnyPictureWasTaken) {
  makeNumberedFilm(m_mov, {"-g", "30"});
  const Movie movie = Movie::open(m_mov);
  PictureDecoder decoder(movie, movie.tracks(MovieTrack::Kind::Video).at(0), {});
  for (const int number : {23, 5, 20, 19, 3, 4}) {
    decoder.seek({24 * kPictureTicks, kTicks});
    decoder.seek({number * kPictureTicks, kTicks});
    EXPECT_EQ(numberOf(*decoder.next()->frame), number);
  }
}

TEST_F(PictureDecoderTest, SeeksInEveryContainer) {
  const std::vector<std::pair<std::string, std::vector<std::string>>> films = {
      {"film.mkv", {}},
      {"film.ts", {}},
      {"open.mov", {"-flags", "-cgop"}},
      {"fragments.mp4", {"-movflags", "frag_keyframe+delay_moov"}}};
  for (const auto& [name, options] : films) {
    SCOPED_TRACE(name);
    makeNumberedFilm(m_folder / name, options);
    const Movie movie = Movie::open(m_folder / name);
    PictureDecoder decoder(movie, movie.tracks(MovieTrack::Kind::Video).at(0), {});
    for (const int number : {13, 0, 24, 9, 10, 11, 5}) {
      decoder.seek({number * 40 + 20, 1000});
      const auto picture = decoder.next();
      ASSERT_TRUE(picture) << number;
      EXPECT_EQ(numberOf(*picture->frame), number);
    }
  }
}

}  // namespace
}  // namespace vantrel
