#include "playback/playback_controls.h"

#include <QHBoxLayout>
#include <QHideEvent>
#include <QLabel>
#include <QShowEvent>
#include <QSignalBlocker>
#include <QSlider>
#include <QToolButton>
#include <algorithm>
#include <cmath>
#include <limits>

#include "controls/symbol_icon.h"
#include "controls/tabular_digits.h"
#include "platform/desktop/formatting.h"
#include "playback/playback_state.h"

namespace vantrel {
namespace {

/// Of the row, in points.
constexpr int kSpacing = 8;
constexpr int kSymbolSize = 18;
constexpr int kCaptionSize = 11;
/// Steps of the slider in a second, and those of an arrow key and of a page.
constexpr int kTicks = 600;
constexpr int kArrowTicks = kTicks / 10;
constexpr int kPageTicks = kTicks * 5;

int ticks(double seconds) {
  return static_cast<int>(
      std::min<double>(std::round(seconds * kTicks), std::numeric_limits<int>::max()));
}

QToolButton* symbolButton(QWidget* parent) {
  auto* const button = new QToolButton(parent);
  button->setAutoRaise(true);
  button->setFixedSize(kSymbolSize, kSymbolSize);
  button->setIconSize({kSymbolSize, kSymbolSize});
  return button;
}

}  // namespace

PlaybackControls::PlaybackControls(QWidget* parent)
    : QWidget(parent),
      m_playback(new PlaybackState(this)),
      m_play(symbolButton(this)),
      m_slider(new QSlider(Qt::Horizontal, this)),
      m_time(new QLabel(this)),
      m_mute(symbolButton(this)) {
  auto* const row = new QHBoxLayout(this);
  row->setContentsMargins({});
  row->setSpacing(kSpacing);
  row->addWidget(m_play);
  row->addWidget(m_slider, 1);
  row->addWidget(m_time);
  row->addWidget(m_mute);

  QFont font = withTabularDigits(m_time->font());
  font.setPixelSize(kCaptionSize);
  m_time->setFont(font);
  m_time->setTextFormat(Qt::PlainText);
  m_slider->setAccessibleName(tr("Playback position"));
  m_slider->setSingleStep(kArrowTicks);
  m_slider->setPageStep(kPageTicks);

  connectState();
  setEnabled(false);
  showPlaying();
  showMuted();
  showPosition();
}

void PlaybackControls::connectState() {
  connect(m_play, &QToolButton::clicked, m_playback, &PlaybackState::togglePlayback);
  connect(m_mute, &QToolButton::clicked, m_playback, &PlaybackState::toggleMute);
  connect(m_slider, &QSlider::sliderPressed, m_playback,
          [this] { m_playback->setScrubbing(true); });
  connect(m_slider, &QSlider::sliderReleased, m_playback,
          [this] { m_playback->setScrubbing(false); });
  connect(m_slider, &QSlider::valueChanged, m_playback,
          [this](int value) { m_playback->setSeekPosition(static_cast<double>(value) / kTicks); });
  connect(m_playback, &PlaybackState::isPlayingChanged, this, &PlaybackControls::showPlaying);
  connect(m_playback, &PlaybackState::isMutedChanged, this, &PlaybackControls::showMuted);
  connect(m_playback, &PlaybackState::positionChanged, this, &PlaybackControls::showPosition);
  connect(m_playback, &PlaybackState::durationChanged, this, &PlaybackControls::showPosition);
  connect(m_playback, &PlaybackState::playerChanged, this,
          [this] { setEnabled(m_playback->player() != nullptr); });
}

void PlaybackControls::setPlayer(Player* player, double duration) {
  m_player = player;
  m_playback->setDuration(duration);
  if (isVisible() || !player) m_playback->connectTo(player);
}

void PlaybackControls::showEvent(QShowEvent* event) {
  QWidget::showEvent(event);
  if (!event->spontaneous()) m_playback->connectTo(m_player);
}

void PlaybackControls::hideEvent(QHideEvent* event) {
  QWidget::hideEvent(event);
  if (!event->spontaneous()) m_playback->disconnectPlayer();
}

void PlaybackControls::changeEvent(QEvent* event) {
  QWidget::changeEvent(event);
  if (event->type() != QEvent::PaletteChange) return;
  showPlaying();
  showMuted();
}

void PlaybackControls::showPlaying() {
  const bool playing = m_playback->isPlaying();
  m_play->setIcon(
      symbolIcon(playing ? QStringLiteral("pause") : QStringLiteral("play"), palette()));
  m_play->setAccessibleName(playing ? tr("Pause") : tr("Play"));
}

void PlaybackControls::showMuted() {
  const bool muted = m_playback->isMuted();
  m_mute->setIcon(
      symbolIcon(muted ? QStringLiteral("volume-x") : QStringLiteral("volume-2"), palette()));
  const QString text = muted ? tr("Unmute") : tr("Mute");
  m_mute->setAccessibleName(text);
  m_mute->setToolTip(text);
}

void PlaybackControls::showPosition() {
  const double position = m_playback->seekPosition();
  const double duration = m_playback->duration();
  {
    const QSignalBlocker quiet(m_slider);
    m_slider->setMaximum(ticks(std::max(duration, PlaybackState::kLeastRange)));
    if (!m_slider->isSliderDown()) m_slider->setValue(ticks(position));
  }
  m_time->setText(CropFormatting::fixed(position, 1) + QStringLiteral(" / ") +
                  CropFormatting::fixed(duration, 1) + QStringLiteral(" s"));
}

}  // namespace vantrel

#include "moc_playback_controls.cpp"
