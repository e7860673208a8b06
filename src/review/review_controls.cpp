#include "review/review_controls.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QMenu>
#include <QToolButton>
#include <algorithm>

#include "controls/look_palette.h"
#include "controls/panel_text.h"
#include "controls/symbol_icon.h"
#include "controls/tabular_digits.h"
#include "controls/text_scale.h"
#include "playback/play_button.h"
#include "playback/playback_state.h"
#include "playback/position_slider.h"

namespace vantrel {
namespace {

/// In points.
constexpr int kSymbolSize = 18, kButtonSize = 28;
constexpr int kSidePadding = 8, kTextSpacing = 5, kSliderSpacing = 10;
/// Of the menu from its button.
constexpr int kMenuDistance = 9;

/// Lighter than the panel, whatever shines through it.
constexpr QColor kTrack(255, 255, 255, 40);

constexpr int kMinute = 60, kHour = 3600;

QToolButton* sized(QToolButton* button) {
  button->setAutoRaise(true);
  button->setFixedSize(kButtonSize, kButtonSize);
  button->setIconSize({kSymbolSize, kSymbolSize});
  return button;
}

QLabel* timeLabel(QWidget* parent) {
  QLabel* const label = PanelText::body({}, parent);
  scaleFont(*label, PanelText::kCaptionSize);
  label->setAlignment(Qt::AlignCenter);
  return label;
}

void name(QToolButton* button, const QString& text) {
  button->setAccessibleName(text);
  button->setToolTip(text);
}

}  // namespace

ReviewControls::ReviewControls(PlaybackState& playback, QWidget* parent)
    : FadingControls(parent),
      m_playback(playback),
      m_play(sized(new PlayButton(playback, this))),
      m_elapsed(timeLabel(this)),
      m_slider(new PositionSlider(playback, this)),
      m_total(timeLabel(this)),
      m_more(sized(new QToolButton(this))),
      m_menu(new QMenu(this)),
      m_loop(m_menu->addAction(tr("Loop"))),
      m_fullScreen(sized(new QToolButton(this))) {
  QPalette palette = lookPalette(true);
  palette.setColor(QPalette::Dark, kTrack);
  setPalette(palette);
  setContentsMargins(kSidePadding, 0, kSidePadding, 0);
  auto* const row = new QHBoxLayout(this);
  row->setContentsMargins({});
  row->setSpacing(0);
  row->addWidget(m_play);
  row->addSpacing(kTextSpacing);
  row->addWidget(m_elapsed);
  row->addSpacing(kSliderSpacing);
  row->addWidget(m_slider, 1);
  row->addSpacing(kSliderSpacing);
  row->addWidget(m_total);
  row->addSpacing(kTextSpacing);
  row->addWidget(m_more);
  row->addWidget(m_fullScreen);

  m_slider->setSingleStep(PositionSlider::kTicks);
  m_loop->setCheckable(true);
  m_more->setIcon(symbolIcon(QStringLiteral("ellipsis"), palette));
  name(m_more, tr("More"));
  setFullScreen(false);
  connectState();
  setEnabled(playback.player() != nullptr);
  showPlaying();
  showTimes();
}

void ReviewControls::connectState() {
  connect(m_more, &QToolButton::clicked, this, &ReviewControls::openMenu);
  connect(m_fullScreen, &QToolButton::clicked, this, &ReviewControls::fullScreenToggled);
  connect(&m_playback, &PlaybackState::isPlayingChanged, this, &ReviewControls::showPlaying);
  // At the end of a movie that starts over it does not play for a moment.
  connect(
      &m_playback, &PlaybackState::isPlayingChanged, this,
      [this] { setPlaying(m_playback.isPlaying()); }, Qt::QueuedConnection);
  connect(&m_playback, &PlaybackState::positionChanged, this, &ReviewControls::showTime);
  connect(&m_playback, &PlaybackState::durationChanged, this, &ReviewControls::showTimes);
  connect(&m_playback, &PlaybackState::playerChanged, this,
          [this] { setEnabled(m_playback.player() != nullptr); });
}

QString ReviewControls::timeText(double seconds, double duration) {
  const auto whole = static_cast<int64_t>(std::max(seconds, 0.0));
  const auto two = [](int64_t number) {
    return QString::number(number).rightJustified(2, QLatin1Char('0'));
  };
  const QString ending = QLatin1Char(':') + two(whole % kMinute);
  if (duration < kHour) return two(whole / kMinute) + ending;
  return QString::number(whole / kHour) + QLatin1Char(':') + two(whole % kHour / kMinute) + ending;
}

void ReviewControls::setFullScreen(bool isFullScreen) {
  m_fullScreen->setIcon(symbolIcon(
      isFullScreen ? QStringLiteral("minimize-2") : QStringLiteral("maximize-2"), palette()));
  name(m_fullScreen, isFullScreen ? tr("Exit Full Screen") : tr("Enter Full Screen"));
}

bool ReviewControls::isInUse() const {
  return FadingControls::isInUse() || m_slider->isSliderDown() || m_menu->isVisible();
}

void ReviewControls::showPlaying() {
  m_play->setToolTip(m_playback.isPlaying() ? tr("Pause") : tr("Play"));
}

void ReviewControls::showTimes() {
  const double duration = m_playback.duration();
  m_total->setText(timeText(duration, duration));
  // As the time goes on, nothing moves.
  const QFontMetrics metrics(m_elapsed->font());
  m_elapsed->setFixedWidth(
      metrics.horizontalAdvance(timeText(0, duration).replace(QLatin1Char('0'), QLatin1Char('8'))));
  showTime();
}

void ReviewControls::showTime() {
  m_elapsed->setText(timeText(m_playback.seekPosition(), m_playback.duration()));
}

void ReviewControls::openMenu() {
  const QSize size = m_menu->sizeHint();
  const QPoint corner = m_more->mapToGlobal(QPoint(m_more->width(), -kMenuDistance));
  m_menu->popup(corner - QPoint(size.width(), size.height()));
}

}  // namespace vantrel
