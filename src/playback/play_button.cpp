#include "playback/play_button.h"

#include <QEvent>

#include "controls/symbol_icon.h"
#include "playback/playback_state.h"

namespace vantrel {

PlayButton::PlayButton(PlaybackState& playback, QWidget* parent)
    : QToolButton(parent), m_playback(playback) {
  setAutoRaise(true);
  connect(this, &QToolButton::clicked, &playback, &PlaybackState::togglePlayback);
  connect(&playback, &PlaybackState::isPlayingChanged, this, &PlayButton::showPlaying);
  showPlaying();
}

void PlayButton::showPlaying() {
  const bool playing = m_playback.isPlaying();
  setIcon(symbolIcon(playing ? QStringLiteral("pause") : QStringLiteral("play"), palette()));
  setAccessibleName(playing ? tr("Pause") : tr("Play"));
}

void PlayButton::changeEvent(QEvent* event) {
  QToolButton::changeEvent(event);
  if (event->type() == QEvent::PaletteChange) showPlaying();
}

}  // namespace vantrel
