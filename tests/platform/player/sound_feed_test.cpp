#include "platform/player/sound_feed.h"

#include <gmock/gmock.h>

#include <QTest>
#include <atomic>
#include <cmath>
#include <future>
#include <mutex>

#include "support/movie_maker.h"
#include "support/temporary_folder.h"

namespace vantrel {
namespace {

using namespace testing;
using State = SoundFeed::State;

constexpr int kRate = 48000;
constexpr int kBuffer = 480;

/// A device that asks for sound when the test says.
struct Device {
  std::mutex mutex;
  SoundOutput::Fill fill;
  bool isStarted = false;

  /// Left and right in turn; nothing while the device stands still.
  std::vector<float> pull() {
    const std::lock_guard lock(mutex);
    std::vector<float> samples(2 * kBuffer);
    if (!isStarted) return {};
    fill(samples.data(), kBuffer);
    return samples;
  }
};

class FakeOutput final : public SoundOutput {
 public:
  explicit FakeOutput(Device& device) : m_device(device) {}
  ~FakeOutput() override { set(false); }
  [[nodiscard]] int sampleRate() const override { return kRate; }
  [[nodiscard]] int bufferLength() const override { return kBuffer; }
  void start() override { set(true); }
  void stop() override { set(false); }

 private:
  void set(bool started) {
    const std::lock_guard lock(m_device.mutex);
    m_device.isStarted = started;
  }
  Device& m_device;
};

class SoundFeedTest : public ::testing::Test {
 protected:
  /// Two seconds in which sample n has the value n / 96000 − 0.5 on the left.
  static float ramp(double seconds) { return static_cast<float>(seconds / 2 - 0.5); }

  void SetUp() override {
    runFfmpeg({"-f", "lavfi", "-i", "aevalsrc=n/96000-0.5|0.5-n/96000:s=48000:d=2", "-c:a",
               "pcm_f32le", film.string()});
    movie.emplace(Movie::open(film));
    track = movie->tracks(MovieTrack::Kind::Audio).front();
  }
  SoundFeed::Open openFake() {
    return [this](SoundOutput::Fill fill) {
      device.fill = std::move(fill);
      return std::make_unique<FakeOutput>(device);
    };
  }
  /// The first buffer that the device gets after it was started.
  std::vector<float> firstBuffer() {
    std::vector<float> samples;
    EXPECT_TRUE(QTest::qWaitFor([&] { return !(samples = device.pull()).empty(); }));
    return samples;
  }
  /// Until the device gets a buffer that begins there, in seconds.
  bool waitToPlayFrom(double start) {
    return QTest::qWaitFor([&] {
      const std::vector<float> samples = device.pull();
      return !samples.empty() && std::abs(samples[0] - ramp(start)) < 1e-5;
    });
  }

  TemporaryFolder folder;
  const std::filesystem::path film = folder / "film.mov";
  std::optional<Movie> movie;
  std::optional<MovieTrack> track;
  Device device;
};

TEST_F(SoundFeedTest, WithoutATrackItIsSilent) {
  SoundFeed feed(*movie, {}, openFake());
  feed.start(0);
  EXPECT_EQ(feed.state(), State::Silent);
  EXPECT_FALSE(feed.time());
}

TEST_F(SoundFeedTest, WithoutADeviceItIsSilent) {
  SoundFeed feed(*movie, track, [](const SoundOutput::Fill&) { return nullptr; });
  feed.start(0);
  EXPECT_TRUE(QTest::qWaitFor([&] { return feed.state() == State::Silent; }));
}

TEST_F(SoundFeedTest, ADeviceThatOpensTooLateCanJoin) {
  std::promise<void> opening;
  SoundFeed feed(*movie, track, [&](SoundOutput::Fill fill) {
    opening.get_future().wait();
    return openFake()(std::move(fill));
  });
  feed.start(0);
  EXPECT_TRUE(QTest::qWaitFor([&] { return feed.state() == State::Silent; }));
  EXPECT_FALSE(feed.canJoin());
  opening.set_value();
  EXPECT_TRUE(QTest::qWaitFor([&] { return feed.canJoin(); }));
  feed.start(0.5);
  EXPECT_FALSE(feed.canJoin());
  EXPECT_NEAR(firstBuffer()[0], ramp(0.5), 1e-5);
  EXPECT_EQ(feed.state(), State::Heard);
}

TEST_F(SoundFeedTest, WhatCannotBeOpenedIsSilent) {
  SoundFeed feed(*movie, track, openFake());
  std::filesystem::remove(film);
  feed.start(0);
  EXPECT_TRUE(QTest::qWaitFor([&] { return feed.state() == State::Silent; }));
}

TEST_F(SoundFeedTest, PlaysFromTheTimeThatIsAskedFor) {
  SoundFeed feed(*movie, track, openFake());
  feed.start(1.25);
  const auto samples = firstBuffer();
  ASSERT_FALSE(samples.empty());
  EXPECT_NEAR(samples[0], ramp(1.25), 1e-5);
  EXPECT_NEAR(samples[1], -ramp(1.25), 1e-5);
  EXPECT_EQ(feed.state(), State::Heard);
  EXPECT_NEAR(*feed.time(), 1.25, 0.02);
}

TEST_F(SoundFeedTest, ANewStartTakesThePlaceOfTheOld) {
  SoundFeed feed(*movie, track, openFake());
  feed.start(0);
  feed.start(0.5);
  feed.stop();
  feed.start(1.5);
  // Until the feed's own thread has heard of it, an older one may sound.
  EXPECT_TRUE(waitToPlayFrom(1.5));
  feed.start(0.25);
  EXPECT_TRUE(waitToPlayFrom(0.25));
}

TEST_F(SoundFeedTest, StoppedItAsksForNothing) {
  SoundFeed feed(*movie, track, openFake());
  feed.start(0);
  (void)firstBuffer();
  feed.stop();
  EXPECT_TRUE(QTest::qWaitFor([&] { return device.pull().empty(); }));
}

TEST_F(SoundFeedTest, PlaysAllOfItAndThenSilence) {
  SoundFeed feed(*movie, track, openFake());
  feed.start(1);
  double last = 0;
  std::vector<float> samples = firstBuffer();
  EXPECT_TRUE(QTest::qWaitFor([&] {
    if (!samples.empty() && samples[0] != 0) last = samples[0];
    samples = device.pull();
    return last > ramp(2 - 0.011) && samples[0] == 0;
  }));
  EXPECT_EQ(feed.state(), State::Heard);
}

TEST_F(SoundFeedTest, PlaysAgainAfterItCameToWhereTheFileIsCut) {
  const std::filesystem::path cut = folder / "cut.mov";
  runFfmpeg({"-i", film, "-c", "copy", "-movflags", "+faststart", cut});
  std::filesystem::resize_file(cut, std::filesystem::file_size(cut) / 2);
  const Movie half = Movie::open(cut);
  SoundFeed feed(half, half.tracks(MovieTrack::Kind::Audio).at(0), openFake());
  feed.start(0.75);
  EXPECT_NEAR(firstBuffer()[0], ramp(0.75), 1e-5);
  EXPECT_TRUE(QTest::qWaitFor([&] {
    const auto samples = device.pull();
    return !samples.empty() && samples[0] == 0;
  }));
  EXPECT_EQ(feed.state(), State::Heard);
  feed.start(0.25);
  EXPECT_TRUE(QTest::qWaitFor([&] {
    const auto samples = device.pull();
    return !samples.empty() && std::abs(samples[0] - ramp(0.25)) < 1e-5;
  }));
}

TEST_F(SoundFeedTest, MutedItPlaysSilenceInTime) {
  SoundFeed feed(*movie, track, openFake());
  feed.setMuted(true);
  feed.start(0);
  EXPECT_THAT(firstBuffer(), ::testing::Each(0.0F));
  feed.setMuted(false);
  EXPECT_NEAR(device.pull()[0], ramp(static_cast<double>(kBuffer) / kRate), 1e-5);
}

TEST_F(SoundFeedTest, ADeviceThatStopsAskingCountsAsGone) {
  SoundFeed feed(*movie, track, openFake());
  feed.start(0);
  (void)firstBuffer();
  EXPECT_EQ(feed.state(), State::Heard);
  EXPECT_TRUE(QTest::qWaitFor([&] { return feed.state() == State::Silent; }));
  EXPECT_FALSE(feed.time());
}

TEST_F(SoundFeedTest, TheTimeNeverGoesBack) {
  SoundFeed feed(*movie, track, openFake());
  feed.start(0.5);
  (void)firstBuffer();
  double last = 0.5;
  for (int i = 0; i < 50; ++i) {
    const auto time = feed.time();
    ASSERT_TRUE(time);
    EXPECT_GE(*time, last);
    last = *time;
    (void)device.pull();
  }
}

TEST_F(SoundFeedTest, PlaysOnARealDevice) {
  qputenv("SDL_AUDIODRIVER", "dummy");
  SoundFeed feed(*movie, track);
  feed.start(0.5);
  EXPECT_TRUE(QTest::qWaitFor([&] { return feed.time().value_or(0) > 0.6; }));
}

TEST_F(SoundFeedTest, AnUnknownDeviceIsSilent) {
  qputenv("SDL_AUDIODRIVER", "no such driver");
  SoundFeed feed(*movie, track);
  feed.start(0);
  EXPECT_TRUE(QTest::qWaitFor([&] { return feed.state() == State::Silent; }));
  qputenv("SDL_AUDIODRIVER", "dummy");
}

}  // namespace
}  // namespace vantrel
