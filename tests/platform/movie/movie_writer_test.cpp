#include "platform/movie/movie_writer.h"

#include "support/temporary_folder.h"
#include "written_movie.h"

namespace vantrel {
namespace {

using namespace vantrel::testing;
using Status = WritingSession::Status;

std::string wordsOf(const std::exception_ptr& error) {
  if (!error) return {};
  try {
    std::rethrow_exception(error);
  } catch (const std::exception& exception) {
    return exception.what();
  }
}

class MovieWriterTest : public ::testing::Test {
 protected:
  /// A movie with a picture at each of the times; the last one is shown for `lastDuration` ticks.
  void write(const VideoInputSettings& settings, const std::vector<int64_t>& times,
             int64_t lastDuration) {
    MovieWriter writer(m_file);
    writeWith(writer, settings, times, lastDuration);
  }
  void writeWith(MovieWriter& writer, const VideoInputSettings& settings,
                 const std::vector<int64_t>& times, int64_t lastDuration) {
    writer.setShouldOptimizeForNetworkUse(true);
    writer.setMovieTimescale(settings.timescale);
    SampleInput& input = writer.addVideoInput(settings);
    ASSERT_TRUE(writer.startWriting()) << wordsOf(writer.error());
    writer.startSession({0, 1});
    appendPictures(input, settings, times, lastDuration);
    writer.finishWriting();
    ASSERT_EQ(writer.status(), Status::completed) << wordsOf(writer.error());
  }

  TemporaryFolder m_folder;
  std::filesystem::path m_file = m_folder / "film.mov";
};

TEST_F(MovieWriterTest, WritesBothCodecsWithTheirTagsAndColors) {
  for (const VideoCodec codec : {VideoCodec::H264, VideoCodec::Hevc}) {
    const bool isHevc = codec == VideoCodec::Hevc;
    VideoInputSettings settings = smallSettings(codec);
    settings.color = {5, 6, 6};
    settings.chromaSiting = ChromaSiting::TopLeft;
    write(settings, evenTimes(30, 20), 20);
    const QJsonObject stream = probeStream(m_file, 0);
    EXPECT_EQ(text(stream, "codec_name"), isHevc ? "hevc" : "h264");
    EXPECT_EQ(text(stream, "codec_tag_string"), isHevc ? "hvc1" : "avc1");
    EXPECT_EQ(text(stream, "pix_fmt"), "yuv420p");
    EXPECT_NE(text(stream, "has_b_frames"), "0");
    EXPECT_EQ(text(stream, "width"), "64");
    EXPECT_EQ(text(stream, "height"), "48");
    EXPECT_EQ(text(stream, "color_range"), "tv");
    EXPECT_EQ(text(stream, "color_primaries"), "bt470bg");
    EXPECT_EQ(text(stream, "color_transfer"), "smpte170m");
    EXPECT_EQ(text(stream, "color_space"), "smpte170m");
    EXPECT_EQ(text(stream, "chroma_location"), "topleft");
    EXPECT_EQ(text(stream, "time_base"), "1/600");
    EXPECT_EQ(text(stream, "duration_ts"), "600");
    EXPECT_EQ(frameTimes(m_file, "v:0"), evenTimes(30, 20));
  }
}

TEST_F(MovieWriterTest, TagsPrimariesThatTheEncodersDoNotKnow) {
  for (const VideoCodec codec : {VideoCodec::H264, VideoCodec::Hevc}) {
    VideoInputSettings settings = smallSettings(codec);
    settings.color = {22, 1, 1};
    ASSERT_TRUE(MovieWriter(m_file).canApply(settings));
    write(settings, evenTimes(3, 20), 20);
    const auto stream = m_folder / (codec == VideoCodec::Hevc ? "film.hevc" : "film.h264");
    runFfmpeg({"-i", m_file.string(), "-c", "copy", stream.string()});
    for (const auto& file : {m_file, stream}) {
      EXPECT_EQ(text(probeStream(file, 0), "color_primaries"), "ebu3213");
      EXPECT_EQ(text(probeStream(file, 0), "color_transfer"), "bt709");
    }
  }
}

TEST_F(MovieWriterTest, LeavesOneFileWithTheHeaderInFrontAndNoNameOfAnEncoder) {
  write(smallSettings(VideoCodec::H264), evenTimes(5, 20), 20);
  EXPECT_EQ(namesIn(m_folder.path()), std::vector<std::string>({"film.mov"}));
  const std::string bytes = readFile(m_file);
  EXPECT_LT(bytes.find("moov"), bytes.find("mdat"));
  EXPECT_EQ(bytes.find("Lavf"), std::string::npos);
  EXPECT_EQ(bytes.find("FFMP"), std::string::npos);
}

TEST_F(MovieWriterTest, KeepsUnevenTimesAndTheLastDurationToTheTick) {
  const std::vector<int64_t> times = {0, 1, 20, 21, 400, 401, 1900, 1901, 2000};
  for (const VideoCodec codec : {VideoCodec::H264, VideoCodec::Hevc}) {
    write(smallSettings(codec), times, 777);
    EXPECT_EQ(frameTimes(m_file, "v:0"), times);
    EXPECT_EQ(text(probeStream(m_file, 0), "duration_ts"), "2777");
    EXPECT_EQ(QuickTimeMovie::read(m_file)->duration, 2777U);
  }
}

TEST_F(MovieWriterTest, StartsATrackThatStartsLaterLater) {
  write(smallSettings(VideoCodec::H264), {300, 320, 340, 360}, 20);
  EXPECT_EQ(frameTimes(m_file, "v:0"), std::vector<int64_t>({300, 320, 340, 360}));
  const auto movie = QuickTimeMovie::read(m_file);
  ASSERT_TRUE(movie);
  EXPECT_EQ(movie->duration, 380U);
  ASSERT_EQ(movie->tracks.at(0).edits.size(), 2U);
  EXPECT_EQ(movie->tracks.at(0).edits[0], (QuickTimeEdit{300, -1}));
}

TEST_F(MovieWriterTest, CountsFromTheSessionsStart) {
  const VideoInputSettings settings = smallSettings(VideoCodec::H264);
  MovieWriter writer(m_file);
  writer.setMovieTimescale(600);
  SampleInput& input = writer.addVideoInput(settings);
  ASSERT_TRUE(writer.startWriting());
  writer.startSession({10, 1});
  appendPictures(input, settings, {6000, 6020, 6040});
  writer.endSession({11, 1});
  writer.finishWriting();
  ASSERT_EQ(writer.status(), Status::completed) << wordsOf(writer.error());
  EXPECT_EQ(frameTimes(m_file, "v:0"), std::vector<int64_t>({0, 20, 40}));
  // Nobody told the last duration, so that the session's end counts.
  EXPECT_EQ(QuickTimeMovie::read(m_file)->duration, 600U);
}

TEST_F(MovieWriterTest, PutsNoPictureFurtherThanTheIntervalBehindAKeyFrame) {
  std::vector<int64_t> times;
  for (int64_t time = 0; time < 6000; time += time % 1000 < 300 ? 20 : 350)
    times.push_back(time);
  for (const VideoCodec codec : {VideoCodec::H264, VideoCodec::Hevc}) {
    write(smallSettings(codec), times, 20);
    const std::vector<int64_t> keys = keyFrameTimes(m_file);
    ASSERT_FALSE(keys.empty());
    EXPECT_EQ(keys.front(), 0);
    for (const int64_t time : times) {
      const int64_t key = *std::prev(std::upper_bound(keys.begin(), keys.end(), time));
      EXPECT_LE(time - key, 1200) << time;
    }
    EXPECT_LT(keys.size(), 10U);
  }
}

TEST_F(MovieWriterTest, KeepsToTheRate) {
  VideoInputSettings settings = smallSettings(VideoCodec::H264);
  settings.width = 320;
  settings.height = 240;
  for (const VideoCodec codec : {VideoCodec::H264, VideoCodec::Hevc}) {
    settings.codec = codec;
    settings.bitsPerSecond = 300'000;
    write(settings, evenTimes(90, 20), 20);
    const double rate = text(probeStream(m_file, 0), "bit_rate").empty()
                            ? 0
                            : std::stod(text(probeStream(m_file, 0), "bit_rate"));
    EXPECT_GT(rate, 255'000);
    EXPECT_LT(rate, 345'000);
  }
}

TEST_F(MovieWriterTest, EncodesWithTheSettingsThatWereTried) {
  for (const VideoCodec codec : {VideoCodec::H264, VideoCodec::Hevc}) {
    const VideoInputSettings settings = smallSettings(codec);
    MovieWriter writer(m_file);
    // The later attempt takes the place of the first.
    VideoInputSettings earlier = settings;
    earlier.width = 128;
    ASSERT_TRUE(writer.canApply(earlier));
    ASSERT_TRUE(writer.canApply(settings));
    writeWith(writer, settings, evenTimes(5, 20), 20);
    const QJsonObject stream = probeStream(m_file, 0);
    EXPECT_EQ(text(stream, "codec_name"), codec == VideoCodec::Hevc ? "hevc" : "h264");
    EXPECT_EQ(text(stream, "width"), "64");
    EXPECT_EQ(frameTimes(m_file, "v:0"), evenTimes(5, 20));
  }
}

TEST_F(MovieWriterTest, EncodesWithTheSettingsOfTheInputWhereOthersWereTried) {
  const VideoInputSettings tried = smallSettings(VideoCodec::Hevc);
  VideoInputSettings settings = smallSettings(VideoCodec::H264);
  settings.width = 80;
  settings.height = 60;
  settings.timescale = 1200;
  settings.color = {9, 1, 9};
  MovieWriter writer(m_file);
  ASSERT_TRUE(writer.canApply(tried));
  writeWith(writer, settings, evenTimes(5, 40), 40);
  const QJsonObject stream = probeStream(m_file, 0);
  EXPECT_EQ(text(stream, "codec_name"), "h264");
  EXPECT_EQ(text(stream, "width"), "80");
  EXPECT_EQ(text(stream, "height"), "60");
  EXPECT_EQ(text(stream, "color_primaries"), "bt2020");
  EXPECT_EQ(text(stream, "time_base"), "1/1200");
  EXPECT_EQ(frameTimes(m_file, "v:0"), evenTimes(5, 40));
}

TEST_F(MovieWriterTest, EncodesAtTheRateOfTheInputWhereAnotherRateWasTried) {
  VideoInputSettings settings = smallSettings(VideoCodec::H264);
  settings.width = 320;
  settings.height = 240;
  settings.bitsPerSecond = 300'000;
  VideoInputSettings tried = settings;
  tried.bitsPerSecond = 3'000'000;
  MovieWriter writer(m_file);
  ASSERT_TRUE(writer.canApply(tried));
  writeWith(writer, settings, evenTimes(60, 20), 20);
  EXPECT_LT(std::stod(text(probeStream(m_file, 0), "bit_rate")), 600'000);
}

TEST_F(MovieWriterTest, WritesTheSmallestPictureAndOddShapes) {
  struct Shape {
    int width, height;
  };
  for (const VideoCodec codec : {VideoCodec::H264, VideoCodec::Hevc}) {
    for (const Shape shape : {Shape{2, 2}, Shape{2, 130}, Shape{130, 2}, Shape{66, 34}}) {
      VideoInputSettings settings = smallSettings(codec);
      settings.width = shape.width;
      settings.height = shape.height;
      ASSERT_TRUE(MovieWriter(m_file).canApply(settings));
      write(settings, evenTimes(3, 20), 20);
      const QJsonObject stream = probeStream(m_file, 0);
      EXPECT_EQ(text(stream, "width"), std::to_string(shape.width));
      EXPECT_EQ(text(stream, "height"), std::to_string(shape.height));
      const QJsonObject frame =
          probe(m_file, {"-show_frames", "-read_intervals", "%+#1"})[QStringLiteral("frames")]
              .toArray()
              .at(0)
              .toObject();
      EXPECT_EQ(text(frame, "width"), std::to_string(shape.width));
      EXPECT_EQ(text(frame, "height"), std::to_string(shape.height));
    }
  }
}

TEST_F(MovieWriterTest, WritesHdrWithItsMetadataInStreamAndContainer) {
  VideoInputSettings settings = smallSettings(VideoCodec::Hevc);
  settings.isHdr = true;
  settings.color = {9, 16, 9};
  MasteringDisplay display;
  display.primaries = {{{{{34000, 50000}, {16000, 50000}}},
                        {{{13250, 50000}, {34500, 50000}}},
                        {{{7500, 50000}, {3000, 50000}}}}};
  display.whitePoint = {{{15635, 50000}, {16450, 50000}}};
  display.lowestLuminance = {50, 10000};
  display.highestLuminance = {10000000, 10000};
  settings.hdrMetadata = {display, ContentLight{1000, 400}};
  write(settings, evenTimes(5, 20), 20);

  const QJsonObject stream = probeStream(m_file, 0);
  EXPECT_EQ(text(stream, "profile"), "Main 10");
  EXPECT_EQ(text(stream, "pix_fmt"), "yuv420p10le");
  EXPECT_EQ(text(stream, "color_transfer"), "smpte2084");
  EXPECT_EQ(stream[QStringLiteral("side_data_list")].toArray().size(), 2);
  const QJsonObject frame =
      probe(m_file, {"-show_frames", "-read_intervals", "%+#1"})[QStringLiteral("frames")]
          .toArray()
          .at(0)
          .toObject();
  std::string sideData;
  for (const QJsonValue& entry : frame[QStringLiteral("side_data_list")].toArray()) {
    sideData += text(entry.toObject(), "red_x") + " " + text(entry.toObject(), "max_luminance") +
                " " + text(entry.toObject(), "max_content") + ";";
  }
  EXPECT_NE(sideData.find("34000/50000 10000000/10000"), std::string::npos) << sideData;
  EXPECT_NE(sideData.find(" 1000;"), std::string::npos) << sideData;
  const std::string bytes = readFile(m_file);
  EXPECT_NE(bytes.find("mdcv"), std::string::npos);
  EXPECT_NE(bytes.find("clli"), std::string::npos);
}

TEST_F(MovieWriterTest, CarriesTheItemsOfTheTrack) {
  VideoInputSettings settings = smallSettings(VideoCodec::H264);
  settings.metadata = {
      {MovieMetadataItem::kPixelDensity, 30,
       MetadataDictionary{
           {"widthPixels", 64}, {"heightPixels", 48}, {"widthPoints", 32}, {"heightPoints", 24}}}};
  write(settings, evenTimes(3, 20), 20);
  EXPECT_EQ(QuickTimeMovie::read(m_file)->tracks.at(0).items, settings.metadata);
}

TEST_F(MovieWriterTest, TakesOnlySettingsThatMakeSense) {
  const MovieWriter writer(m_file);
  EXPECT_TRUE(writer.canAdd(smallSettings(VideoCodec::H264)));
  VideoInputSettings odd = smallSettings(VideoCodec::H264);
  odd.width = 63;
  EXPECT_FALSE(writer.canApply(odd));
  EXPECT_FALSE(writer.canAdd(odd));
  VideoInputSettings hdr = smallSettings(VideoCodec::H264);
  hdr.isHdr = true;
  EXPECT_FALSE(writer.canApply(hdr));
  VideoInputSettings huge = smallSettings(VideoCodec::H264);
  huge.width = huge.height = 1 << 20;
  EXPECT_FALSE(writer.canApply(huge));
}

TEST_F(MovieWriterTest, TakesOneVideoTrackAndNoneOnceItWrites) {
  MovieWriter writer(m_file);
  (void)writer.addVideoInput(smallSettings(VideoCodec::H264));
  EXPECT_FALSE(writer.canAdd(smallSettings(VideoCodec::H264)));
  EXPECT_EQ(writer.status(), Status::unknown);
  EXPECT_EQ(writer.encoderName(), "");
  ASSERT_TRUE(writer.startWriting());
  EXPECT_EQ(writer.status(), Status::writing);
  EXPECT_NE(writer.encoderName(), "");
  EXPECT_FALSE(writer.startWriting());
}

}  // namespace
}  // namespace vantrel
