#include <cerrno>
#include <system_error>

#include "platform/movie/movie_writer.h"
#include "support/temporary_folder.h"
#include "support/write_failures.h"
#include "written_movie.h"

namespace vantrel {
namespace {

using namespace vantrel::testing;
using Status = WritingSession::Status;

/// How writing ends when it does not end well.
class MovieWriterEndTest : public ::testing::Test {
 protected:
  static void expectFileTooLarge(const MovieWriter& writer) {
    EXPECT_EQ(writer.status(), Status::failed);
    ASSERT_NE(writer.error(), nullptr);
    try {
      std::rethrow_exception(writer.error());
    } catch (const std::system_error& error) {
      EXPECT_EQ(error.code().value(), EFBIG);
      EXPECT_STREQ(error.what(), "“film.mov” could not be saved: File too large");
    }
  }

  TemporaryFolder m_folder;
  std::filesystem::path m_file = m_folder / "film.mov";
};

TEST_F(MovieWriterEndTest, CannotMakeAFileInAFolderThatIsNotThere) {
  EXPECT_THROW(MovieWriter(m_folder / "none" / "film.mov"), std::system_error);
}

TEST_F(MovieWriterEndTest, ReportsADiskThatIsFullAtTheHeader) {
  MovieWriter writer(m_file);
  const FileSizeLimit limit(0);
  (void)writer.addVideoInput(smallSettings(VideoCodec::H264));
  EXPECT_FALSE(writer.startWriting());
  expectFileTooLarge(writer);
}

TEST_F(MovieWriterEndTest, ReportsADiskThatBecomesFullAmongThePictures) {
  VideoInputSettings settings = smallSettings(VideoCodec::H264);
  settings.width = 320;
  settings.height = 240;
  settings.bitsPerSecond = 50'000'000;
  MovieWriter writer(m_file);
  SampleInput& input = writer.addVideoInput(settings);
  ASSERT_TRUE(writer.startWriting());
  const FileSizeLimit limit(100'000);
  // Far more than any buffer holds.
  int64_t time = 0;
  while (time < 20'000 && input.append(videoSample(makePicture(320, 240, time), 600)))
    time += 20;
  EXPECT_LT(time, 20'000);
  expectFileTooLarge(writer);
}

TEST_F(MovieWriterEndTest, ReportsADiskThatBecomesFullAtTheEnd) {
  const VideoInputSettings settings = smallSettings(VideoCodec::H264);
  MovieWriter writer(m_file);
  SampleInput& input = writer.addVideoInput(settings);
  ASSERT_TRUE(writer.startWriting());
  appendPictures(input, settings, evenTimes(10, 20), 20);
  const FileSizeLimit limit(100);
  writer.finishWriting();
  expectFileTooLarge(writer);
}

TEST_F(MovieWriterEndTest, ReportsADiskThatIsFullWhenTheFileIsRewritten) {
  const VideoInputSettings settings = smallSettings(VideoCodec::H264);
  MovieWriter writer(m_file);
  SampleInput& input = writer.addVideoInput(settings);
  ASSERT_TRUE(writer.startWriting());
  appendPictures(input, settings, evenTimes(10, 20), 20);
  // A folder in the place of the second file.
  std::filesystem::create_directory(m_folder / "film.mov.rewritten");
  writer.finishWriting();
  EXPECT_EQ(writer.status(), Status::failed);
  EXPECT_NE(writer.error(), nullptr);
  EXPECT_EQ(namesIn(m_folder.path()), std::vector<std::string>({"film.mov"}));
}

TEST_F(MovieWriterEndTest, FailsWithoutWordsForAMovieWithoutAPicture) {
  MovieWriter writer(m_file);
  SampleInput& input = writer.addVideoInput(smallSettings(VideoCodec::H264));
  ASSERT_TRUE(writer.startWriting());
  input.markAsFinished();
  writer.finishWriting();
  EXPECT_EQ(writer.status(), Status::failed);
  EXPECT_EQ(writer.error(), nullptr);
}

TEST_F(MovieWriterEndTest, RefusesPicturesThatDoNotFit) {
  const VideoInputSettings settings = smallSettings(VideoCodec::H264);
  for (const bool tenBit : {false, true}) {
    MovieWriter writer(m_file);
    SampleInput& input = writer.addVideoInput(settings);
    ASSERT_TRUE(writer.startWriting());
    EXPECT_FALSE(input.append(videoSample(makePicture(tenBit ? 64 : 32, 48, 0, tenBit), 600)));
    EXPECT_EQ(writer.status(), Status::failed);
    EXPECT_NE(writer.error(), nullptr);
  }
}

TEST_F(MovieWriterEndTest, RefusesTimesThatDoNotRise) {
  MovieWriter writer(m_file);
  SampleInput& input = writer.addVideoInput(smallSettings(VideoCodec::H264));
  ASSERT_TRUE(writer.startWriting());
  EXPECT_TRUE(input.append(videoSample(makePicture(64, 48, 20), 600)));
  EXPECT_FALSE(input.append(videoSample(makePicture(64, 48, 20), 600)));
  EXPECT_EQ(writer.status(), Status::failed);
}

TEST_F(MovieWriterEndTest, TakesNothingMoreOnceCancelled) {
  MovieWriter writer(m_file);
  SampleInput& input = writer.addVideoInput(smallSettings(VideoCodec::Hevc));
  ASSERT_TRUE(writer.startWriting());
  EXPECT_TRUE(input.append(videoSample(makePicture(64, 48, 0), 600)));
  writer.cancelWriting();
  EXPECT_EQ(writer.status(), Status::cancelled);
  EXPECT_FALSE(input.append(videoSample(makePicture(64, 48, 20), 600)));
  writer.finishWriting();
  EXPECT_EQ(writer.status(), Status::cancelled);
  EXPECT_EQ(writer.error(), nullptr);
  EXPECT_EQ(namesIn(m_folder.path()), std::vector<std::string>({"film.mov"}));
}

TEST_F(MovieWriterEndTest, EndsAnAppendThatWaitsWhenCancelled) {
  MovieWriter writer(m_file);
  SampleInput& input = writer.addVideoInput(smallSettings(VideoCodec::Hevc));
  ASSERT_TRUE(writer.startWriting());
  std::thread canceller;
  // Longer than any queue, so that some append certainly waits or comes too late.
  size_t taken = 0;
  for (int64_t time = 0; time < 100'000; time += 20, ++taken) {
    if (taken == 10) canceller = std::thread([&writer] { writer.cancelWriting(); });
    if (!input.append(videoSample(makePicture(64, 48, time), 600))) break;
  }
  canceller.join();
  EXPECT_EQ(writer.status(), Status::cancelled);
  EXPECT_LT(taken, 5000U);
}

TEST_F(MovieWriterEndTest, DropsWhatIsQueuedWhenDestroyed) {
  MovieWriter writer(m_file);
  SampleInput& input = writer.addVideoInput(smallSettings(VideoCodec::Hevc));
  ASSERT_TRUE(writer.startWriting());
  for (int64_t time = 0; time < 80; time += 20)
    EXPECT_TRUE(input.append(videoSample(makePicture(64, 48, time), 600)));
}

}  // namespace
}  // namespace vantrel
