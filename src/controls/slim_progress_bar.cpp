#include "controls/slim_progress_bar.h"

#include <QPainter>
#include <QPainterPath>
#include <QTimerEvent>
#include <cmath>

#include "controls/motion.h"

namespace vantrel {
namespace {

// Points.
constexpr int kHeight = 6;
constexpr int kFrameMilliseconds = 16;
constexpr int kTravelMilliseconds = 1400;
// The length of the travelling part, of the whole.
constexpr double kTravellerLength = 0.3;
// Of the whole, where nothing may travel.
constexpr float kStillOpacity = 0.45F;

}  // namespace

SlimProgressBar::SlimProgressBar(const QColor& accent, QWidget* parent)
    : QProgressBar(parent), m_accent(accent) {
  setTextVisible(false);
  setFixedHeight(kHeight);
}

QSize SlimProgressBar::sizeHint() const {
  return {2 * kHeight, kHeight};
}

void SlimProgressBar::showEvent(QShowEvent* event) {
  m_clock.start();
  if (showsMotion(*this)) m_frames.start(kFrameMilliseconds, this);
  QProgressBar::showEvent(event);
}

void SlimProgressBar::hideEvent(QHideEvent* event) {
  m_frames.stop();
  QProgressBar::hideEvent(event);
}

void SlimProgressBar::timerEvent(QTimerEvent* event) {
  if (event->timerId() != m_frames.timerId()) {
    QProgressBar::timerEvent(event);
  } else if (maximum() == minimum()) {
    update();
  }
}

void SlimProgressBar::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(Qt::NoPen);
  const QRectF track(rect());
  const double radius = track.height() / 2;
  QPainterPath clip;
  clip.addRoundedRect(track, radius, radius);
  painter.setClipPath(clip);
  painter.fillRect(track, palette().color(QPalette::Dark));

  QRectF part = track;
  QColor color = m_accent;
  if (maximum() == minimum() && !showsMotion(*this)) {
    color.setAlphaF(kStillOpacity);
  } else if (maximum() == minimum()) {
    const double phase =
        std::fmod(static_cast<double>(m_clock.elapsed()) / kTravelMilliseconds, 1.0);
    part.setWidth(track.width() * kTravellerLength);
    part.moveLeft(phase * (track.width() + part.width()) - part.width());
  } else {
    part.setWidth(track.width() * (value() - minimum()) / (maximum() - minimum()));
  }
  painter.setBrush(color);
  painter.drawRoundedRect(part, radius, radius);
}

}  // namespace vantrel
