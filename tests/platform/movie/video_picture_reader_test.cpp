#include "platform/movie/video_picture_reader.h"

#include <gtest/gtest.h>

#include <cmath>
#include <fstream>
#include <random>

#include "base/cancelled.h"
#include "platform/movie/numbered_film.h"
#include "support/temporary_folder.h"

namespace vantrel {
namespace {

using namespace testing;

int numberOf(const VideoPicture& picture) {
  const PlaneView& luma = picture.planes[0];
  return static_cast<int>(std::lround((luma.row(luma.height / 2)[luma.width / 2] - 20) / 8.0));
}

class VideoPictureReaderTest : public ::testing::Test {
 protected:
  [[nodiscard]] VideoPictureReader open(const std::stop_token& stop = {}) const {
    const Movie movie = Movie::open(m_file);
    return VideoPictureReader(movie, movie.tracks(MovieTrack::Kind::Video).at(0), stop);
  }
  /// The first picture of a film made of one of ffmpeg's sources.
  [[nodiscard]] std::shared_ptr<const VideoPicture> firstOf(
      const std::string& source, const std::vector<std::string>& options) {
    std::vector<std::string> arguments{"-f", "lavfi", "-i", source, "-frames:v", "2"};
    arguments.insert(arguments.end(), options.begin(), options.end());
    arguments.push_back(m_file.string());
    runFfmpeg(arguments);
    return open().next()->picture;
  }

  TemporaryFolder m_folder;
  std::filesystem::path m_file = m_folder / "film.mov";
};

TEST_F(VideoPictureReaderTest, GivesEachPictureOnceAtItsTime) {
  makeNumberedFilm(m_file);
  VideoPictureReader reader = open();
  for (int i = 0; i < kPictures; ++i) {
    const auto shown = reader.next();
    ASSERT_TRUE(shown);
    EXPECT_EQ(numberOf(*shown->picture), i);
    EXPECT_EQ(shown->time, (MediaTime{i * kPictureTicks, kTicks}));
    EXPECT_EQ(shown->duration, (MediaTime{kPictureTicks, kTicks}));
  }
  EXPECT_FALSE(reader.next());
}

TEST_F(VideoPictureReaderTest, SeeksToThePictureThatIsShown) {
  makeNumberedFilm(m_file);
  VideoPictureReader reader = open();
  std::mt19937 random(7);
  for (int i = 0; i < 40; ++i) {
    const int64_t time = static_cast<int64_t>(random() % (kPictures * kPictureTicks));
    reader.seek({time, kTicks});
    const auto shown = reader.next();
    ASSERT_TRUE(shown);
    EXPECT_EQ(numberOf(*shown->picture), time / kPictureTicks);
  }
}

TEST_F(VideoPictureReaderTest, SeeksBackFromTheEndAndBeforeTheStart) {
  makeNumberedFilm(m_file);
  VideoPictureReader reader = open();
  reader.seek({1000, 1});
  EXPECT_FALSE(reader.next());
  reader.seek({-5, 1});
  EXPECT_EQ(numberOf(*reader.next()->picture), 0);
}

TEST_F(VideoPictureReaderTest, KeepsPicturesThatAreHeld) {
  makeNumberedFilm(m_file);
  VideoPictureReader reader = open();
  std::vector<TimedVideoPicture> all;
  while (auto shown = reader.next())
    all.push_back(*shown);
  for (size_t i = 0; i < all.size(); ++i)
    EXPECT_EQ(numberOf(*all[i].picture), static_cast<int>(i));
}

TEST_F(VideoPictureReaderTest, TellsDepthAndColor) {
  const auto picture =
      firstOf("testsrc2=s=64x48",
              {"-vf", "format=yuv422p10," + colorFilter("bt2020", "smpte2084", "bt2020nc"), "-c:v",
               "libx264", "-preset", "ultrafast"});
  EXPECT_EQ(picture->depth, 10);
  EXPECT_EQ(picture->chromaShiftX, 1);
  EXPECT_EQ(picture->chromaShiftY, 0);
  EXPECT_EQ(picture->color, (ColorTags{9, 16, 9}));
  EXPECT_FALSE(picture->isFullRange);
}

TEST_F(VideoPictureReaderTest, TellsTheFullRange) {
  const auto picture = firstOf("testsrc2=s=64x48",
                               {"-vf", "format=yuvj444p,crop=63:47", "-c:v", "mjpeg", "-q:v", "2"});
  EXPECT_TRUE(picture->isFullRange);
  EXPECT_EQ(picture->naturalSize, (PictureSize{63, 47}));
  EXPECT_EQ(picture->planes[1].width, 63);
}

TEST_F(VideoPictureReaderTest, GivesRgbAndGray) {
  EXPECT_EQ(firstOf("testsrc2=s=64x48", {"-pix_fmt", "rgb24", "-c:v", "png"})->model,
            VideoPicture::Model::Rgb);
  EXPECT_EQ(firstOf("testsrc2=s=64x48", {"-pix_fmt", "gray", "-c:v", "png"})->model,
            VideoPicture::Model::Gray);
}

TEST_F(VideoPictureReaderTest, FillsTheNaturalSizeWhateverThePicturesSizeIs) {
  // Two streams of Motion JPEG behind each other: the second half is smaller.
  m_file = m_folder / "film.avi";
  const auto small = m_folder / "small.avi";
  runFfmpeg({"-f", "lavfi", "-i", "testsrc2=s=64x48:d=0.2", "-c:v", "mjpeg", m_file.string()});
  runFfmpeg({"-f", "lavfi", "-i", "testsrc2=s=32x24:d=0.2", "-c:v", "mjpeg", small.string()});
  const auto list = m_folder / "list.txt";
  std::ofstream(list) << "file film.avi\nfile small.avi\n";
  const auto both = m_folder / "both.avi";
  runFfmpeg({"-f", "concat", "-i", list.string(), "-c", "copy", both.string()});
  m_file = both;
  VideoPictureReader reader = open();
  int smallOnes = 0;
  while (const auto shown = reader.next()) {
    EXPECT_EQ(shown->picture->naturalSize, (PictureSize{64, 48}));
    smallOnes += shown->picture->planes[0].width == 32 ? 1 : 0;
  }
  EXPECT_EQ(smallOnes, 5);
}

TEST_F(VideoPictureReaderTest, StopsOnRequest) {
  makeNumberedFilm(m_file);
  std::stop_source stop;
  VideoPictureReader reader = open(stop.get_token());
  EXPECT_TRUE(reader.next());
  stop.request_stop();
  EXPECT_THROW(
      {
        while (reader.next()) {
        }
      },
      Cancelled);
}

}  // namespace
}  // namespace vantrel
