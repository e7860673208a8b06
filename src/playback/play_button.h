#pragma once

#include <QToolButton>

namespace vantrel {

class PlaybackState;

/// Shows pause while it plays and play while it does not, and changes from one to the other. Main
/// thread.
class PlayButton final : public QToolButton {
  Q_OBJECT

 public:
  /// `playback` outlives the button.
  explicit PlayButton(PlaybackState& playback, QWidget* parent = nullptr);

 protected:
  void changeEvent(QEvent* event) override;

 private:
  void showPlaying();

  PlaybackState& m_playback;
};

}  // namespace vantrel
