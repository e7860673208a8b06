#include "playback/playback_state.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace vantrel {
namespace {

/// Ticks per second of the times that are sought.
constexpr int32_t kSeekTimescale = 600;
/// A time this close to the duration, in seconds, counts as the end.
constexpr double kEndTolerance = 1.0 / kSeekTimescale;

MediaTime seekTime(double seconds) {
  return {std::llround(seconds * kSeekTimescale), kSeekTimescale};
}

}  // namespace

PlaybackState::PlaybackState(QObject* parent) : QObject(parent) {}
PlaybackState::~PlaybackState() = default;

double PlaybackState::seekPosition() const {
  return std::min(std::max(0.0, m_position), std::max(m_duration, kLeastRange));
}

void PlaybackState::setDuration(double seconds) {
  const double duration = std::isfinite(seconds) ? seconds : 0;
  if (duration == m_duration) return;
  m_duration = duration;
  Q_EMIT durationChanged();
}

void PlaybackState::connectTo(Player* player) {
  if (player == m_player) return;
  disconnectPlayer();
  m_player = player;
  m_reachedEnd = false;
  setPosition(0);
  if (player) {
    setPosition(player->currentTime());
    observe(*player);
    setMuted(player->isMuted());
    setPlaying(player->rate() != 0 || m_restarting);
  }
  Q_EMIT playerChanged();
}

void PlaybackState::observe(Player& player) {
  connect(&player, &Player::timeChanged, this, [this](double seconds) {
    if (!m_scrubbing) setPosition(seconds);
  });
  connect(&player, &Player::rateChanged, this,
          [this] { setPlaying(m_player->rate() != 0 || m_restarting); });
  connect(&player, &Player::mutedChanged, this, [this] { setMuted(m_player->isMuted()); });
  connect(&player, &Player::ended, this, [this] {
    m_reachedEnd = true;
    setPosition(m_duration);
    if (m_isLooping && !m_scrubbing) {
      restart();
    } else {
      setPlaying(false);
    }
  });
}

void PlaybackState::disconnectPlayer() {
  m_operation = QUuid::createUuid();
  const bool wasConnected = !m_player.isNull();
  if (m_player) m_player->disconnect(this);
  m_player = nullptr;
  m_scrubbing = false;
  m_restarting = false;
  setMuted(false);
  setPlaying(false);
  if (wasConnected) Q_EMIT playerChanged();
}

void PlaybackState::togglePlayback() {
  if (!m_player) return;
  m_operation = QUuid::createUuid();
  if (m_player->rate() != 0 || m_restarting) {
    m_restarting = false;
    m_player->pause();
    setPlaying(false);
    return;
  }
  const double current = m_player->currentTime();
  const bool isAtEnd = m_reachedEnd || (m_duration > 0 && std::isfinite(current) &&
                                        m_duration - kEndTolerance <= current);
  if (isAtEnd) {
    restart();
  } else {
    m_player->play();
  }
}

void PlaybackState::restart() {
  m_restarting = true;
  setPlaying(true);
  seek(MediaTime{0, kSeekTimescale}, [this](bool finished) {
    m_restarting = false;
    m_reachedEnd = false;
    setPosition(0);
    if (finished) {
      m_player->play();
    } else {
      setPlaying(false);
    }
  });
}

void PlaybackState::toggleMute() {
  if (!m_player) return;
  m_player->setMuted(!m_player->isMuted());
  setMuted(m_player->isMuted());
}

void PlaybackState::setScrubbing(bool scrubbing) {
  m_operation = QUuid::createUuid();
  m_scrubbing = scrubbing;
  m_restarting = false;
  if (scrubbing) {
    m_resumeAfterScrubbing = m_player && m_player->rate() != 0;
    if (m_player) m_player->pause();
    // A start over shows as playing while nothing runs that could stop.
    setPlaying(false);
    return;
  }
  const bool resumes = std::exchange(m_resumeAfterScrubbing, false);
  if (!m_player) return;
  seek(seekTime(seekPosition()), [this, resumes](bool finished) {
    if (!m_scrubbing && finished && resumes) m_player->play();
  });
}

void PlaybackState::setSeekPosition(double seconds) {
  setPosition(std::min(std::max(0.0, seconds), std::max(m_duration, kLeastRange)));
  m_reachedEnd = false;
  if (m_player) m_player->seek(seekTime(m_position));
}

template <typename Landed>
void PlaybackState::seek(MediaTime to, Landed landed) {
  const QPointer<PlaybackState> self = this;
  const QPointer<Player> player = m_player;
  m_player->seek(to, [self, player, operation = m_operation, landed](bool finished) {
    if (self && self->m_operation == operation && player && self->m_player == player) {
      landed(finished);
    }
  });
}

void PlaybackState::setPosition(double seconds) {
  if (!std::isfinite(seconds) || seconds == m_position) return;
  m_position = seconds;
  Q_EMIT positionChanged();
}

void PlaybackState::setPlaying(bool playing) {
  if (playing == m_isPlaying) return;
  m_isPlaying = playing;
  Q_EMIT isPlayingChanged();
}

void PlaybackState::setMuted(bool muted) {
  if (muted == m_isMuted) return;
  m_isMuted = muted;
  Q_EMIT isMutedChanged();
}

}  // namespace vantrel
