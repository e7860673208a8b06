#include "platform/player/movie_player.h"

#include <gmock/gmock.h>

#include <QSignalSpy>
#include <filesystem>
#include <fstream>
#include <vector>

#include "platform/player/player_session.h"
#include "support/temporary_folder.h"

namespace vantrel {
namespace {

using namespace testing;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr int kPictures = 20;
constexpr int kRate = 25;
constexpr double kDuration = 0.8;

/// The middle of a picture's time.
MediaTime middleOf(int picture) {
  return {2 * picture + 1, 2 * kRate};
}

/// Names in a folder of the running process.
size_t countIn(const char* folder) {
  const std::filesystem::directory_iterator entries(folder);
  return static_cast<size_t>(std::distance(begin(entries), end(entries)));
}

class MoviePlayerTest : public ::testing::Test {
 protected:
  static void SetUpTestSuite() {
    s_folder = std::make_unique<TemporaryFolder>();
    makeBarcodedFilm(film("silent.mov"), kPictures, h264(kPictures));
    makeBarcodedFilm(film("single.mov"), 1, h264(1));
    addSound("sound.mov", 0.8);
    addSound("longer_sound.mov", 1.1);
    addSound("shorter_sound.mov", 0.3);
  }
  static void TearDownTestSuite() { s_folder.reset(); }
  static std::filesystem::path film(const std::string& name) { return *s_folder / name; }
  static void addSound(const std::string& name, double seconds) {
    runFfmpeg({"-i", film("silent.mov"), "-f", "lavfi", "-i", "sine=d=" + std::to_string(seconds),
               "-c:v", "copy", "-c:a", "pcm_s16le", film(name)});
  }
  static std::unique_ptr<MoviePlayer> open(const std::string& name) {
    return std::make_unique<MoviePlayer>(Movie::open(film(name)));
  }
  /// With its first picture.
  static std::unique_ptr<MoviePlayer> opened(const std::string& name) {
    auto player = open(name);
    EXPECT_TRUE(waitUntil([&player] { return player->picture() != nullptr; })) << name;
    return player;
  }
  static bool waitForEnd(MoviePlayer& player) {
    const QSignalSpy ended(&player, &Player::ended);
    return waitUntil([&ended] { return !ended.isEmpty(); });
  }

  static std::unique_ptr<TemporaryFolder> s_folder;
};
std::unique_ptr<TemporaryFolder> MoviePlayerTest::s_folder;

TEST_F(MoviePlayerTest, BeginsPausedAtTheFirstPicture) {
  const auto player = open("silent.mov");
  EXPECT_EQ(player->picture(), nullptr);
  const QSignalSpy changed(player.get(), &VideoPictureSource::pictureChanged);
  ASSERT_TRUE(waitUntil([&changed] { return !changed.isEmpty(); }));
  EXPECT_EQ(shownNumber(*player), 0);
  EXPECT_EQ(player->rate(), 0);
  EXPECT_EQ(player->currentTime(), 0);
  EXPECT_DOUBLE_EQ(player->duration(), kDuration);
}

TEST_F(MoviePlayerTest, ShowsThePicturesInTheirOrderUntilTheEnd) {
  const auto player = opened("silent.mov");
  std::vector<int> numbers;
  QObject::connect(player.get(), &VideoPictureSource::pictureChanged,
                   [&] { numbers.push_back(shownNumber(*player)); });
  player->play();
  EXPECT_EQ(player->rate(), 1);
  ASSERT_TRUE(waitForEnd(*player));
  EXPECT_EQ(player->rate(), 0);
  EXPECT_EQ(player->currentTime(), player->duration());
  ASSERT_TRUE(waitUntil([&player] { return shownNumber(*player) == kPictures - 1; }));
  EXPECT_TRUE(std::is_sorted(numbers.begin(), numbers.end()));
}

TEST_F(MoviePlayerTest, TellsTheTimeWhileItPasses) {
  const auto player = opened("silent.mov");
  std::vector<double> times;
  QObject::connect(player.get(), &Player::timeChanged, [&](double time) {
    EXPECT_EQ(time, player->currentTime());
    times.push_back(time);
  });
  player->play();
  ASSERT_TRUE(waitForEnd(*player));
  EXPECT_TRUE(std::is_sorted(times.begin(), times.end()));
  EXPECT_EQ(times.back(), player->duration());
}

TEST_F(MoviePlayerTest, TellsOfItsRateWithinTheCall) {
  const auto player = opened("silent.mov");
  const QSignalSpy changed(player.get(), &Player::rateChanged);
  player->pause();
  EXPECT_EQ(changed.size(), 0);
  player->play();
  player->play();
  EXPECT_EQ(changed.size(), 1);
  player->pause();
  EXPECT_EQ(changed.size(), 2);
  EXPECT_EQ(player->rate(), 0);
}

TEST_F(MoviePlayerTest, TellsOfItsSilenceWithinTheCall) {
  const auto player = open("sound.mov");
  const QSignalSpy changed(player.get(), &Player::mutedChanged);
  player->setMuted(false);
  EXPECT_EQ(changed.size(), 0);
  player->setMuted(true);
  EXPECT_TRUE(player->isMuted());
  EXPECT_EQ(changed.size(), 1);
  player->setMuted(false);
  EXPECT_FALSE(player->isMuted());
  EXPECT_EQ(changed.size(), 2);
}

TEST_F(MoviePlayerTest, PlaysFromTheStartOnceItHasEnded) {
  const auto player = opened("silent.mov");
  player->seek(middleOf(kPictures - 2));
  player->play();
  ASSERT_TRUE(waitForEnd(*player));
  std::vector<int> numbers;
  QObject::connect(player.get(), &VideoPictureSource::pictureChanged,
                   [&] { numbers.push_back(shownNumber(*player)); });
  player->play();
  EXPECT_EQ(player->currentTime(), 0);
  EXPECT_EQ(player->rate(), 1);
  EXPECT_TRUE(waitForEnd(*player));
  EXPECT_EQ(numbers.front(), 0);
}

TEST_F(MoviePlayerTest, StandsAtTheTargetAsSoonAsItSeeks) {
  const auto player = opened("silent.mov");
  player->seek({1, 2});
  EXPECT_EQ(player->currentTime(), 0.5);
  player->seek({-3, 1});
  EXPECT_EQ(player->currentTime(), 0);
  player->seek({50, 1});
  EXPECT_EQ(player->currentTime(), player->duration());
}

TEST_F(MoviePlayerTest, TellsTheTimeAfterEachSeek) {
  const auto player = opened("silent.mov");
  const QSignalSpy changed(player.get(), &Player::timeChanged);
  EXPECT_EQ(numberSoughtAt(*player, {1, 2}), 12);
  ASSERT_EQ(changed.size(), 1);
  EXPECT_EQ(changed.at(0).at(0).toDouble(), 0.5);
}

TEST_F(MoviePlayerTest, ShowsTheLastPictureAtTheEnd) {
  const auto player = opened("silent.mov");
  EXPECT_EQ(numberSoughtAt(*player, {4, 5}), kPictures - 1);
  EXPECT_EQ(numberSoughtAt(*player, {50, 1}), kPictures - 1);
  EXPECT_EQ(player->currentTime(), player->duration());
}

TEST_F(MoviePlayerTest, AnswersEverySeekOnceAndTheNewestWithSuccess) {
  const auto player = opened("silent.mov");
  constexpr int kSeeks = 60;
  std::vector<std::pair<int, bool>> answers;
  for (int i = 0; i < kSeeks; ++i) {
    player->seek(middleOf(i * 7 % kPictures),
                 [&answers, i](bool finished) { answers.emplace_back(i, finished); });
  }
  EXPECT_THAT(answers, IsEmpty());
  ASSERT_TRUE(waitUntil([&answers] { return answers.size() == kSeeks; }));
  EXPECT_EQ(answers.back(), std::make_pair(kSeeks - 1, true));
  EXPECT_EQ(shownNumber(*player), (kSeeks - 1) * 7 % kPictures);
  // One may have been under way when the others came, and its landing is told in its turn.
  const auto landed = std::count_if(answers.begin(), answers.end(),
                                    [](const auto& answered) { return answered.second; });
  EXPECT_LT(landed, kSeeks);
  std::vector<bool> isAnswered(kSeeks);
  for (const auto& [number, finished] : answers) {
    EXPECT_FALSE(isAnswered[static_cast<size_t>(number)]);
    isAnswered[static_cast<size_t>(number)] = true;
  }
}

TEST_F(MoviePlayerTest, LandsWithThePictureOfTheSeekThatItAnswers) {
  const auto player = opened("silent.mov");
  int next = 0, landed = 0;
  // Each answer asks for two more, the first of which is mostly replaced.
  const std::function<void()> ask = [&] {
    for (int i = 0; i < 2; ++i) {
      const int picture = next++ * 3 % kPictures;
      player->seek(middleOf(picture), [&, picture](bool finished) {
        if (!finished) return;
        EXPECT_EQ(shownNumber(*player), picture);
        ++landed;
        if (landed < 40) ask();
      });
    }
  };
  ask();
  EXPECT_TRUE(waitUntil([&landed] { return landed >= 40; }));
}

TEST_F(MoviePlayerTest, RefusesATimeThatIsNone) {
  const auto player = opened("silent.mov");
  EXPECT_EQ(numberSoughtAt(*player, {5, 0}), -1);
  EXPECT_EQ(player->currentTime(), 0);
}

TEST_F(MoviePlayerTest, GoesOnFromWhereItSeeksWhilePlaying) {
  for (const char* name : {"silent.mov", "sound.mov"}) {
    SCOPED_TRACE(name);
    const auto player = opened(name);
    player->play();
    ASSERT_TRUE(waitUntil([&player] { return player->currentTime() > 0.05; }));
    std::vector<int> numbers;
    EXPECT_EQ(numberSoughtAt(*player, middleOf(12)), 12);
    EXPECT_EQ(player->rate(), 1);
    QObject::connect(player.get(), &VideoPictureSource::pictureChanged,
                     [&] { numbers.push_back(shownNumber(*player)); });
    ASSERT_TRUE(waitForEnd(*player));
    ASSERT_TRUE(waitUntil([&player] { return shownNumber(*player) == kPictures - 1; }));
    EXPECT_GT(numbers.front(), 12);
    EXPECT_TRUE(std::is_sorted(numbers.begin(), numbers.end()));
  }
}

TEST_F(MoviePlayerTest, ShowsThePictureOfItsTimeOncePaused) {
  const auto player = opened("silent.mov");
  player->play();
  ASSERT_TRUE(waitUntil([&player] { return player->currentTime() > 0.3; }));
  player->pause();
  const double time = player->currentTime();
  const auto number = std::min(static_cast<int>(time * kRate), kPictures - 1);
  EXPECT_TRUE(waitUntil([&] { return shownNumber(*player) == number; }));
  EXPECT_EQ(player->currentTime(), time);
  player->play();
  EXPECT_TRUE(waitForEnd(*player));
}

TEST_F(MoviePlayerTest, PlaysAsLongAsItsLongestTrack) {
  for (const char* name : {"sound.mov", "longer_sound.mov", "shorter_sound.mov"}) {
    SCOPED_TRACE(name);
    const auto player = opened(name);
    player->play();
    ASSERT_TRUE(waitForEnd(*player));
    EXPECT_EQ(player->currentTime(), player->duration());
    EXPECT_TRUE(waitUntil([&player] { return shownNumber(*player) == kPictures - 1; }));
  }
}

TEST_F(MoviePlayerTest, TellsWhichSoundIsHeardWhileItPlays) {
  const auto player = opened("sound.mov");
  EXPECT_FALSE(player->heardTime());
  std::optional<double> heard;
  ASSERT_TRUE(waitUntil([&] {
    // A device may take longer to open than the movie lasts.
    if (player->rate() == 0) player->play();
    heard = player->heardTime();
    return heard && *heard > 0;
  }));
  EXPECT_LE(*heard, player->duration());
  player->pause();
  EXPECT_FALSE(player->heardTime());
}

TEST_F(MoviePlayerTest, HearsNothingWhereThereIsNoSound) {
  const auto player = opened("silent.mov");
  QObject::connect(player.get(), &Player::timeChanged,
                   [&player] { EXPECT_FALSE(player->heardTime()); });
  player->play();
  EXPECT_TRUE(waitForEnd(*player));
}

TEST_F(MoviePlayerTest, PlaysAMovieOfOnePicture) {
  const auto player = opened("single.mov");
  player->play();
  EXPECT_TRUE(waitForEnd(*player));
  EXPECT_EQ(shownNumber(*player), 0);
  EXPECT_EQ(numberSoughtAt(*player, {1, 1}), 0);
}

TEST_F(MoviePlayerTest, PlaysAMovieWithoutPictures) {
  const auto sound = film("sound.wav");
  runFfmpeg({"-f", "lavfi", "-i", "sine=d=0.2", sound});
  const auto player = open("sound.wav");
  std::optional<bool> landed;
  player->seek({1, 10}, [&landed](bool finished) { landed = finished; });
  ASSERT_TRUE(waitUntil([&landed] { return landed.has_value(); }));
  EXPECT_TRUE(*landed);
  player->play();
  EXPECT_TRUE(waitForEnd(*player));
  EXPECT_EQ(player->picture(), nullptr);
}

TEST_F(MoviePlayerTest, EndsAtOnceWhereNothingCanBeDecoded) {
  makeBarcodedFilm(film("gone.mov"), kPictures, h264(kPictures));
  const Movie movie = Movie::open(film("gone.mov"));
  std::filesystem::remove(film("gone.mov"));
  MoviePlayer player(movie);
  EXPECT_EQ(numberSoughtAt(player, {0, 1}), -1);
  for (const bool again : {false, true}) {
    SCOPED_TRACE(again);
    player.play();
    EXPECT_TRUE(waitForEnd(player));
    EXPECT_EQ(player.rate(), 0);
  }
  EXPECT_EQ(player.picture(), nullptr);
}

/// Overwrites a part of a file with zeros.
void damage(const std::filesystem::path& path, double from, double to) {
  const auto size = static_cast<double>(std::filesystem::file_size(path));
  std::fstream file(path, std::ios::in | std::ios::out | std::ios::binary);
  file.seekp(static_cast<std::streamoff>(size * from));
  file << std::string(static_cast<size_t>(size * (to - from)), '\0');
}

TEST_F(MoviePlayerTest, EndsWherePicturesGoBadInTheMiddle) {
  for (const char* name : {"bad.mkv", "bad.mov", "bad.ts", "bad.avi"}) {
    SCOPED_TRACE(name);
    makeBarcodedFilm(film(name), kPictures, h264(5));
    const Movie movie = Movie::open(film(name));
    damage(film(name), 0.3, 0.6);
    MoviePlayer player(movie);
    player.play();
    EXPECT_TRUE(waitForEnd(player));
    EXPECT_EQ(player.currentTime(), player.duration());
    for (const int picture : {0, 10, 1, 19}) {
      std::optional<bool> answer;
      player.seek(middleOf(picture), [&answer](bool finished) { answer = finished; });
      EXPECT_TRUE(waitUntil([&answer] { return answer.has_value(); }));
    }
    player.play();
    EXPECT_TRUE(waitForEnd(player));
  }
}

TEST_F(MoviePlayerTest, EndsWhereTheFileIsCutWhileItIsOpen) {
  // Far more bytes than are read at once, and the tables in front.
  makeBarcodedFilm(film("cut.mov"), kPictures,
                   {"-c:v", "mjpeg", "-q:v", "2", "-movflags", "+faststart"},
                   ",pad=320:240:0:88,noise=alls=40:allf=t");
  const auto player = opened("cut.mov");
  std::filesystem::resize_file(film("cut.mov"), std::filesystem::file_size(film("cut.mov")) / 2);
  player->play();
  ASSERT_TRUE(waitForEnd(*player));
  EXPECT_EQ(player->currentTime(), player->duration());
  EXPECT_GE(shownNumber(*player), 0);
  EXPECT_LE(shownNumber(*player), kPictures / 2);
  EXPECT_EQ(numberSoughtAt(*player, middleOf(kPictures - 1)), -1);
  EXPECT_EQ(numberSoughtAt(*player, middleOf(2)), 2);
}

TEST_F(MoviePlayerTest, PlaysAFileThatIsCutAsFarAsItGoes) {
  // Noisy, so that its bytes are those of its pictures.
  makeBarcodedFilm(film("whole.mov"), kPictures, h264(5), ",pad=320:240:0:88,noise=alls=40:allf=t");
  for (const char* name : {"half.mov", "half.mkv", "half.ts"}) {
    SCOPED_TRACE(name);
    runFfmpeg({"-i", film("whole.mov"), "-c", "copy", "-movflags", "+faststart", film(name)});
    std::filesystem::resize_file(film(name), std::filesystem::file_size(film(name)) * 2 / 3);
    const auto player = open(name);
    EXPECT_EQ(numberSoughtAt(*player, {0, 1}), 0);
    EXPECT_EQ(numberSoughtAt(*player, middleOf(3)), 3);
    player->play();
    EXPECT_TRUE(waitForEnd(*player));
    EXPECT_GT(shownNumber(*player), 3);
    EXPECT_LT(shownNumber(*player), kPictures);
  }
}

TEST_F(MoviePlayerTest, AnswersSeeksThatItsEndCameBefore) {
  for (int opens = 0; opens < 10; ++opens) {
    auto player = open("silent.mov");
    std::vector<int> answers;
    for (int i = 0; i < 5; ++i) {
      player->seek(middleOf(10 + i), [&answers, i](bool finished) {
        EXPECT_FALSE(finished);
        answers.push_back(i);
      });
    }
    player.reset();
    EXPECT_THAT(answers, IsEmpty());
    ASSERT_TRUE(waitUntil([&answers] { return answers.size() == 5; }));
    EXPECT_THAT(answers, ElementsAre(0, 1, 2, 3, 4));
  }
}

TEST_F(MoviePlayerTest, MayGoWithinItsOwnAnswer) {
  auto player = open("silent.mov");
  player->seek(middleOf(3), [&player](bool) { player.reset(); });
  EXPECT_TRUE(waitUntil([&player] { return player == nullptr; }));
}

TEST_F(MoviePlayerTest, MayGoWithinItsSignals) {
  auto first = open("silent.mov");
  QObject::connect(first.get(), &VideoPictureSource::pictureChanged, [&first] { first.reset(); });
  EXPECT_TRUE(waitUntil([&first] { return first == nullptr; }));
  auto ending = open("silent.mov");
  ending->seek(middleOf(kPictures - 1));
  ending->play();
  QObject::connect(ending.get(), &Player::ended, [&ending] { ending.reset(); });
  EXPECT_TRUE(waitUntil([&ending] { return ending == nullptr; }));
}

TEST_F(MoviePlayerTest, LeavesNoThreadAndNoFileOpen) {
  opened("sound.mov").reset();
  const size_t threads = countIn("/proc/self/task"), files = countIn("/proc/self/fd");
  for (int i = 0; i < 50; ++i) {
    const auto player = i % 2 == 0 ? opened("sound.mov") : open("sound.mov");
    player->play();
    player->seek(middleOf(i % kPictures));
  }
  EXPECT_EQ(countIn("/proc/self/fd"), files);
  EXPECT_TRUE(waitUntil([threads] { return countIn("/proc/self/task") <= threads; }));
}

TEST_F(MoviePlayerTest, PlaysBesideAnother) {
  const auto one = opened("sound.mov"), other = opened("longer_sound.mov");
  const QSignalSpy ended(one.get(), &Player::ended), otherEnded(other.get(), &Player::ended);
  one->play();
  other->play();
  EXPECT_TRUE(waitUntil([&] { return !ended.isEmpty() && !otherEnded.isEmpty(); }));
}

}  // namespace
}  // namespace vantrel
