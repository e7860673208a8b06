#pragma once

#include <QObject>
#include <QPointer>
#include <QUuid>

#include "platform/player/player.h"

namespace vantrel {

/// Stands between a player and the controls: mirrors what the player does, and turns the user's
/// gestures into its calls, such that a seek that lands late never undoes a newer gesture. Main
/// thread.
class PlaybackState final : public QObject {
  Q_OBJECT

 public:
  /// The slider's range where the duration is 0, in seconds.
  static constexpr double kLeastRange = 0.01;

  explicit PlaybackState(QObject* parent = nullptr);
  ~PlaybackState() override;

  [[nodiscard]] Player* player() const { return m_player; }
  /// Seconds.
  [[nodiscard]] double position() const { return m_position; }
  /// What the slider shows: the position within 0 and max(duration, kLeastRange).
  [[nodiscard]] double seekPosition() const;
  /// Whether the button shows pause.
  [[nodiscard]] bool isPlaying() const { return m_isPlaying; }
  [[nodiscard]] bool isMuted() const { return m_isMuted; }
  /// Seconds.
  [[nodiscard]] double duration() const { return m_duration; }
  [[nodiscard]] bool isLooping() const { return m_isLooping; }

  void setDuration(double seconds);
  /// Null for none. The player outlives the connection or is destroyed first; either is fine.
  void connectTo(Player* player);
  void disconnectPlayer();
  void togglePlayback();
  void toggleMute();
  /// Whether it starts over when the movie has ended; counts from the next end on.
  void setLooping(bool looping) { m_isLooping = looping; }
  /// The user takes hold of the slider, or lets go.
  void setScrubbing(bool scrubbing);
  /// The slider's value.
  void setSeekPosition(double seconds);

 Q_SIGNALS:
  void positionChanged();
  void isPlayingChanged();
  void isMutedChanged();
  void durationChanged();
  void playerChanged();

 private:
  void observe(Player& player);
  void restart();
  /// Seeks; `landed` is told whether it finished, unless a newer gesture or player came first.
  template <typename Landed>
  void seek(MediaTime to, Landed landed);
  void setPosition(double seconds);
  void setPlaying(bool playing);
  void setMuted(bool muted);

  QPointer<Player> m_player;
  double m_position = 0;
  bool m_isPlaying = false;
  bool m_isMuted = false;
  bool m_isLooping = false;
  double m_duration = 0;
  bool m_scrubbing = false;
  bool m_resumeAfterScrubbing = false;
  bool m_reachedEnd = false;
  bool m_restarting = false;
  /// The token of the newest gesture.
  QUuid m_operation = QUuid::createUuid();
};

}  // namespace vantrel
