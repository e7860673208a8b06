#include "base/failure.h"
#include "platform/movie/movie_writer.h"
#include "support/temporary_folder.h"
#include "written_movie.h"

namespace vantrel {
namespace {

using namespace vantrel::testing;
using Status = WritingSession::Status;

constexpr int32_t kMovieTimescale = 48'000;

class MovieWriterAudioTest : public ::testing::Test {
 protected:
  /// Half a second of a tone in a file of this name, encoded as told.
  std::filesystem::path makeTone(const std::string& name,
                                 const std::vector<std::string>& encoding) {
    const std::filesystem::path file = m_folder / name;
    std::vector<std::string> arguments = {"-f", "lavfi", "-i", "sine=r=48000:d=0.5"};
    arguments.insert(arguments.end(), encoding.begin(), encoding.end());
    arguments.push_back(file.string());
    runFfmpeg(arguments);
    return file;
  }

  /// Moves all packets so that the first one is at `time`, whatever this FFmpeg makes of the file.
  static void startAt(Sound& sound, int64_t time) {
    const int64_t shift = time - sound.packets.front()->pts;
    for (const AvPacketPtr& packet : sound.packets)
      packet->pts += shift, packet->dts += shift;
  }

  static AudioInputSettings settingsFor(const Sound& sound) {
    AudioInputSettings settings;
    settings.source = sound.track;
    return settings;
  }

  /// A movie of half a second with these tracks of sound.
  void write(const std::vector<const Sound*>& sounds,
             const std::vector<AudioInputSettings>& settings) {
    const VideoInputSettings video = smallSettings(VideoCodec::H264);
    MovieWriter writer(m_file);
    writer.setMovieTimescale(kMovieTimescale);
    SampleInput& pictures = writer.addVideoInput(video);
    std::vector<SampleInput*> inputs;
    for (const AudioInputSettings& each : settings)
      inputs.push_back(&writer.addAudioInput(each));
    ASSERT_TRUE(writer.startWriting());
    appendPictures(pictures, video, evenTimes(15, 20), 20);
    for (size_t index = 0; index < sounds.size(); ++index) {
      for (size_t packet = 0; packet < sounds[index]->packets.size(); ++packet)
        EXPECT_TRUE(inputs[index]->append(sounds[index]->sample(packet)));
      inputs[index]->markAsFinished();
    }
    writer.finishWriting();
    ASSERT_EQ(writer.status(), Status::completed);
  }

  TemporaryFolder m_folder;
  std::filesystem::path m_file = m_folder / "film.mov";
};

TEST_F(MovieWriterAudioTest, KeepsEveryKindOfPacketAndItsTimes) {
  const std::vector<std::string> kinds = {
      "pcm_s16le", "pcm_s24be", "pcm_f32le", "pcm_u8", "pcm_mulaw",  "pcm_alaw", "aac",
      "alac",      "ac3",       "eac3",      "mp2",    "libmp3lame", "dca"};
  std::vector<std::string> encoding = {"-strict", "-2", "-movie_timescale", "48000"};
  for (size_t index = 0; index < kinds.size(); ++index) {
    encoding.insert(encoding.end(), {"-map", "0:a", "-c:a:" + std::to_string(index), kinds[index]});
  }
  const auto tone = makeTone("tone.mov", encoding);
  const auto boxes = QuickTimeMovie::read(tone);
  ASSERT_TRUE(boxes);
  std::vector<Sound> sounds;
  std::vector<const Sound*> written;
  std::vector<AudioInputSettings> settings;
  for (size_t index = 0; index < kinds.size(); ++index) {
    sounds.push_back(readSound(tone, static_cast<int>(index)));
    sounds.back().track.quickTime = boxes->tracks.at(index);
  }
  for (const Sound& sound : sounds) {
    written.push_back(&sound);
    settings.push_back(settingsFor(sound));
  }
  write(written, settings);
  const std::vector<std::string> before = packetBytes(tone), after = packetBytes(m_file);
  const auto timesBefore = soundTimes(tone), timesAfter = soundTimes(m_file);
  const auto movie = QuickTimeMovie::read(m_file);
  ASSERT_EQ(before.size(), kinds.size());
  ASSERT_EQ(after.size(), kinds.size());
  for (size_t index = 0; index < kinds.size(); ++index) {
    SCOPED_TRACE(kinds[index]);
    EXPECT_FALSE(before[index].empty());
    EXPECT_EQ(after[index], before[index]);
    EXPECT_EQ(timesAfter[index], timesBefore[index]);
    EXPECT_EQ(movie->tracks.at(index + 1).edits, boxes->tracks.at(index).edits);
  }
}

TEST_F(MovieWriterAudioTest, UnpacksAacFromATransportStream) {
  const auto tone = makeTone("tone.ts", {"-c:a", "aac"});
  Sound sound = readSound(tone);
  // Times from the movie's start, as a reader counts them.
  startAt(sound, 0);
  write({&sound}, {settingsFor(sound)});
  const QJsonObject stream = probeStream(m_file, 1);
  EXPECT_EQ(text(stream, "codec_name"), "aac");
  EXPECT_EQ(text(stream, "profile"), "LC");
  EXPECT_EQ(text(stream, "sample_rate"), "48000");
  const std::vector<int64_t> times = frameTimes(m_file, "a:0");
  EXPECT_EQ(times.size(), sound.packets.size());
  for (size_t index = 0; index < times.size(); ++index)
    EXPECT_EQ(times[index], static_cast<int64_t>(index) * 1024);
}

TEST_F(MovieWriterAudioTest, HidesThePrimingThatAMatroskaFileHides) {
  const auto tone = makeTone("tone.mkv", {"-c:a", "aac"});
  Sound sound = readSound(tone);
  // The first packet as such files place it: before the start, and not to be heard.
  startAt(sound, -21);
  write({&sound}, {settingsFor(sound)});
  EXPECT_EQ(packetBytes(m_file), packetBytes(tone));
  EXPECT_EQ(QuickTimeMovie::read(m_file)->tracks.at(1).edits.at(0).mediaTime, 21 * 48);
  // FFmpeg shows nothing of the priming but the 16 samples that milliseconds leave over.
  const std::vector<int64_t> times = frameTimes(m_file, "a:0");
  ASSERT_EQ(times.size(), sound.packets.size());
  EXPECT_EQ(times.at(0), 0);
  EXPECT_EQ(times.at(1), 16);
}

TEST_F(MovieWriterAudioTest, ConvertsEditsToTheTicksOfTheWrittenTrack) {
  Sound sound = readSound(makeTone("tone.mkv", {"-c:a", "aac"}));
  startAt(sound, 0);
  sound.track.quickTime.emplace();
  sound.track.quickTime->timescale = 1000;
  sound.track.quickTime->edits = {{100, -1}, {400, 21}, {100, 50}};
  write({&sound}, {settingsFor(sound)});
  EXPECT_EQ(QuickTimeMovie::read(m_file)->tracks.at(1).edits,
            (std::vector<QuickTimeEdit>{{100, -1}, {400, 21 * 48}, {100, 50 * 48}}));
}

TEST_F(MovieWriterAudioTest, DelaysSoundThatStartsLater) {
  const auto tone = makeTone("tone.wav", {});
  Sound sound = readSound(tone);
  for (const AvPacketPtr& packet : sound.packets)
    packet->pts += 12'000, packet->dts += 12'000;
  write({&sound}, {settingsFor(sound)});
  EXPECT_EQ(frameTimes(m_file, "a:0").front(), 12'000);
  EXPECT_EQ(QuickTimeMovie::read(m_file)->duration, 36'000U);
}

TEST_F(MovieWriterAudioTest, KeepsWhatTracksSayOfThemselves) {
  const auto tone = makeTone("tone.mov", {"-c:a", "pcm_s16le"});
  const Sound sound = readSound(tone);
  AudioInputSettings first = settingsFor(sound), second = first;
  first.languageCode = "fre";
  first.extendedLanguageTag = "fr-CA";
  first.marksOutputTrackAsEnabled = false;
  second.source.quickTime = QuickTimeMovie::read(tone)->tracks.at(0);
  second.source.quickTime->edits.clear();
  second.source.quickTime->language = 11;  // an old number: Japanese
  second.source.languageCode = second.languageCode = "jpn";
  const std::string userData("\0\0\0\x10udta\0\0\0\x08name", 16);
  second.userData.assign(userData.begin(), userData.end());
  write({&sound, &sound}, {first, second});
  const auto movie = QuickTimeMovie::read(m_file);
  ASSERT_TRUE(movie);
  ASSERT_EQ(movie->tracks.size(), 3U);
  EXPECT_TRUE(movie->tracks[0].enabled);
  EXPECT_FALSE(movie->tracks[1].enabled);
  EXPECT_EQ(movie->tracks[1].language, ('f' - 96) << 10 | ('r' - 96) << 5 | ('e' - 96));
  EXPECT_EQ(movie->tracks[1].extendedLanguageTag, "fr-CA");
  EXPECT_TRUE(movie->tracks[2].enabled);
  EXPECT_EQ(movie->tracks[2].language, 11);
  EXPECT_EQ(movie->tracks[2].userData, second.userData);
}

TEST_F(MovieWriterAudioTest, KeepsASingleDisabledTrackDisabled) {
  const Sound sound = readSound(makeTone("tone.wav", {}));
  AudioInputSettings settings = settingsFor(sound);
  settings.marksOutputTrackAsEnabled = false;
  write({&sound}, {settings});
  EXPECT_FALSE(QuickTimeMovie::read(m_file)->tracks.at(1).enabled);
}

TEST_F(MovieWriterAudioTest, DropsATrackWithoutAPacketAndKeepsTheOthersApart) {
  const Sound sound = readSound(makeTone("tone.mov", {"-c:a", "ac3"}));
  const Sound empty{sound.track, {}, sound.timeBase};
  AudioInputSettings settings = settingsFor(sound);
  settings.languageCode = "deu";
  write({&empty, &sound}, {settingsFor(sound), settings});
  const auto movie = QuickTimeMovie::read(m_file);
  ASSERT_TRUE(movie);
  ASSERT_EQ(movie->tracks.size(), 2U);
  EXPECT_EQ(movie->tracks[1].language, ('d' - 96) << 10 | ('e' - 96) << 5 | ('u' - 96));
}

TEST_F(MovieWriterAudioTest, RefusesWhatNoQuickTimeMovieHolds) {
  const Sound opus = readSound(makeTone("tone.mkv", {"-c:a", "flac"}));
  const MovieWriter writer(m_file);
  EXPECT_FALSE(writer.canAdd(settingsFor(opus)));
  Sound sound = readSound(makeTone("tone.wav", {}));
  EXPECT_TRUE(writer.canAdd(settingsFor(sound)));
  sound.track.fitsQuickTime = false;
  EXPECT_FALSE(writer.canAdd(settingsFor(sound)));
}

TEST_F(MovieWriterAudioTest, SaysThatDamagedSoundCannotBeCopied) {
  // Packets with headers, which are taken off on the way.
  const Sound sound = readSound(makeTone("tone.ts", {"-c:a", "aac"}));
  MovieWriter writer(m_file);
  (void)writer.addVideoInput(smallSettings(VideoCodec::H264));
  SampleInput& tone = writer.addAudioInput(settingsFor(sound));
  ASSERT_TRUE(writer.startWriting());
  EXPECT_TRUE(tone.append(sound.sample(0)));
  MovieSample damaged = sound.sample(1);
  AVPacket& packet = *damaged.content()->packet;
  ASSERT_EQ(av_packet_make_writable(&packet), 0);
  std::fill_n(packet.data, packet.size, uint8_t{0});
  EXPECT_FALSE(tone.append(std::move(damaged)));
  EXPECT_EQ(writer.status(), Status::failed);
  EXPECT_EQ(userMessage(writer.error()),
            "The original audio is damaged and cannot be copied into a MOV file.");
}

TEST_F(MovieWriterAudioTest, HoldsATrackThatIsASecondAheadOfTheOther) {
  const Sound sound = readSound(makeTone("tone.wav", {}));
  const VideoInputSettings settings = smallSettings(VideoCodec::H264);
  MovieWriter writer(m_file);
  SampleInput& pictures = writer.addVideoInput(settings);
  SampleInput& tone = writer.addAudioInput(settingsFor(sound));
  ASSERT_TRUE(writer.startWriting());
  EXPECT_TRUE(pictures.isReadyForMoreMediaData());
  EXPECT_TRUE(tone.isReadyForMoreMediaData());
  EXPECT_TRUE(pictures.append(videoSample(makePicture(64, 48, 599), 600)));
  EXPECT_TRUE(pictures.isReadyForMoreMediaData());
  EXPECT_TRUE(pictures.append(videoSample(makePicture(64, 48, 600), 600)));
  EXPECT_FALSE(pictures.isReadyForMoreMediaData());
  EXPECT_TRUE(tone.isReadyForMoreMediaData());
  EXPECT_TRUE(tone.append(sound.sample(1)));
  EXPECT_TRUE(pictures.isReadyForMoreMediaData());
  EXPECT_TRUE(pictures.append(videoSample(makePicture(64, 48, 6000), 600)));
  EXPECT_FALSE(pictures.isReadyForMoreMediaData());
  tone.markAsFinished();
  EXPECT_TRUE(pictures.isReadyForMoreMediaData());
}

}  // namespace
}  // namespace vantrel
