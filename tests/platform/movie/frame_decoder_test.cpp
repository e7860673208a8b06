#include "platform/movie/frame_decoder.h"

#include <gtest/gtest.h>

#include "platform/movie/numbered_film.h"
#include "support/temporary_folder.h"

namespace vantrel {
namespace {

using namespace testing;

/// A film with three B pictures in a row.
class FrameDecoderTest : public ::testing::Test {
 protected:
  void SetUp() override {
    makeNumberedFilm(m_file, {"-g", "25"});
    m_movie.emplace(Movie::open(m_file));
    FrameDecoder all = decoder();
    while (const AvFramePtr frame = all.next())
      m_times.push_back(frame->pts);
    ASSERT_EQ(m_times.size(), static_cast<size_t>(kPictures));
  }
  FrameDecoder decoder() const {
    return FrameDecoder(*m_movie, m_movie->tracks(MovieTrack::Kind::Video).at(0), {});
  }

  TemporaryFolder m_folder;
  const std::filesystem::path m_file = m_folder / "film.mov";
  std::optional<Movie> m_movie;
  /// When each picture begins, in ticks of the stream.
  std::vector<int64_t> m_times;
};

TEST_F(FrameDecoderTest, KeepsThePictureThatIsShownWhereThePassingOverEnds) {
  for (size_t i = 8; i + 1 < m_times.size(); ++i) {
    SCOPED_TRACE(i);
    FrameDecoder frames = decoder();
    frames.passOverUntil(m_times[i + 1] - 1);
    size_t given = 0;
    AvFramePtr frame;
    do {
      frame = frames.next();
      ++given;
    } while (frame && frame->pts < m_times[i]);
    ASSERT_TRUE(frame);
    EXPECT_EQ(frame->pts, m_times[i]);
    EXPECT_LT(frames.latestPassedOver(), m_times[i]);
    EXPECT_LT(given, i + 1) << "none was passed over";
  }
}

TEST_F(FrameDecoderTest, PassesNothingOverUnlessAsked) {
  FrameDecoder frames = decoder();
  frames.passOverUntil(m_times.back());
  frames.passOverUntil(INT64_MIN);
  for (const int64_t time : m_times)
    EXPECT_EQ(frames.next()->pts, time);
  EXPECT_EQ(frames.latestPassedOver(), AV_NOPTS_VALUE);
}

}  // namespace
}  // namespace vantrel
