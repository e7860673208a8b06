#pragma once

#include <QPointer>
#include <QWidget>

#include "platform/player/player.h"

class QLabel;
class QSlider;
class QToolButton;

namespace vantrel {

class PlaybackState;

/// The transport that floats over a video: play, position, time, mute. Main thread.
class PlaybackControls final : public QWidget {
  Q_OBJECT

 public:
  explicit PlaybackControls(QWidget* parent = nullptr);

  [[nodiscard]] PlaybackState* playback() const { return m_playback; }
  [[nodiscard]] QToolButton* playButton() const { return m_play; }
  [[nodiscard]] QSlider* slider() const { return m_slider; }
  [[nodiscard]] QLabel* time() const { return m_time; }
  [[nodiscard]] QToolButton* muteButton() const { return m_mute; }

  /// Null disables the row. `duration` in seconds.
  void setPlayer(Player* player, double duration);

 protected:
  void showEvent(QShowEvent* event) override;
  void hideEvent(QHideEvent* event) override;
  void changeEvent(QEvent* event) override;

 private:
  void connectState();
  void showMuted();
  void showTime();

  PlaybackState* m_playback;
  QPointer<Player> m_player;
  QToolButton* m_play;
  QSlider* m_slider;
  QLabel* m_time;
  QToolButton* m_mute;
};

}  // namespace vantrel
