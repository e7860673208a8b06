#include "platform/movie/audio_clock.h"

#include <gtest/gtest.h>

extern "C" {
#include <libavutil/intreadwrite.h>
}

#include <vector>

namespace vantrel {
namespace {

/// AAC at 44.1 kHz, whose packets hold 1024 samples.
class AudioClockTest : public ::testing::Test {
 protected:
  AudioClockTest() {
    m_parameters->codec_type = AVMEDIA_TYPE_AUDIO;
    m_parameters->codec_id = AV_CODEC_ID_AAC;
    m_parameters->sample_rate = 44'100;
    m_parameters->frame_size = 1024;
  }

  static AvPacketPtr makeCoded() {
    AvPacketPtr packet = makePacket();
    if (av_new_packet(packet.get(), 100) < 0) throw std::bad_alloc();
    return packet;
  }

  int64_t timeOf(int64_t pts, AVRational source, int64_t duration = 0) {
    const AvPacketPtr packet = makeCoded();
    packet->pts = packet->dts = pts;
    packet->duration = duration;
    m_clock.convert(*packet, source);
    m_durations.push_back(packet->duration);
    EXPECT_EQ(packet->dts, packet->pts);
    return packet->pts;
  }

  AvCodecParametersPtr m_parameters = owned<AvCodecParametersPtr>(avcodec_parameters_alloc());
  AudioClock m_clock{*m_parameters, {1, 44'100}};
  std::vector<int64_t> m_durations;
};

TEST_F(AudioClockTest, KeepsTimesThatCountInSamples) {
  EXPECT_EQ(timeOf(-1024, {1, 44'100}, 1024), -1024);
  EXPECT_EQ(timeOf(0, {1, 44'100}, 1024), 0);
  EXPECT_EQ(timeOf(1024, {1, 44'100}, 700), 1024);
  EXPECT_EQ(m_durations, std::vector<int64_t>({1024, 1024, 700}));
  EXPECT_EQ(*m_clock.start(), -1024);
  EXPECT_EQ(m_clock.end(), 1724);
}

TEST_F(AudioClockTest, SpacesPacketsBySamplesWhereTicksAreCoarse) {
  std::vector<int64_t> times;
  for (const int64_t milliseconds : {0, 23, 46, 70, 93})
    times.push_back(timeOf(milliseconds, {1, 1000}));
  EXPECT_EQ(times, std::vector<int64_t>({0, 1024, 2048, 3072, 4096}));
  EXPECT_EQ(m_clock.end(), 5120);
}

TEST_F(AudioClockTest, KeepsGaps) {
  EXPECT_EQ(timeOf(0, {1, 1000}), 0);
  EXPECT_EQ(timeOf(500, {1, 1000}), 22'050);
}

TEST_F(AudioClockTest, LetsTimesRiseWhereTheSourcesDoNot) {
  EXPECT_EQ(timeOf(2048, {1, 44'100}), 2048);
  EXPECT_EQ(timeOf(2048, {1, 44'100}), 2049);
  EXPECT_EQ(timeOf(0, {1, 44'100}), 2050);
}

TEST_F(AudioClockTest, GoesOnBehindTheLastPacketWhereThereIsNoTime) {
  EXPECT_EQ(timeOf(512, {1, 44'100}), 512);
  EXPECT_EQ(timeOf(AV_NOPTS_VALUE, {1, 44'100}), 1536);
}

TEST_F(AudioClockTest, DoesNotBelieveTimesThatOnlyDamageExplains) {
  EXPECT_EQ(timeOf(0, {1, 44'100}, 1024), 0);
  EXPECT_EQ(timeOf(INT64_MAX, {1, 44'100}, INT64_MAX), 1024);
  EXPECT_EQ(timeOf(INT64_MAX / 1000, {1000, 1}), 2048);
  EXPECT_EQ(timeOf(INT64_MIN + 1, {1000, 1}), 3072);
}

TEST_F(AudioClockTest, EndsBeforeTheSamplesThatAreNotToBeHeard) {
  const AvPacketPtr packet = makeCoded();
  packet->pts = 0;
  uint8_t* record = av_packet_new_side_data(packet.get(), AV_PKT_DATA_SKIP_SAMPLES, 10);
  ASSERT_NE(record, nullptr);
  AV_WL32(record, 0);
  AV_WL32(record + 4, 100);
  m_clock.convert(*packet, {1, 44'100});
  EXPECT_EQ(packet->duration, 1024);
  EXPECT_EQ(m_clock.end(), 924);
}

}  // namespace
}  // namespace vantrel
