#include "playback/position_slider.h"

#include <QSignalBlocker>
#include <algorithm>
#include <cmath>
#include <limits>

#include "platform/desktop/formatting.h"
#include "playback/playback_state.h"

namespace vantrel {
namespace {

/// Of an arrow key and of a page.
constexpr int kArrowTicks = PositionSlider::kTicks / 10;
constexpr int kPageTicks = PositionSlider::kTicks * 5;

int ticks(double seconds) {
  return static_cast<int>(std::min<double>(std::round(seconds * PositionSlider::kTicks),
                                           std::numeric_limits<int>::max()));
}

QString inWords(double seconds) {
  return PositionSlider::tr("%1 s").arg(CropFormatting::fixed(seconds, 1));
}

}  // namespace

PositionSlider::PositionSlider(PlaybackState& playback, QWidget* parent)
    : NumberSlider(kTicks, inWords, parent), m_playback(playback) {
  setAccessibleName(tr("Playback position"));
  setSingleStep(kArrowTicks);
  setPageStep(kPageTicks);
  connect(this, &QSlider::sliderPressed, &playback, [&playback] { playback.setScrubbing(true); });
  connect(this, &QSlider::sliderReleased, &playback, [&playback] { playback.setScrubbing(false); });
  connect(this, &QSlider::valueChanged, &playback, [&playback](int value) {
    playback.setSeekPosition(static_cast<double>(value) / kTicks);
  });
  connect(&playback, &PlaybackState::positionChanged, this, &PositionSlider::showPosition);
  connect(&playback, &PlaybackState::durationChanged, this, &PositionSlider::showPosition);
  showPosition();
}

void PositionSlider::showPosition() {
  const QSignalBlocker quiet(this);
  setMaximum(ticks(std::max(m_playback.duration(), PlaybackState::kLeastRange)));
  if (!isSliderDown()) setValue(ticks(m_playback.seekPosition()));
}

}  // namespace vantrel
