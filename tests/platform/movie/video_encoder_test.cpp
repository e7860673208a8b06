#include "platform/movie/video_encoder.h"

#ifdef __GLIBC__
#include <malloc.h>
#endif

#include "platform/movie/movie_error.h"
#include "written_movie.h"

namespace vantrel {
namespace {

using testing::evenTimes;
using testing::makePicture;
using testing::smallSettings;

EncoderCandidate candidateNamed(const std::string& name) {
  EncoderCandidate candidate = encoderCandidates(smallSettings(VideoCodec::H264)).back();
  candidate.setup.encoder = name;
  return candidate;
}

/// A candidate like hardware that is not there: it opens, and encodes nothing.
EncoderCandidate failingHardware() {
  EncoderCandidate candidate = candidateNamed("libx264");
  candidate.isHardware = true;
  candidate.device = AV_HWDEVICE_TYPE_VAAPI;
  candidate.deviceFormat = AV_PIX_FMT_VAAPI;
  return candidate;
}

TEST(VideoEncoder, TakesTheFirstCandidateThatWorks) {
  const VideoInputSettings settings = smallSettings(VideoCodec::H264);
  std::vector<EncoderCandidate> candidates = encoderCandidates(settings);
  candidates.insert(candidates.begin(), {candidateNamed("no such encoder"), failingHardware()});
  EXPECT_EQ(VideoEncoder::open("film.mov", settings, candidates).name(),
            candidates.back().setup.encoder);
}

TEST(VideoEncoder, NamesTheFileWhenNoCandidateWorks) {
  const VideoInputSettings settings = smallSettings(VideoCodec::H264);
  const std::vector<EncoderCandidate> candidates = {candidateNamed("no such encoder")};
  try {
    (void)VideoEncoder::open("film.mov", settings, candidates);
    FAIL();
  } catch (const MovieError& error) {
    EXPECT_STREQ(error.what(), "“film.mov” could not be saved: Encoder not found");
  }
}

TEST(VideoEncoder, HasSoftwareBehindAllHardware) {
  for (const VideoCodec codec : {VideoCodec::H264, VideoCodec::Hevc}) {
    const auto candidates = encoderCandidates(smallSettings(codec));
    ASSERT_FALSE(candidates.empty());
    EXPECT_EQ(candidates.back().setup.encoder, codec == VideoCodec::Hevc ? "libx265" : "libx264");
    for (size_t index = 0; index + 1 < candidates.size(); ++index)
      EXPECT_TRUE(candidates[index].isHardware);
  }
}

TEST(VideoEncoder, TimesFilmsOfFewPictures) {
#ifdef M_PERTURB
  // What nobody sets is then certainly not 0.
  ::mallopt(M_PERTURB, 0x5A);
#endif
  for (const VideoCodec codec : {VideoCodec::H264, VideoCodec::Hevc}) {
    for (int64_t pictures = 1; pictures <= 4; ++pictures) {
      const VideoInputSettings settings = smallSettings(codec);
      VideoEncoder encoder = VideoEncoder::open("film.mov", settings, encoderCandidates(settings));
      for (int64_t picture = 0; picture < pictures; ++picture)
        encoder.send(makePicture(64, 48, picture * 20), picture == 0);
      encoder.sendEnd();
      std::optional<int64_t> last;
      while (const AvPacketPtr packet = encoder.receive()) {
        EXPECT_LE(packet->dts, packet->pts);
        EXPECT_GE(packet->dts, -20 * pictures);
        EXPECT_LT(last.value_or(INT64_MIN), packet->dts);
        last = packet->dts;
      }
    }
  }
#ifdef M_PERTURB
  ::mallopt(M_PERTURB, 0);
#endif
}

TEST(VideoEncoder, GivesBackEveryTimeThatWentIn) {
  for (const VideoCodec codec : {VideoCodec::H264, VideoCodec::Hevc}) {
    const VideoInputSettings settings = smallSettings(codec);
    VideoEncoder encoder = VideoEncoder::open("film.mov", settings, encoderCandidates(settings));
    const std::vector<int64_t> times = {3, 20, 21, 1400, 1409, 2800, 2801};
    std::vector<int64_t> found;
    const auto receiveAll = [&] {
      while (const AvPacketPtr packet = encoder.receive())
        found.push_back(packet->pts);
    };
    for (const int64_t time : times) {
      encoder.send(makePicture(settings.width, settings.height, time), time == 3);
      receiveAll();
    }
    encoder.sendEnd();
    receiveAll();
    std::sort(found.begin(), found.end());
    EXPECT_EQ(found, times);
  }
}

TEST(VideoEncoder, KeepsParameterSetsAndFillingOutOfThePackets) {
  VideoInputSettings settings = smallSettings(VideoCodec::Hevc);
  settings.isHdr = true;
  settings.color = {9, 16, 9};
  // More than such pictures need.
  settings.bitsPerSecond = 20'000'000;
  VideoEncoder encoder = VideoEncoder::open("film.mov", settings, encoderCandidates(settings));
  EXPECT_GT(encoder.parameters().extradata_size, 0);
  for (const int64_t time : evenTimes(10, 20))
    encoder.send(makePicture(settings.width, settings.height, time, true), time == 0);
  encoder.sendEnd();
  int packets = 0;
  for (; const AvPacketPtr packet = encoder.receive(); ++packets) {
    for (int at = 0; at + 3 < packet->size; ++at) {
      const uint8_t* code = packet->data + at;
      if (code[0] != 0 || code[1] != 0 || code[2] != 1) continue;
      const int type = code[3] >> 1 & 0x3f;
      EXPECT_TRUE((type < 32 || type > 34) && type != 38) << type;
    }
  }
  EXPECT_EQ(packets, 10);
}

}  // namespace
}  // namespace vantrel
