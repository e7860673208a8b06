#include "platform/player/movie_pictures.h"

#include <gtest/gtest.h>

#include "platform/player/barcoded_film.h"
#include "support/temporary_folder.h"

namespace vantrel {
namespace {

using namespace testing;

constexpr int kPictures = 75;
constexpr int kRate = 25;

class MoviePicturesTest : public ::testing::Test {
 protected:
  static void SetUpTestSuite() {
    s_folder = std::make_unique<TemporaryFolder>();
    makeBarcodedFilm(film(), kPictures, h264(30));
  }
  static void TearDownTestSuite() { s_folder.reset(); }
  static std::filesystem::path film() { return *s_folder / "film.mov"; }

  static int number(const std::optional<TimedVideoPicture>& shown) {
    return barcodeOf(shown ? shown->picture.get() : nullptr);
  }
  int numberAt(int picture) { return number(m_pictures.at({picture * 2 + 1, 2 * kRate})); }

  static std::unique_ptr<TemporaryFolder> s_folder;
  const Movie m_movie = Movie::open(film());
  MoviePictures m_pictures{m_movie, m_movie.tracks(MovieTrack::Kind::Video).at(0), {}};
};
std::unique_ptr<TemporaryFolder> MoviePicturesTest::s_folder;

TEST_F(MoviePicturesTest, GivesThePictureOfATimeInAnyOrder) {
  for (const int i : {40, 0, 74, 29, 30, 31, 30, 29, 28, 27, 60, 10})
    EXPECT_EQ(numberAt(i), i);
}

TEST_F(MoviePicturesTest, StepsBackPictureByPicture) {
  for (int i = kPictures - 1; i >= 0; --i)
    EXPECT_EQ(numberAt(i), i);
}

TEST_F(MoviePicturesTest, StepsOnInLeaps) {
  for (int i = 0; i < kPictures; i += 7)
    EXPECT_EQ(numberAt(i), i);
}

TEST_F(MoviePicturesTest, GivesThePicturesThatFollowToTheLast) {
  auto shown = m_pictures.at({10, kRate});
  for (int i = 11; i < kPictures; ++i) {
    shown = m_pictures.behind(*shown, {0, 1});
    ASSERT_EQ(number(shown), i);
  }
  EXPECT_FALSE(m_pictures.behind(*shown, {0, 1}));
}

TEST_F(MoviePicturesTest, GoesOnFromAPictureThatItHadKept) {
  for (const int i : {50, 49, 48, 20})
    EXPECT_EQ(numberAt(i), i);
  auto shown = m_pictures.at({2 * 47 + 1, 2 * kRate});
  for (int i = 48; i < 60; ++i) {
    shown = m_pictures.behind(*shown, {0, 1});
    ASSERT_EQ(number(shown), i);
  }
}

TEST_F(MoviePicturesTest, LeavesOutPicturesThatComeTooLate) {
  auto shown = m_pictures.at({0, 1});
  shown = m_pictures.behind(*shown, {2 * 21 + 1, 2 * kRate});
  EXPECT_EQ(number(shown), 21);
  shown = m_pictures.behind(*shown, {0, 1});
  EXPECT_EQ(number(shown), 22);
  // Later than all.
  shown = m_pictures.behind(*shown, {100, 1});
  EXPECT_EQ(number(shown), kPictures - 1);
  EXPECT_FALSE(m_pictures.behind(*shown, {200, 1}));
}

TEST_F(MoviePicturesTest, GivesTheLastPictureForTimesBehindTheEnd) {
  for (const MediaTime time : {MediaTime{3, 1}, MediaTime{INT64_MAX, 1}, MediaTime{INT64_MAX, 7}})
    EXPECT_EQ(number(m_pictures.at(time)), kPictures - 1);
  EXPECT_EQ(numberAt(3), 3);
}

TEST_F(MoviePicturesTest, GivesTheFirstPictureForTimesBeforeTheStart) {
  EXPECT_EQ(numberAt(30), 30);
  EXPECT_EQ(number(m_pictures.at({-1, 1})), 0);
  EXPECT_EQ(number(m_pictures.at({INT64_MIN, 3})), 0);
}

TEST_F(MoviePicturesTest, TakesATickForWhatItIs) {
  // Picture 10 begins at 0.4 s; the ticks of the question are finer and coarser than the film's.
  EXPECT_EQ(number(m_pictures.at({400'000'000, 1'000'000'000})), 10);
  EXPECT_EQ(number(m_pictures.at({399'999'999, 1'000'000'000})), 9);
  EXPECT_EQ(number(m_pictures.at({240, 600})), 10);
  EXPECT_EQ(number(m_pictures.at({239, 600})), 9);
}

TEST_F(MoviePicturesTest, GivesAPictureOutOfTheCacheAgain) {
  const auto first = m_pictures.at({20, kRate});
  EXPECT_EQ(numberAt(70), 70);
  EXPECT_EQ(m_pictures.at({20, kRate})->picture, first->picture);
}

}  // namespace
}  // namespace vantrel
