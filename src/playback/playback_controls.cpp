#include "playback/playback_controls.h"

#include <QHBoxLayout>
#include <QHideEvent>
#include <QLabel>
#include <QShowEvent>
#include <QToolButton>

#include "controls/symbol_icon.h"
#include "controls/tabular_digits.h"
#include "controls/text_scale.h"
#include "platform/desktop/formatting.h"
#include "playback/play_button.h"
#include "playback/playback_state.h"
#include "playback/position_slider.h"

namespace vantrel {
namespace {

/// Of the row, in points.
constexpr int kSpacing = 8;
constexpr int kSymbolSize = 18;
constexpr int kCaptionSize = 11;

QToolButton* withSymbolSize(QToolButton* button) {
  button->setFixedSize(kSymbolSize, kSymbolSize);
  button->setIconSize({kSymbolSize, kSymbolSize});
  return button;
}

}  // namespace

PlaybackControls::PlaybackControls(QWidget* parent)
    : QWidget(parent),
      m_playback(new PlaybackState(this)),
      m_play(withSymbolSize(new PlayButton(*m_playback, this))),
      m_slider(new PositionSlider(*m_playback, this)),
      m_time(new QLabel(this)),
      m_mute(withSymbolSize(new QToolButton(this))) {
  auto* const row = new QHBoxLayout(this);
  row->setContentsMargins({});
  row->setSpacing(kSpacing);
  row->addWidget(m_play);
  row->addWidget(m_slider, 1);
  row->addWidget(m_time);
  row->addWidget(m_mute);

  m_time->setFont(withTabularDigits(m_time->font()));
  scaleFont(*m_time, kCaptionSize);
  m_time->setTextFormat(Qt::PlainText);
  m_mute->setAutoRaise(true);

  connectState();
  setEnabled(false);
  showMuted();
  showTime();
}

void PlaybackControls::connectState() {
  connect(m_mute, &QToolButton::clicked, m_playback, &PlaybackState::toggleMute);
  connect(m_playback, &PlaybackState::isMutedChanged, this, &PlaybackControls::showMuted);
  connect(m_playback, &PlaybackState::positionChanged, this, &PlaybackControls::showTime);
  connect(m_playback, &PlaybackState::durationChanged, this, &PlaybackControls::showTime);
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
  if (event->type() == QEvent::PaletteChange) showMuted();
}

void PlaybackControls::showMuted() {
  const bool muted = m_playback->isMuted();
  m_mute->setIcon(
      symbolIcon(muted ? QStringLiteral("volume-x") : QStringLiteral("volume-2"), palette()));
  const QString text = muted ? tr("Unmute") : tr("Mute");
  m_mute->setAccessibleName(text);
  m_mute->setToolTip(text);
}

void PlaybackControls::showTime() {
  m_time->setText(CropFormatting::fixed(m_playback->seekPosition(), 1) + QStringLiteral(" / ") +
                  CropFormatting::fixed(m_playback->duration(), 1) + QStringLiteral(" s"));
}

}  // namespace vantrel
