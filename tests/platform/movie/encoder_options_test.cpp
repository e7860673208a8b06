#include "platform/movie/encoder_options.h"

#include <gtest/gtest.h>

#include <limits>

namespace vantrel {
namespace {

constexpr int kPq = 16, kHlg = 18;

VideoInputSettings film(VideoCodec codec, int width, int height, double frameRate = 30) {
  VideoInputSettings settings;
  settings.codec = codec;
  settings.width = width;
  settings.height = height;
  settings.bitsPerSecond = 8'000'000;
  settings.expectedFrameRate = frameRate;
  return settings;
}

VideoInputSettings hdrFilm(int transfer) {
  VideoInputSettings settings = film(VideoCodec::Hevc, 1920, 1080);
  settings.isHdr = true;
  settings.color = {9, transfer, 9};
  return settings;
}

MasteringDisplay display() {
  MasteringDisplay display;
  display.primaries = {{{{{34000, 50000}, {16000, 50000}}},
                        {{{13250, 50000}, {34500, 50000}}},
                        {{{7500, 50000}, {3000, 50000}}}}};
  display.whitePoint = {{{3127, 10000}, {329, 1000}}};
  display.lowestLuminance = {1, 200};
  display.highestLuminance = {1000, 1};
  return display;
}

std::string optionOf(const EncoderOptions& options, const std::string& name) {
  for (const auto& [key, value] : options.options) {
    if (key == name) return value;
  }
  return {};
}

std::string preset(const VideoInputSettings& settings, int cores) {
  return optionOf(softwareEncoderOptions(settings, cores), "preset");
}

std::string x265Parameters(const VideoInputSettings& settings) {
  return optionOf(softwareEncoderOptions(settings, 2), "x265-params");
}

bool contains(const std::string& text, const std::string& part) {
  return text.find(part) != std::string::npos;
}

TEST(EncoderOptions, NameTheEncoderOfTheCodec) {
  EXPECT_EQ(softwareEncoderOptions(film(VideoCodec::H264, 1280, 720), 2).encoder, "libx264");
  EXPECT_EQ(softwareEncoderOptions(film(VideoCodec::Hevc, 1280, 720), 2).encoder, "libx265");
}

TEST(EncoderOptions, TakeTimeForQualityWhereThereAreCores) {
  const VideoInputSettings h264 = film(VideoCodec::H264, 1920, 1080);
  EXPECT_EQ(preset(h264, 2), "superfast");
  EXPECT_EQ(preset(h264, 4), "veryfast");
  EXPECT_EQ(preset(h264, 8), "faster");
  const VideoInputSettings hevc = film(VideoCodec::Hevc, 1920, 1080);
  EXPECT_EQ(preset(hevc, 2), "ultrafast");
  EXPECT_EQ(preset(hevc, 8), "veryfast");
}

TEST(EncoderOptions, HurryWithLargePicturesAndHighFrameRates) {
  EXPECT_EQ(preset(film(VideoCodec::H264, 1280, 720), 4), "faster");
  EXPECT_EQ(preset(film(VideoCodec::H264, 3840, 2160), 4), "superfast");
  EXPECT_EQ(preset(film(VideoCodec::H264, 1920, 1080, 240), 8), "superfast");
  EXPECT_EQ(preset(film(VideoCodec::Hevc, 640, 360), 2), "veryfast");
  EXPECT_EQ(preset(film(VideoCodec::Hevc, 3840, 2160), 8), "ultrafast");
}

TEST(EncoderOptions, HaveAPresetForAnyNumberOfCores) {
  EXPECT_EQ(preset(film(VideoCodec::H264, 3840, 2160), 0), "superfast");
  EXPECT_EQ(preset(film(VideoCodec::Hevc, 1920, 1080), 1), "ultrafast");
  EXPECT_EQ(preset(film(VideoCodec::Hevc, 1920, 1080), 128), "veryfast");
}

TEST(EncoderOptions, KeepTheRateOfH264ByATightToleranceAndABufferOfHalfASecond) {
  const EncoderOptions options = softwareEncoderOptions(film(VideoCodec::H264, 1280, 720), 2);
  EXPECT_EQ(options.averageRate, 8'000'000);
  EXPECT_EQ(options.maxRate, 11'200'000);
  EXPECT_EQ(options.bufferSize, 4'000'000);
  EXPECT_EQ(optionOf(options, "x264-params"),
            "ratetol=0.1:mbtree=0:qcomp=0.5:rc-lookahead=10:vbv-init=1");
}

TEST(EncoderOptions, KeepTheRateOfHevcByABufferWithoutRoomAboveTheAverage) {
  const EncoderOptions options = softwareEncoderOptions(film(VideoCodec::Hevc, 1280, 720), 2);
  EXPECT_EQ(options.averageRate, 8'000'000);
  EXPECT_EQ(options.maxRate, 8'000'000);
  EXPECT_EQ(options.bufferSize, 12'000'000);
  const std::string parameters = optionOf(options, "x265-params");
  EXPECT_TRUE(contains(parameters, ":vbv-init=0.55")) << parameters;
  EXPECT_FALSE(contains(parameters, "strict-cbr")) << parameters;
}

TEST(EncoderOptions, HaveX265ExpectASixthOfASecondAtAnyFrameRate) {
  const auto expectedFrames = [](double frameRate) {
    const std::string parameters = x265Parameters(film(VideoCodec::Hevc, 1280, 720, frameRate));
    const std::string name = ":total-frames=";
    return std::stoi(parameters.substr(parameters.find(name) + name.size()));
  };
  EXPECT_EQ(expectedFrames(30), 5);
  EXPECT_EQ(expectedFrames(60), 10);
  EXPECT_EQ(expectedFrames(1), 1);
}

TEST(EncoderOptions, WeighWhatTheEyeMakesOfNoiseUnlessInAHurry) {
  const VideoInputSettings settings = film(VideoCodec::Hevc, 1920, 1080);
  const auto isLeftOut = [&settings](int cores) {
    const EncoderOptions options = softwareEncoderOptions(settings, cores);
    return contains(optionOf(options, "x265-params"), ":psy-rd=0");
  };
  EXPECT_TRUE(isLeftOut(2));
  EXPECT_FALSE(isLeftOut(8));
}

TEST(EncoderOptions, LetTheBufferHoldSeveralFramesAtLowFrameRates) {
  EXPECT_EQ(softwareEncoderOptions(film(VideoCodec::H264, 640, 480, 5), 2).bufferSize, 24'000'000);
}

TEST(EncoderOptions, KeepTheBufferWithinAnInt) {
  VideoInputSettings settings = film(VideoCodec::H264, 640, 480, 0.01);
  settings.bitsPerSecond = 1'000'000'000'000;
  const EncoderOptions options = softwareEncoderOptions(settings, 2);
  EXPECT_EQ(options.bufferSize, std::numeric_limits<int>::max());
  EXPECT_EQ(options.averageRate, settings.bitsPerSecond);
}

TEST(EncoderOptions, AssumeAFrameRateWhereNoneIsKnown) {
  EXPECT_EQ(softwareEncoderOptions(film(VideoCodec::Hevc, 640, 480, 0), 2).frameRate, 30);
  EXPECT_EQ(softwareEncoderOptions(film(VideoCodec::Hevc, 640, 480, 12.5), 2).frameRate, 12.5);
}

TEST(EncoderOptions, MakeMarkedFramesClosedStarts) {
  const EncoderOptions h264 = softwareEncoderOptions(film(VideoCodec::H264, 1280, 720), 2);
  EXPECT_EQ(optionOf(h264, "forced-idr"), "1");
  const EncoderOptions hevc = softwareEncoderOptions(film(VideoCodec::Hevc, 1280, 720), 2);
  EXPECT_EQ(optionOf(hevc, "forced-idr"), "1");
  EXPECT_TRUE(contains(optionOf(hevc, "x265-params"), ":open-gop=0"));
}

TEST(EncoderOptions, SayNothingOfHdrInAnOrdinaryFilm) {
  VideoInputSettings settings = film(VideoCodec::Hevc, 1280, 720);
  settings.hdrMetadata = {display(), ContentLight{1000, 400}};
  const EncoderOptions options = softwareEncoderOptions(settings, 2);
  EXPECT_EQ(optionOf(options, "profile"), "main");
  const std::string parameters = optionOf(options, "x265-params");
  EXPECT_FALSE(contains(parameters, "hdr10"));
  EXPECT_FALSE(contains(parameters, "master-display"));
  EXPECT_FALSE(contains(parameters, "max-cll"));
}

TEST(EncoderOptions, DescribeTheMasteringDisplayInUnitsOfTheBitstream) {
  VideoInputSettings settings = hdrFilm(kPq);
  settings.hdrMetadata = {display(), ContentLight{1000, 400}};
  EXPECT_EQ(optionOf(softwareEncoderOptions(settings, 2), "profile"), "main10");
  const std::string parameters = x265Parameters(settings);
  EXPECT_TRUE(contains(parameters,
                       ":master-display=G(13250,34500)B(7500,3000)R(34000,16000)"
                       "WP(15635,16450)L(10000000,50)"))
      << parameters;
  EXPECT_TRUE(contains(parameters, ":max-cll=1000,400")) << parameters;
}

TEST(EncoderOptions, TellOnlyWhatIsKnownOfAnHdrFilm) {
  const std::string pq = x265Parameters(hdrFilm(kPq));
  EXPECT_TRUE(contains(pq, ":hdr10-opt=1"));
  EXPECT_FALSE(contains(pq, "master-display"));
  EXPECT_FALSE(contains(pq, "max-cll"));
  EXPECT_FALSE(contains(x265Parameters(hdrFilm(kHlg)), "hdr10"));
}

TEST(EncoderOptions, LeaveOutAMasteringDisplayThatCannotBeSaid) {
  VideoInputSettings settings = hdrFilm(kPq);
  settings.hdrMetadata.masteringDisplay = display();
  const auto isSaid = [&] { return contains(x265Parameters(settings), "master-display"); };
  EXPECT_TRUE(isSaid());
  settings.hdrMetadata.masteringDisplay->whitePoint[0] = {1, 0};
  EXPECT_FALSE(isSaid());
  settings.hdrMetadata.masteringDisplay->whitePoint[0] = {-1, 3};
  EXPECT_FALSE(isSaid());
  settings.hdrMetadata.masteringDisplay->whitePoint[0] = {2, 1};
  EXPECT_FALSE(isSaid());
  settings.hdrMetadata.masteringDisplay = display();
  settings.hdrMetadata.masteringDisplay->highestLuminance = {std::numeric_limits<int32_t>::max(),
                                                             1};
  EXPECT_FALSE(isSaid());
}

}  // namespace
}  // namespace vantrel
