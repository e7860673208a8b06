#include "platform/player/movie_player.h"

#include <QCoreApplication>
#include <QPointer>
#include <QTimer>
#include <algorithm>
#include <chrono>
#include <cmath>
#include <deque>
#include <limits>
#include <optional>
#include <utility>

#include "platform/player/picture_feed.h"
#include "platform/player/picture_times.h"
#include "platform/player/playback_clock.h"
#include "platform/player/sound_feed.h"

namespace vantrel {
namespace {

/// Between two looks at the clock.
constexpr std::chrono::milliseconds kTick{16};

double monotonicSeconds() {
  return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count();
}

std::optional<MovieTrack> firstVideoTrack(const Movie& movie) {
  auto tracks = movie.tracks(MovieTrack::Kind::Video);
  if (tracks.empty()) return {};
  return std::move(tracks.front());
}

std::optional<MovieTrack> firstEnabledAudioTrack(const Movie& movie) {
  auto tracks = movie.tracks(MovieTrack::Kind::Audio);
  const auto track = std::ranges::find_if(tracks, &MovieTrack::isEnabled);
  if (track == tracks.end()) return {};
  return std::move(*track);
}

/// From the event loop, also where the player does not live that long.
void answer(Player::SeekDone done, bool finished) {
  if (!done || !QCoreApplication::instance()) return;
  QMetaObject::invokeMethod(
      QCoreApplication::instance(), [done = std::move(done), finished] { done(finished); },
      Qt::QueuedConnection);
}

}  // namespace

/// Main thread. Whatever emits a signal does so last, as the player may be gone after it, or looks
/// before it goes on.
class MoviePlayer::Engine final {
 public:
  Engine(MoviePlayer& player, const Movie& movie)
      : m_player(player),
        m_duration(movie.duration().seconds()),
        m_sound(movie, firstEnabledAudioTrack(movie)),
        m_pictures(movie, firstVideoTrack(movie),
                   [this](const PictureFeed::Landing& landing) { land(landing); }) {
    m_timer.setTimerType(Qt::PreciseTimer);
    m_timer.setInterval(kTick);
    m_timer.callOnTimeout([this] { tick(); });
    seek({0, 1}, {});
  }
  ~Engine() {
    for (Seek& seek : m_seeks)
      answer(std::move(seek.done), false);
  }
  Engine(const Engine&) = delete;
  Engine& operator=(const Engine&) = delete;

  [[nodiscard]] const std::shared_ptr<const VideoPicture>& picture() const {
    return m_shown.picture;
  }
  [[nodiscard]] double time() const { return m_time; }
  [[nodiscard]] double duration() const { return m_duration; }
  [[nodiscard]] bool isPlaying() const { return m_phase != Phase::Paused; }

  void play();
  void pause();
  void seek(MediaTime to, SeekDone done);

  bool isMuted = false;
  void mute(bool muted) { m_sound.setMuted(isMuted = muted); }
  [[nodiscard]] std::optional<double> heardTime() {
    if (m_phase != Phase::Running) return {};
    return m_sound.time();
  }

 private:
  enum class Phase {
    Paused,
    /// Plays as soon as the pictures are there.
    Preparing,
    Running
  };
  struct Seek {
    int64_t number = 0;
    SeekDone done;
  };

  void request(MediaTime to, SeekDone done);
  [[nodiscard]] SeekDone takeDone(int64_t number);
  void land(const PictureFeed::Landing& landing);
  void show(const TimedVideoPicture& shown);
  void tick();
  void goOn();
  /// Seconds; infinite while it is not known.
  [[nodiscard]] double end() const;
  void stop();
  void finish();

  MoviePlayer& m_player;
  const double m_duration;
  Phase m_phase = Phase::Paused;
  /// Seconds of the movie.
  double m_time = 0;
  bool m_hasEnded = false;
  TimedVideoPicture m_shown;
  /// Not answered yet, in their order.
  std::deque<Seek> m_seeks;
  int64_t m_lastNumber = 0;

  PlaybackClock m_clock;
  QTimer m_timer;
  SoundFeed m_sound;
  PictureFeed m_pictures;
};

void MoviePlayer::Engine::play() {
  if (isPlaying()) return;
  if (m_hasEnded || m_time >= m_duration) seek({0, 1}, {});
  m_phase = Phase::Preparing;
  m_pictures.setAhead(true);
  m_timer.start();
  Q_EMIT m_player.rateChanged();
}

void MoviePlayer::Engine::pause() {
  if (!isPlaying()) return;
  const bool wasRunning = m_phase == Phase::Running;
  stop();
  // The picture may have come too late.
  const bool isBehind = m_shown.picture && endSeconds(m_shown) <= m_time;
  if (wasRunning && isBehind) request(mediaTime(m_time), {});
  Q_EMIT m_player.rateChanged();
}

void MoviePlayer::Engine::stop() {
  m_phase = Phase::Paused;
  m_timer.stop();
  m_sound.stop();
  m_pictures.setAhead(false);
}

void MoviePlayer::Engine::seek(MediaTime to, SeekDone done) {
  if (!to.isValid()) {
    answer(std::move(done), false);
    return;
  }
  m_time = std::max(0.0, to.seconds());
  if (m_duration >= 0) m_time = std::min(m_time, m_duration);
  m_hasEnded = false;
  m_sound.stop();
  if (m_phase == Phase::Running) m_phase = Phase::Preparing;
  request(to, std::move(done));
}

void MoviePlayer::Engine::request(MediaTime to, SeekDone done) {
  m_seeks.push_back({++m_lastNumber, std::move(done)});
  if (const auto replaced = m_pictures.seek(m_lastNumber, to)) answer(takeDone(*replaced), false);
}

Player::SeekDone MoviePlayer::Engine::takeDone(int64_t number) {
  const auto seek = std::ranges::find(m_seeks, number, &Seek::number);
  if (seek == m_seeks.end()) return {};
  SeekDone done = std::move(seek->done);
  m_seeks.erase(seek);
  return done;
}

void MoviePlayer::Engine::land(const PictureFeed::Landing& landing) {
  const SeekDone done = takeDone(landing.number);
  const QPointer<MoviePlayer> player = &m_player;
  if (landing.picture) show(*landing.picture);
  if (player) Q_EMIT player->timeChanged(m_time);
  if (done) done(!landing.hasFailed);
}

void MoviePlayer::Engine::show(const TimedVideoPicture& shown) {
  const bool isNew = shown.picture != m_shown.picture;
  m_shown = shown;
  if (isNew) Q_EMIT m_player.pictureChanged();
}

void MoviePlayer::Engine::tick() {
  if (m_phase == Phase::Preparing) {
    if (!m_pictures.isReady()) return;
    m_clock.set(m_time);
    if (m_time < end()) m_sound.start(m_time);
    m_phase = Phase::Running;
  }
  goOn();
  const auto next = m_pictures.take(m_time);
  const bool isAtEnd = m_time >= end();
  const QPointer<MoviePlayer> player = &m_player;
  if (next) show(*next);
  if (player) Q_EMIT player->timeChanged(m_time);
  if (player && isAtEnd && m_phase == Phase::Running) finish();
}

void MoviePlayer::Engine::goOn() {
  const double now = monotonicSeconds();
  switch (m_sound.state()) {
    case SoundFeed::State::Starting:
      break;
    case SoundFeed::State::Heard:
      if (const auto heard = m_sound.time()) m_clock.follow(*heard, now);
      break;
    case SoundFeed::State::Silent:
      m_clock.run(now);
      if (m_sound.canJoin()) m_sound.start(m_clock.time(now));
      break;
  }
  m_time = std::min(m_clock.time(now), end());
}

double MoviePlayer::Engine::end() const {
  const auto pictures = m_pictures.end();
  const bool isLongest = std::isnan(m_duration) || (pictures && pictures->hasFailed);
  if (!isLongest) return m_duration;
  return pictures ? pictures->time : std::numeric_limits<double>::infinity();
}

void MoviePlayer::Engine::finish() {
  const double finished = end();
  stop();
  m_hasEnded = true;
  if (!m_pictures.end()) request(mediaTime(finished), {});
  if (m_duration >= 0) m_time = m_duration;
  const QPointer<MoviePlayer> player = &m_player;
  Q_EMIT player->timeChanged(m_time);
  if (player) Q_EMIT player->rateChanged();
  if (player) Q_EMIT player->ended();
}

MoviePlayer::MoviePlayer(const Movie& movie, QObject* parent)
    : Player(parent), m_engine(std::make_unique<Engine>(*this, movie)) {}

MoviePlayer::~MoviePlayer() = default;

std::shared_ptr<const VideoPicture> MoviePlayer::picture() const {
  return m_engine->picture();
}
double MoviePlayer::currentTime() const {
  return m_engine->time();
}
double MoviePlayer::duration() const {
  return m_engine->duration();
}
double MoviePlayer::rate() const {
  return m_engine->isPlaying() ? 1 : 0;
}
bool MoviePlayer::isMuted() const {
  return m_engine->isMuted;
}

std::optional<double> MoviePlayer::heardTime() const {
  return m_engine->heardTime();
}

void MoviePlayer::play() {
  m_engine->play();
}
void MoviePlayer::pause() {
  m_engine->pause();
}
void MoviePlayer::seek(MediaTime to, SeekDone done) {
  m_engine->seek(to, std::move(done));
}

void MoviePlayer::setMuted(bool muted) {
  if (muted == m_engine->isMuted) return;
  m_engine->mute(muted);
  Q_EMIT mutedChanged();
}

}  // namespace vantrel
