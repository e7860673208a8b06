#include "platform/movie/movie_reader.h"

#include <gmock/gmock.h>

#include <atomic>
#include <regex>
#include <sstream>
#include <thread>

#include "base/failure.h"
#include "platform/movie/numbered_film.h"
#include "platform/movie/sample_content.h"
#include "support/quicktime_maker.h"
#include "support/temporary_folder.h"

extern "C" {
#include <libavutil/adler32.h>
}

namespace vantrel {
namespace {

using namespace testing;
using ::testing::EndsWith;
using Status = ReadingSession::Status;

constexpr size_t kTransportPacket = 188;

VideoOutputSettings wholePicture() {
  VideoOutputSettings settings;
  settings.width = 64;
  settings.height = 48;
  return settings;
}

MovieTrack videoTrack(const Movie& movie) {
  return movie.tracks(MovieTrack::Kind::Video).at(0);
}
MovieTrack audioTrack(const Movie& movie) {
  return movie.tracks(MovieTrack::Kind::Audio).at(0);
}

int countSamples(SampleOutput& output) {
  int count = 0;
  while (output.copyNextSample())
    ++count;
  return count;
}

/// Reads the first video track and the first audio track, if there is one, to their ends.
struct Reading {
  int pictures = 0, packets = 0;
  std::string error;
};
Reading readAll(const std::filesystem::path& file) try {
  const Movie movie = Movie::open(file);
  if (movie.tracks(MovieTrack::Kind::Video).empty()) return {0, 0, "No pictures"};
  MovieReader reader(movie);
  SampleOutput& video = reader.addVideoOutput(videoTrack(movie), wholePicture());
  SampleOutput* audio = nullptr;
  if (!movie.tracks(MovieTrack::Kind::Audio).empty()) {
    audio = &reader.addAudioOutput(audioTrack(movie));
  }
  EXPECT_TRUE(reader.startReading());
  Reading reading;
  reading.pictures = countSamples(video);
  if (audio) reading.packets = countSamples(*audio);
  if (reader.error()) reading.error = userMessage(reader.error());
  EXPECT_EQ(reader.status(), reading.error.empty() ? Status::completed : Status::failed);
  return reading;
} catch (const std::runtime_error& error) {
  return {0, 0, error.what()};
}

/// Makes a film of numbered pictures with a tone.
void makeFilm(const std::filesystem::path& file, const std::vector<std::string>& options = {}) {
  const auto pictures = file.parent_path() / ("pictures" + file.extension().string());
  makeNumberedFilm(pictures, options, "", 50);
  const bool isWebm = file.extension() == ".webm";
  std::vector<std::string> arguments{"-i",       pictures.string(),
                                     "-f",       "lavfi",
                                     "-i",       "sine=frequency=440:duration=2",
                                     "-c:v",     "copy",
                                     "-c:a",     isWebm ? "libopus" : "aac",
                                     "-shortest"};
  const auto flags = std::find(options.begin(), options.end(), "-movflags");
  if (flags != options.end()) arguments.insert(arguments.end(), flags, flags + 2);
  if (file.extension() == ".mov" || file.extension() == ".mp4") {
    arguments.insert(arguments.end(), {"-video_track_timescale", std::to_string(kTicks)});
  }
  arguments.push_back(file.string());
  runFfmpeg(arguments);
  std::filesystem::remove(pictures);
}

class MovieReaderTest : public ::testing::Test {
 protected:
  TemporaryFolder m_folder;
  const std::filesystem::path m_mov = m_folder / "film.mov";
};

TEST_F(MovieReaderTest, IsCompletedOnceEveryOutputHasGivenAll) {
  makeFilm(m_mov);
  const Movie movie = Movie::open(m_mov);
  MovieReader reader(movie);
  SampleOutput& video = reader.addVideoOutput(videoTrack(movie), wholePicture());
  SampleOutput& audio = reader.addAudioOutput(audioTrack(movie));
  EXPECT_EQ(reader.status(), Status::unknown);
  EXPECT_FALSE(video.copyNextSample());
  EXPECT_FALSE(audio.copyNextSample());
  ASSERT_TRUE(reader.startReading());
  EXPECT_EQ(countSamples(video), 50);
  EXPECT_EQ(reader.status(), Status::reading);
  EXPECT_GT(countSamples(audio), 80);
  EXPECT_EQ(reader.status(), Status::completed);
  EXPECT_FALSE(video.copyNextSample());
  EXPECT_FALSE(reader.startReading());
  EXPECT_EQ(reader.error(), nullptr);
}

TEST_F(MovieReaderTest, GivesCroppedPicturesWithTheirTimes) {
  makeNumberedFilm(m_mov);
  const Movie movie = Movie::open(m_mov);
  MovieReader reader(movie);
  VideoOutputSettings settings;
  settings.transform.tx = -10;
  settings.transform.ty = -6;
  settings.width = 20;
  settings.height = 30;
  SampleOutput& video = reader.addVideoOutput(videoTrack(movie), settings);
  ASSERT_TRUE(reader.startReading());
  for (int number = 0; number < kPictures; ++number) {
    const auto sample = video.copyNextSample();
    ASSERT_TRUE(sample);
    EXPECT_EQ(sample->presentationTime(), (MediaTime{number * kPictureTicks, kTicks}));
    EXPECT_EQ(sample->duration(), (MediaTime{kPictureTicks, kTicks}));
    const AVFrame& frame = *sample->content()->frame;
    EXPECT_EQ(frame.width, 20);
    EXPECT_EQ(frame.height, 30);
    EXPECT_EQ(frame.pts, number * kPictureTicks);
    EXPECT_EQ(sample->content()->timeBase.den, kTicks);
    EXPECT_EQ(numberOf(frame), number);
  }
  EXPECT_FALSE(video.copyNextSample());
}

TEST_F(MovieReaderTest, AddsWhatMakesSense) {
  makeFilm(m_mov);
  const Movie movie = Movie::open(m_mov);
  const MovieReader reader(movie);
  EXPECT_TRUE(reader.canAdd(audioTrack(movie)));
  EXPECT_FALSE(reader.canAdd(videoTrack(movie)));
  EXPECT_TRUE(reader.canAdd(videoTrack(movie), wholePicture()));
  EXPECT_FALSE(reader.canAdd(audioTrack(movie), wholePicture()));
  VideoOutputSettings settings = wholePicture();
  settings.width = 63;
  EXPECT_FALSE(reader.canAdd(videoTrack(movie), settings));
  settings = wholePicture();
  settings.height = 0;
  EXPECT_FALSE(reader.canAdd(videoTrack(movie), settings));
  settings = wholePicture();
  settings.transform = {0, 1, -1, 0, 48, 0};
  EXPECT_TRUE(reader.canAdd(videoTrack(movie), settings));
  settings.transform.tx = 0.5;
  EXPECT_FALSE(reader.canAdd(videoTrack(movie), settings));
  settings.transform = {2, 0, 0, 2, 0, 0};
  EXPECT_FALSE(reader.canAdd(videoTrack(movie), settings));
  settings.transform = {1, 1, 0, 1, 0, 0};
  EXPECT_FALSE(reader.canAdd(videoTrack(movie), settings));
}

/// One line for each packet as ffprobe prints it.
std::string packetLines(const std::filesystem::path& file) {
  const Movie movie = Movie::open(file);
  MovieReader reader(movie);
  SampleOutput& output = reader.addAudioOutput(audioTrack(movie));
  EXPECT_TRUE(reader.startReading());
  std::string lines;
  while (const auto sample = output.copyNextSample()) {
    const AVPacket& packet = *sample->content()->packet;
    const int64_t shift =
        av_rescale_q(movie.startOffset(), {1, AV_TIME_BASE}, sample->content()->timeBase);
    const auto sum = static_cast<uint32_t>(
        av_adler32_update(1, packet.data, static_cast<unsigned>(packet.size)));
    char line[128];
    std::snprintf(line, sizeof line, "%lld,%lld,%lld,%d,adler32:%08x\n",
                  static_cast<long long>(packet.pts - shift),
                  static_cast<long long>(packet.dts - shift),
                  static_cast<long long>(packet.duration), packet.size, sum);
    lines += line;
  }
  EXPECT_EQ(reader.status(), Status::completed);
  return lines;
}

TEST_F(MovieReaderTest, GivesPacketsOfSoundAsTheyStand) {
  const std::vector<std::pair<std::string, std::string>> sounds = {
      {"film.mov", "aac"}, {"film.mov", "pcm_s16le"}, {"film.mov", "alac"},
      {"film.mp4", "mp3"}, {"film.mkv", "flac"},      {"film.ts", "aac"},
      {"film.ts", "ac3"},  {"film.avi", "mp3"},       {"film.mkv", "aac"}};
  for (const auto& [name, codec] : sounds) {
    SCOPED_TRACE(name + " " + codec);
    const auto file = m_folder / name;
    runFfmpeg({"-f", "lavfi", "-i", "sine=frequency=440:duration=1", "-c:a", codec, file.string()});
    const bool isQuickTime = name == "film.mov" || name == "film.mp4";
    std::vector<std::string> arguments{"-show_packets",
                                       "-show_data_hash",
                                       "adler32",
                                       "-show_entries",
                                       "packet=pts,dts,duration,size,data_hash",
                                       "-of",
                                       "csv=p=0"};
    if (isQuickTime) arguments.insert(arguments.end(), {"-ignore_editlist", "1"});
    arguments.push_back(file.string());
    std::string expected = runFfprobe(arguments);
    // Side data stand behind or between, or begin a line.
    expected = std::regex_replace(expected, std::regex("MPEGTS Stream ID,[0-9]+(\n,)?"), "");
    expected = std::regex_replace(expected, std::regex(",+\n"), "\n");
    expected = std::regex_replace(expected, std::regex("N/A"), "0");
    EXPECT_EQ(packetLines(file), expected);
  }
}

TEST_F(MovieReaderTest, TellsWhereSoundStandsInTheMovie) {
  makeFilm(m_mov);
  setEdits(m_mov, 2, {{500, -1}, {1000, 2048}});
  const Movie movie = Movie::open(m_mov);
  MovieReader reader(movie);
  SampleOutput& output = reader.addAudioOutput(audioTrack(movie));
  ASSERT_TRUE(reader.startReading());
  const auto sample = output.copyNextSample();
  ASSERT_TRUE(sample);
  EXPECT_EQ(sample->presentationTime(), (MediaTime{22050 - 2048, 44100}));
  EXPECT_EQ(sample->duration(), (MediaTime{1024, 44100}));
  EXPECT_EQ(sample->content()->packet->pts, 0);
}

TEST_F(MovieReaderTest, FailsForAFileCutAnywhere) {
  const std::vector<std::pair<std::string, std::vector<std::string>>> films = {
      {"behind.mov", {}},
      {"front.mov", {"-movflags", "faststart"}},
      {"fragments.mp4", {"-movflags", "frag_keyframe+empty_moov"}},
      {"film.mkv", {}},
      {"film.webm", {"-c:v", "libvpx", "-b:v", "1M", "-deadline", "realtime"}},
      {"film.avi", {"-c:v", "mpeg4", "-q:v", "2"}}};
  for (const auto& [name, options] : films) {
    SCOPED_TRACE(name);
    const auto file = m_folder / name;
    makeFilm(file, options);
    const auto size = std::filesystem::file_size(file);
    const Reading whole = readAll(file);
    EXPECT_EQ(whole.pictures, 50);
    EXPECT_GE(whole.packets, 80);
    EXPECT_EQ(whole.error, "");
    for (const double part : {0.98, 0.8, 0.5, 0.3}) {
      std::filesystem::resize_file(file, static_cast<uintmax_t>(static_cast<double>(size) * part));
      EXPECT_NE(readAll(file).error, "") << part;
    }
  }
}

TEST_F(MovieReaderTest, SaysThatAFileEndsTooEarly) {
  makeFilm(m_mov, {"-movflags", "faststart"});
  std::filesystem::resize_file(m_mov, std::filesystem::file_size(m_mov) - 100);
  EXPECT_EQ(readAll(m_mov).error, "“film.mov” could not be read: The file ends too early");
}

TEST_F(MovieReaderTest, FailsForAMovieHeaderThatIsCutAnywhere) {
  makeFilm(m_mov);
  const std::string bytes = readFile(m_mov);
  const size_t header = bytes.find("moov") - 4;
  for (size_t cut = 1; cut < bytes.size() - header; cut += 7) {
    writeFile(m_mov, bytes.substr(0, bytes.size() - cut));
    EXPECT_NE(readAll(m_mov).error, "") << cut;
  }
}

TEST_F(MovieReaderTest, TakesATransmissionThatEndsWithAnyPacket) {
  const auto file = m_folder / "film.ts";
  makeFilm(file);
  const auto size = std::filesystem::file_size(file);
  for (const double part : {1.0, 0.97, 0.8, 0.5}) {
    const auto packets =
        static_cast<uintmax_t>(static_cast<double>(size / kTransportPacket) * part);
    std::filesystem::resize_file(file, packets * kTransportPacket);
    const Reading reading = readAll(file);
    EXPECT_EQ(reading.error, "") << part;
    EXPECT_GT(reading.pictures, 50 * part - 10);
  }
}

TEST_F(MovieReaderTest, FailsForATransmissionThatEndsWithinAPacket) {
  const auto file = m_folder / "film.ts";
  makeFilm(m_mov);
  // Packets alone, and behind time stamps.
  for (const char* mode : {"0", "1"}) {
    runFfmpeg({"-i", m_mov.string(), "-c", "copy", "-mpegts_m2ts_mode", mode, file.string()});
    const auto size = std::filesystem::file_size(file);
    for (const uintmax_t cut : {1U, 100U, 187U}) {
      std::filesystem::resize_file(file, size - cut);
      EXPECT_THAT(readAll(file).error, EndsWith("The file ends too early")) << cut;
    }
  }
}

TEST_F(MovieReaderTest, FailsForATransmissionThatHasLostManyPictures) {
  const auto file = m_folder / "film.ts";
  makeFilm(file);
  std::string bytes = readFile(file);
  const size_t packets = bytes.size() / kTransportPacket;
  const auto isPicture = [](const std::string& packet) {
    return (packet[1] & 0x1F) == 1 && packet[2] == 0;
  };
  // Packets are counted in four bits: a gap of as many packets of pictures would not show.
  int pictures = 0;
  const size_t begin = packets * 3 / 10 * kTransportPacket;
  size_t end = begin;
  while (end < 2 * begin || pictures % 16 == 0) {
    if (isPicture(bytes.substr(end, kTransportPacket))) ++pictures;
    end += kTransportPacket;
  }
  bytes.erase(begin, end - begin);
  writeFile(file, bytes);
  const Movie movie = Movie::open(file);
  MovieReader reader(movie);
  SampleOutput& video = reader.addVideoOutput(videoTrack(movie), wholePicture());
  ASSERT_TRUE(reader.startReading());
  EXPECT_LT(countSamples(video), 45);
  EXPECT_EQ(reader.status(), Status::failed);
}

TEST_F(MovieReaderTest, TakesATransmissionThatBeginsAnywhere) {
  const auto file = m_folder / "film.ts";
  makeFilm(file);
  const std::string bytes = readFile(file);
  // The tables come again and again.
  writeFile(file, bytes.substr(bytes.size() / 3 + 1));
  const Reading reading = readAll(file);
  EXPECT_EQ(reading.error, "");
  EXPECT_GT(reading.pictures, 15);
}

/// The bytes of the nth packet of the pictures become zeros.
void damagePackets(const std::filesystem::path& file, int first, int count) {
  const std::string places = runFfprobe({"-select_streams", "v", "-show_entries", "packet=size,pos",
                                         "-of", "csv=p=0", file.string()});
  std::string bytes = readFile(file);
  std::istringstream lines(places);
  size_t size = 0, position = 0;
  char comma = 0;
  for (int i = 0; lines >> size >> comma >> position; ++i) {
    if (i >= first && i < first + count) bytes.replace(position, size, size, '\0');
  }
  writeFile(file, bytes);
}

TEST_F(MovieReaderTest, FailsWhereADemuxerPassesOverDamage) {
  for (const char* name : {"film.mkv", "film.webm", "film.avi"}) {
    SCOPED_TRACE(name);
    const auto file = m_folder / name;
    const bool isAvi = file.extension() == ".avi", isWebm = file.extension() == ".webm";
    makeFilm(file, isAvi    ? std::vector<std::string>{"-c:v", "mpeg4", "-q:v", "2"}
                   : isWebm ? std::vector<std::string>{"-c:v", "libvpx", "-deadline", "realtime"}
                            : std::vector<std::string>());
    const std::string bytes = readFile(file);
    EXPECT_EQ(readAll(file).error, "");
    for (const double part : {0.3, 0.5, 0.7}) {
      const auto at = static_cast<size_t>(part * static_cast<double>(bytes.size()));
      for (const char filler : {'\0', '\xA5'}) {
        // More than one packet has.
        const size_t length = bytes.size() / 8;
        writeFile(file, std::string(bytes).replace(at, length, length, filler));
        EXPECT_THAT(readAll(file).error, EndsWith("Some of it is damaged")) << part;
      }
    }
  }
}

TEST_F(MovieReaderTest, GetsOverAFewDamagedPictures) {
  makeFilm(m_mov);
  damagePackets(m_mov, 22, 3);
  const Reading reading = readAll(m_mov);
  EXPECT_EQ(reading.error, "");
  EXPECT_GE(reading.pictures, 45);
}

TEST_F(MovieReaderTest, FailsForManyDamagedPictures) {
  makeFilm(m_mov);
  damagePackets(m_mov, 10, 30);
  EXPECT_THAT(readAll(m_mov).error, EndsWith("Too many of its pictures are damaged"));
}

TEST_F(MovieReaderTest, FailsWhenNoPictureCanBeDecoded) {
  makeFilm(m_mov);
  const Movie movie = Movie::open(m_mov);
  damagePackets(m_mov, 0, 50);
  MovieReader reader(movie);
  SampleOutput& video = reader.addVideoOutput(videoTrack(movie), wholePicture());
  SampleOutput& audio = reader.addAudioOutput(audioTrack(movie));
  ASSERT_TRUE(reader.startReading());
  EXPECT_EQ(countSamples(video), 0);
  EXPECT_EQ(reader.status(), Status::failed);
  EXPECT_THAT(userMessage(reader.error()), EndsWith("None of its pictures can be decoded"));
  // What is left is not given.
  EXPECT_FALSE(audio.copyNextSample());
}

TEST_F(MovieReaderTest, FailsWhenTheFileShrinksMeanwhile) {
  const auto file = m_folder / "film.mov";
  runFfmpeg({"-f", "lavfi", "-i", "sine=duration=20", "-c:a", "pcm_s16le", file.string()});
  const Movie movie = Movie::open(file);
  MovieReader reader(movie);
  SampleOutput& audio = reader.addAudioOutput(audioTrack(movie));
  ASSERT_TRUE(reader.startReading());
  ASSERT_TRUE(audio.copyNextSample());
  std::filesystem::resize_file(file, 500000);
  EXPECT_GT(countSamples(audio), 0);
  EXPECT_EQ(reader.status(), Status::failed);
  EXPECT_THAT(userMessage(reader.error()), EndsWith("The file ends too early"));
}

TEST_F(MovieReaderTest, FailsForAFileThatIsGone) {
  makeFilm(m_mov);
  const Movie movie = Movie::open(m_mov);
  std::filesystem::remove(m_mov);
  MovieReader reader(movie);
  EXPECT_THROW(reader.addAudioOutput(audioTrack(movie)), std::system_error);
}

TEST_F(MovieReaderTest, FailsForAFileThatHasBecomeAnother) {
  makeFilm(m_mov);
  const Movie movie = Movie::open(m_mov);
  runFfmpeg({"-f", "lavfi", "-i", "sine=duration=1", m_mov.string()});
  MovieReader reader(movie);
  EXPECT_THROW(reader.addVideoOutput(videoTrack(movie), wholePicture()), std::runtime_error);
}

TEST_F(MovieReaderTest, GivesNothingMoreOnceCancelled) {
  makeFilm(m_mov);
  const Movie movie = Movie::open(m_mov);
  MovieReader reader(movie);
  SampleOutput& video = reader.addVideoOutput(videoTrack(movie), wholePicture());
  SampleOutput& audio = reader.addAudioOutput(audioTrack(movie));
  ASSERT_TRUE(reader.startReading());
  ASSERT_TRUE(video.copyNextSample());
  reader.cancelReading();
  EXPECT_FALSE(video.copyNextSample());
  EXPECT_FALSE(audio.copyNextSample());
  EXPECT_EQ(reader.status(), Status::cancelled);
  EXPECT_EQ(reader.error(), nullptr);
}

TEST_F(MovieReaderTest, WakesWhoWaitsWhenCancelled) {
  // Endless for this test.
  makeNumberedFilm(m_mov, {}, ",loop=loop=-1:size=25,setpts=N/25/TB", 2500);
  const Movie movie = Movie::open(m_mov);
  MovieReader reader(movie);
  SampleOutput& video = reader.addVideoOutput(videoTrack(movie), wholePicture());
  ASSERT_TRUE(reader.startReading());
  std::atomic<int> count = 0;
  std::jthread taking([&] {
    while (video.copyNextSample()) {
      ++count;
      count.notify_all();
    }
  });
  count.wait(0);
  reader.cancelReading();
  taking.join();
  EXPECT_LT(count, 2500);
}

TEST_F(MovieReaderTest, MayGoBeforeAllIsTaken) {
  makeFilm(m_mov);
  const Movie movie = Movie::open(m_mov);
  for (int taken = 0; taken < 3; ++taken) {
    MovieReader reader(movie);
    SampleOutput& video = reader.addVideoOutput(videoTrack(movie), wholePicture());
    ASSERT_TRUE(reader.startReading());
    for (int i = 0; i < taken; ++i)
      ASSERT_TRUE(video.copyNextSample());
  }
}

TEST_F(MovieReaderTest, DoesNotStartOnceCancelled) {
  makeFilm(m_mov);
  const Movie movie = Movie::open(m_mov);
  MovieReader reader(movie);
  (void)reader.addVideoOutput(videoTrack(movie), wholePicture());
  reader.cancelReading();
  EXPECT_FALSE(reader.startReading());
  EXPECT_EQ(reader.status(), Status::cancelled);
}

}  // namespace
}  // namespace vantrel
