#include <gtest/gtest.h>

#include <random>

#include "platform/movie/movie.h"
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
using testing::withFlippedBits;
using Kind = MovieTrack::Kind;

/// Whether a file can be opened; false for errors that a user can be told.
bool opens(const std::filesystem::path& path) {
  try {
    (void)Movie::open(path);
    return true;
  } catch (const MovieError&) {
    return false;
  }
}

class MovieDamage : public ::testing::TestWithParam<const char*> {};

TEST_P(MovieDamage, IsToldOrOvercome) {
  const TemporaryFolder folder;
  const auto path = folder / GetParam();
  makeFilm(path, {"-t", "0.2", "-vf", "scale=64:48", "-g", "2"});
  const Bytes whole = loadBytes(path);
  ASSERT_TRUE(opens(path));
  std::mt19937 random(7);
  int opened = 0;
  for (uint32_t round = 0; round < 60; ++round) {
    saveBytes(path, withFlippedBits(whole, 1 + round * 2, random));
    opened += opens(path) ? 1 : 0;
  }
  // Most damage is in pictures and sound.
  EXPECT_GT(opened, 0);
}

TEST_P(MovieDamage, OfAFileThatEndsEarlyIsToldOrOvercome) {
  const TemporaryFolder folder;
  const auto path = folder / GetParam();
  makeFilm(path, {"-t", "0.2", "-vf", "scale=64:48"});
  const Bytes whole = loadBytes(path);
  for (size_t part = 0; part < 24; ++part) {
    const size_t size = whole.size() * part / 24;
    saveBytes(path, Bytes(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(size)));
    (void)opens(path);
  }
  saveBytes(path, {});
  EXPECT_FALSE(opens(path));
}

INSTANTIATE_TEST_SUITE_P(Containers, MovieDamage,
                         ::testing::Values("film.mp4", "film.mov", "film.mkv", "film.ts",
                                           "film.avi"));

TEST(MovieDamage, OfTheFirstPictureDoesNotHideTheTrack) {
  const TemporaryFolder folder;
  const auto path = folder / "film.mp4";
  makeFilm(path, {"-an"});
  Bytes bytes = loadBytes(path);
  const size_t data = findBox(bytes, "mdat") + 4;
  const size_t header = findBox(bytes, "moov");
  std::fill(bytes.begin() + static_cast<std::ptrdiff_t>(data),
            bytes.begin() + static_cast<std::ptrdiff_t>(header - 4), 0xFF);
  saveBytes(path, bytes);
  const auto tracks = Movie::open(path).tracks(Kind::Video);
  ASSERT_EQ(tracks.size(), 1U);
  EXPECT_EQ(tracks[0].storedSize, (PictureSize{320, 240}));
}

TEST(MovieDamage, OfTheEditsDoesNotHideTheLength) {
  const TemporaryFolder folder;
  const auto path = folder / "film.mp4";
  makeFilm(path, {"-an"});
  Bytes bytes = loadBytes(path);
  put32(bytes, findBox(bytes, "mvhd") + 16, 1);
  put32(bytes, findBox(bytes, "elst") + 12, 0xFFFFFFFE);
  saveBytes(path, bytes);
  EXPECT_EQ(Movie::open(path).duration(), (MediaTime{1, 1}));
}

TEST(MovieDamage, OfATableThatClaimsMoreSamplesThanTheFileHasBytesIsRefused) {
  const TemporaryFolder folder;
  const auto path = folder / "film.mp4";
  makeFilm(path, {"-an"});
  Bytes bytes = loadBytes(path);
  const size_t sizes = findBox(bytes, "stsz");
  put32(bytes, sizes + 8, 1);
  put32(bytes, sizes + 12, 0x0FFFFFFF);
  saveBytes(path, bytes);
  EXPECT_FALSE(opens(path));
}

TEST(MovieDamage, OfAFragmentThatClaimsMoreSamplesThanTheFileHasBytesIsRefused) {
  const TemporaryFolder folder;
  const auto path = folder / "film.mp4";
  makeFilm(path, {"-an", "-movflags", "frag_keyframe+empty_moov"});
  Bytes bytes = loadBytes(path);
  ASSERT_TRUE(opens(path));
  put32(bytes, findBox(bytes, "trun") + 8, 0x0FFFFFFF);
  saveBytes(path, bytes);
  EXPECT_FALSE(opens(path));
  // Without a movie header that makes sense.
  put32(bytes, findBox(bytes, "mvhd") + 16, 0);
  saveBytes(path, bytes);
  EXPECT_FALSE(opens(path));
}

/// A fragmented film, whose demuxer would be busy for seconds at each fragment.
TEST(MovieDamage, OfTheNumberOfATrackWithFragmentsIsRefused) {
  const TemporaryFolder folder;
  const auto path = folder / "film.mp4";
  makeFilm(path, {"-an", "-movflags", "frag_keyframe+empty_moov"});
  const Bytes whole = loadBytes(path);
  const size_t header = findBox(whole, "tkhd");
  const size_t track = findBox(whole, "trak");
  for (const auto& [place, value] : {std::pair(header, 0x346B6864U),
                                     {header + 16, 0x80000001U},
                                     {track - 4, 0x7FFFFFFFU},
                                     {track - 4, 4U}}) {
    Bytes bytes = whole;
    put32(bytes, place, value);
    saveBytes(path, bytes);
    EXPECT_FALSE(opens(path)) << value;
  }
  // Such a header is of no harm where there are no fragments.
  makeFilm(path, {"-an"});
  Bytes bytes = loadBytes(path);
  put32(bytes, findBox(bytes, "tkhd") + 16, 0x80000001);
  saveBytes(path, bytes);
  EXPECT_TRUE(opens(path));
}

}  // namespace
}  // namespace vantrel
