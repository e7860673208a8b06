#pragma once

#include "controls/number_slider.h"

namespace vantrel {

class PlaybackState;

/// Shows where the playback stands, and seeks as it is moved. Main thread.
class PositionSlider final : public NumberSlider {
  Q_OBJECT

 public:
  /// Steps in a second.
  static constexpr int kTicks = 600;

  /// `playback` outlives the slider.
  explicit PositionSlider(PlaybackState& playback, QWidget* parent = nullptr);

 private:
  void showPosition();

  PlaybackState& m_playback;
};

}  // namespace vantrel
