#include <gtest/gtest.h>

#include <cmath>
#include <random>

#include "platform/player/movie_pictures.h"
#include "platform/player/player_session.h"
#include "support/temporary_folder.h"

namespace vantrel {
namespace {

using namespace testing;

constexpr int kPictures = 130;
constexpr int kSeeks = 200;

/// A film, and when its pictures begin.
struct SeekCase {
  const char* name;
  const char* file;
  std::vector<std::string> options;
  /// Begins with a comma.
  const char* filter = "";
  std::function<double(int)> start = [](int picture) { return picture / 25.0; };
};

/// The gaps between the pictures are from 20 to 110 milliseconds.
double unevenStart(int picture) {
  return (picture * 60 + picture * 7 % 11 * 5 - picture % 2 * 10) / 1000.0;
}

std::vector<SeekCase> seekCases() {
  const std::vector<std::string> hevc{
      "-c:v",     "libx265",     "-preset",      "ultrafast",
      "-pix_fmt", "yuv420p10le", "-x265-params", "log-level=none:keyint=50:bframes=4:b-pyramid=1"};
  auto uneven = h264(60);
  uneven.insert(uneven.end(), {"-fps_mode", "vfr", "-enc_time_base", "1:1000"});
  auto open = h264(20);
  open.insert(open.end(), {"-flags", "-cgop"});
  auto fragments = h264(20);
  fragments.insert(fragments.end(), {"-movflags", "frag_keyframe+delay_moov"});
  const std::vector<std::string> vp9{"-c:v",      "libvpx-vp9", "-deadline", "realtime",
                                     "-cpu-used", "8",          "-b:v",      "1M",
                                     "-g",        "40",         "-pix_fmt",  "yuv420p"};
  const std::vector<std::string> vp8{
      "-c:v",     "libvpx",         "-deadline", "good", "-cpu-used", "5",  "-auto-alt-ref",
      "1",        "-lag-in-frames", "16",        "-b:v", "1M",        "-g", "40",
      "-pix_fmt", "yuv420p"};
  return {{"LongGroupsOfH264", "film.mp4", h264(250)},
          {"OpenGroupsOfH264", "film.mov", open},
          {"TenBitsOfHevc", "film.mp4", hevc},
          {"UnevenTimes", "film.mp4", uneven,
           ",settb=1/1000,setpts='60*N+mod(N*7,11)*5-mod(N,2)*10'", unevenStart},
          {"UnevenTimesOfMatroska", "film.mkv", uneven,
           ",settb=1/1000,setpts='60*N+mod(N*7,11)*5-mod(N,2)*10'", unevenStart},
          {"Vp9InWebm", "film.webm", vp9},
          {"Vp8InWebm", "film.webm", vp8},
          {"H264InATransportStream", "film.ts", h264(50)},
          {"HevcInATransportStream", "film.ts", hevc},
          {"Fragments", "film.mp4", fragments},
          {"KeyPicturesOnly", "film.avi", {"-c:v", "mjpeg", "-q:v", "2"}}};
}

class ExactSeek : public ::testing::TestWithParam<SeekCase> {
 protected:
  void SetUp() override {
    makeBarcodedFilm(m_file, kPictures, GetParam().options, GetParam().filter);
  }
  /// In microseconds, a little within the picture's time at its borders; and the picture.
  std::pair<int64_t, int> randomTime() {
    const int picture = static_cast<int>(m_random() % (kPictures - 1));
    const double start = GetParam().start(picture), end = GetParam().start(picture + 1);
    const auto from = static_cast<int64_t>(std::llround(start * 1e6)) + kMargin;
    const auto length = static_cast<int64_t>(std::llround((end - start) * 1e6)) - 2 * kMargin;
    return {from + static_cast<int64_t>(m_random() % static_cast<uint64_t>(length)), picture};
  }

  /// Some containers count in milliseconds.
  static constexpr int64_t kMargin = 1000;

  std::mt19937_64 m_random{20};
  TemporaryFolder m_folder;
  const std::filesystem::path m_file = m_folder / GetParam().file;
};

TEST_P(ExactSeek, DecodesThePictureOfEachTime) {
  const Movie movie = Movie::open(m_file);
  // Without room for pictures, each of them is decoded.
  MoviePictures pictures(movie, movie.tracks(MovieTrack::Kind::Video).at(0), {}, 0);
  for (int i = 0; i < kSeeks; ++i) {
    const auto [time, picture] = randomTime();
    const auto found = pictures.at({time, 1'000'000});
    EXPECT_EQ(barcodeOf(found ? found->picture.get() : nullptr), picture) << time << " µs";
  }
}

TEST_P(ExactSeek, LandsOnThePictureOfEachTime) {
  MoviePlayer player(Movie::open(m_file));
  for (int i = 0; i < kSeeks; ++i) {
    const auto [time, picture] = randomTime();
    EXPECT_EQ(numberSoughtAt(player, {time, 1'000'000}), picture) << time << " µs";
  }
}

TEST_P(ExactSeek, StepsBackAndOnExactly) {
  MoviePlayer player(Movie::open(m_file));
  const auto middleOf = [](int picture) {
    const double middle = (GetParam().start(picture) + GetParam().start(picture + 1)) / 2;
    return MediaTime{std::llround(middle * 1e6), 1'000'000};
  };
  for (int picture = 100; picture > 60; --picture)
    EXPECT_EQ(numberSoughtAt(player, middleOf(picture)), picture);
  for (int picture = 60; picture < kPictures - 1; picture += 3)
    EXPECT_EQ(numberSoughtAt(player, middleOf(picture)), picture);
}

INSTANTIATE_TEST_SUITE_P(Films, ExactSeek, ::testing::ValuesIn(seekCases()),
                         [](const auto& test) { return test.param.name; });

}  // namespace
}  // namespace vantrel
