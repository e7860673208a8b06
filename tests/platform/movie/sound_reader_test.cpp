#include "platform/movie/sound_reader.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <cmath>
#include <map>
#include <memory>
#include <numbers>

#include "platform/movie/movie.h"
#include "platform/movie/movie_error.h"
#include "support/movie_maker.h"
#include "support/quicktime_maker.h"
#include "support/temporary_folder.h"

namespace vantrel {
namespace {

using namespace testing;

constexpr int kRate = 48000;
constexpr int kLength = 2 * kRate;

/// The sound of one channel by its place in the movie; silence has none.
using Heard = std::map<int64_t, float>;

class SoundReaderTest : public ::testing::Test {
 protected:
  /// Sample n of two seconds has this value on the left, and its negative on the right.
  static float ramp(int64_t n) { return static_cast<float>(n) / kLength - 0.5F; }

  std::filesystem::path make(const std::string& name, const std::string& sound,
                             const std::vector<std::string>& options) const {
    const std::filesystem::path film = m_folder / name;
    std::vector<std::string> arguments = {"-f", "lavfi", "-i", "aevalsrc=" + sound + ":d=2"};
    arguments.insert(arguments.end(), options.begin(), options.end());
    arguments.push_back(film.string());
    runFfmpeg(arguments);
    return film;
  }
  std::filesystem::path makeRamp() const {
    return make("ramp.mov", "n/96000-0.5|0.5-n/96000:s=48000", {"-c:a", "pcm_f32le"});
  }
  /// A click a second, the first after half a second.
  std::filesystem::path makeClicks(const std::string& name,
                                   const std::vector<std::string>& options) const {
    return make(name, "'if(lt(mod(n+24000,48000),24),0.9,0)':s=48000", options);
  }

  static std::unique_ptr<SoundReader> reader(const std::filesystem::path& film, int rate = kRate) {
    const Movie movie = Movie::open(film);
    return std::make_unique<SoundReader>(movie, movie.tracks(MovieTrack::Kind::Audio).front(),
                                         rate);
  }
  /// Of a channel; blocks may not overlap.
  static Heard heard(SoundReader& reader, int channel = 0) {
    Heard result;
    int64_t end = 0;
    while (const auto block = reader.next()) {
      EXPECT_GE(block->start, end);
      end = block->end();
      for (int64_t i = 0; i < block->length(); ++i) {
        result[block->start + i] = block->samples[static_cast<size_t>(2 * i + channel)];
      }
    }
    return result;
  }
  static int64_t loudest(const Heard& sound, int64_t from, int64_t to) {
    const auto begin = sound.lower_bound(from), end = sound.lower_bound(to);
    if (begin == end) return -1;
    return std::max_element(
               begin, end,
               [](const auto& a, const auto& b) { return std::abs(a.second) < std::abs(b.second); })
        ->first;
  }

  TemporaryFolder m_folder;
};

TEST_F(SoundReaderTest, GivesEachSampleAtItsPlace) {
  const auto film = makeRamp();
  for (const int channel : {0, 1}) {
    const Heard sound = heard(*reader(film), channel);
    ASSERT_EQ(sound.size(), static_cast<size_t>(kLength));
    EXPECT_EQ(sound.begin()->first, 0);
    for (const auto& [place, value] : sound) {
      ASSERT_NEAR(value, channel == 0 ? ramp(place) : -ramp(place), 1e-6) << place;
    }
  }
}

TEST_F(SoundReaderTest, SeeksToTheSample) {
  const auto sound = reader(makeRamp());
  for (const int64_t place : {70001, 3, 24000, 95999, 1}) {
    sound->seek({place, kRate});
    const auto block = sound->next();
    ASSERT_TRUE(block) << place;
    EXPECT_EQ(block->start, place);
    EXPECT_NEAR(block->samples[0], ramp(place), 1e-6);
  }
  sound->seek({kLength, kRate});
  EXPECT_FALSE(sound->next());
  sound->seek({0, kRate});
  EXPECT_EQ(heard(*sound).size(), static_cast<size_t>(kLength));
}

TEST_F(SoundReaderTest, GivesOneChannelToBothSides) {
  const auto film = make("mono.mov", "sin(440*2*PI*t):s=48000", {"-c:a", "pcm_f32le"});
  EXPECT_EQ(heard(*reader(film), 0), heard(*reader(film), 1));
  const Heard sound = heard(*reader(film));
  EXPECT_NEAR(sound.at(1000), std::sin(440 * 2 * std::numbers::pi * 1000 / kRate), 0.3);
}

TEST_F(SoundReaderTest, MixesSurroundIntoTwoChannels) {
  const auto film = make("surround.mov", "0.5|0|0|0|0|0:c=5.1:s=48000", {"-c:a", "pcm_s16le"});
  EXPECT_GT(heard(*reader(film), 0).at(5000), 0.1F);
  EXPECT_NEAR(heard(*reader(film), 1).at(5000), 0, 1e-3);
}

TEST_F(SoundReaderTest, ConvertsTheRate) {
  const auto film = make("44.mov", "sin(1000*2*PI*t):s=44100", {"-c:a", "pcm_s16le"});
  const Heard sound = heard(*reader(film));
  EXPECT_NEAR(static_cast<double>(sound.size()), kLength, 4);
  for (int64_t place = 10'000; place < 10'500; ++place) {
    ASSERT_NEAR(
        std::abs(sound.at(place)),
        std::abs(std::sin(1000 * 2 * std::numbers::pi * static_cast<double>(place) / kRate)), 0.31)
        << place;
  }
  // A zero crossing tells the place to less than a sample.
  EXPECT_NEAR(sound.at(kRate), 0, 0.07);
}

TEST_F(SoundReaderTest, ObeysEdits) {
  const auto film = makeRamp();
  // Half a second of nothing, then two stretches of the media.
  setEdits(film, 1, {{500, -1}, {250, 24000}, {500, 60000}});
  const auto sound = reader(film);
  const Heard all = heard(*sound);
  EXPECT_EQ(all.begin()->first, 24000);
  EXPECT_EQ(all.rbegin()->first, 24000 + 12000 + 24000 - 1);
  EXPECT_EQ(all.size(), 36000u);
  EXPECT_NEAR(all.at(24000), ramp(24000), 1e-6);
  EXPECT_NEAR(all.at(35999), ramp(35999), 1e-6);
  EXPECT_NEAR(all.at(36000), ramp(60000), 1e-6);

  sound->seek({40000, kRate});
  EXPECT_EQ(sound->next()->start, 40000);
  sound->seek({0, kRate});
  EXPECT_EQ(sound->next()->start, 24000);
}

TEST_F(SoundReaderTest, PlacesTheSoundOfCodecsThatNeedARunUp) {
  const std::map<std::string, std::vector<std::string>> films{
      {"aac.mov", {"-c:a", "aac", "-b:a", "192k"}},
      {"aac.mp4", {"-c:a", "aac", "-b:a", "192k"}},
      {"opus.webm", {"-c:a", "libopus", "-b:a", "192k"}},
      {"flac.mkv", {"-c:a", "flac"}}};
  for (const auto& [name, options] : films) {
    const auto sound = reader(makeClicks(name, options));
    const Heard all = heard(*sound);
    // The click lasts 24 samples.
    EXPECT_NEAR(static_cast<double>(loudest(all, 0, kRate)), 24012, 30) << name;
    EXPECT_NEAR(static_cast<double>(loudest(all, kRate, kLength)), 72012, 30) << name;

    sound->seek({65000, kRate});
    const Heard late = heard(*sound);
    EXPECT_NEAR(static_cast<double>(late.begin()->first), 65000, 60) << name;
    EXPECT_NEAR(static_cast<double>(loudest(late, 65000, kLength)), 72012, 30) << name;
  }
}

TEST_F(SoundReaderTest, SeeksInTransportStreams) {
  const auto film = makeClicks("film.ts", {"-c:a", "aac", "-b:a", "192k"});
  const auto sound = reader(film);
  const int64_t click = loudest(heard(*sound), kRate, kLength);
  for (const int64_t place : {65000, 30000, 0}) {
    sound->seek({place, kRate});
    const Heard late = heard(*sound);
    ASSERT_FALSE(late.empty());
    EXPECT_GE(late.begin()->first, place);
    EXPECT_NEAR(static_cast<double>(loudest(late, kRate, kLength)), static_cast<double>(click), 60);
  }
}

TEST_F(SoundReaderTest, EndsAtTheEndOfTheSound) {
  const auto sound = reader(makeRamp());
  sound->seek({90 * kRate, kRate});
  EXPECT_FALSE(sound->next());
  EXPECT_FALSE(sound->next());
}

TEST_F(SoundReaderTest, TellsOfAFileThatHasGone) {
  const auto film = makeRamp();
  const Movie movie = Movie::open(film);
  std::filesystem::remove(film);
  EXPECT_THROW(SoundReader(movie, movie.tracks(MovieTrack::Kind::Audio).front(), kRate),
               std::exception);
}

}  // namespace
}  // namespace vantrel
