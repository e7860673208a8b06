#pragma once

#include "review/fading_controls.h"

class QAction;
class QLabel;
class QMenu;
class QSlider;
class QToolButton;

namespace vantrel {

class PlaybackState;

/// The controls that float over the player of a finished movie: play, the time and its slider, a
/// menu with Loop, full screen. Always dark, as what they float over is. Disabled without a player.
/// Main thread.
class ReviewControls final : public FadingControls {
  Q_OBJECT

 public:
  /// In points.
  static constexpr int kWidth = 460, kHeight = 38;

  /// `playback` outlives the controls.
  explicit ReviewControls(PlaybackState& playback, QWidget* parent = nullptr);

  [[nodiscard]] QToolButton* playButton() const { return m_play; }
  [[nodiscard]] QLabel* elapsed() const { return m_elapsed; }
  [[nodiscard]] QSlider* slider() const { return m_slider; }
  [[nodiscard]] QLabel* total() const { return m_total; }
  [[nodiscard]] QToolButton* moreButton() const { return m_more; }
  /// Checkable; whoever hears it triggered decides whether it is checked.
  [[nodiscard]] QAction* loopAction() const { return m_loop; }
  [[nodiscard]] QToolButton* fullScreenButton() const { return m_fullScreen; }

  /// Whole seconds, rounded down, as "mm:ss"; as "h:mm:ss" if `duration` is an hour or more.
  [[nodiscard]] static QString timeText(double seconds, double duration);

  /// What the button of full screen offers then is the way back.
  void setFullScreen(bool isFullScreen);

 Q_SIGNALS:
  void fullScreenToggled();

 protected:
  [[nodiscard]] bool isInUse() const override;

 private:
  void connectState();
  void showPlaying();
  void showTimes();
  void showTime();
  void openMenu();

  PlaybackState& m_playback;
  QToolButton* m_play;
  QLabel* m_elapsed;
  QSlider* m_slider;
  QLabel* m_total;
  QToolButton* m_more;
  QMenu* m_menu;
  QAction* m_loop;
  QToolButton* m_fullScreen;
};

}  // namespace vantrel
