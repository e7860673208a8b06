#include "controls/floating_scroll_bar.h"

#include <QMouseEvent>
#include <QPainter>
#include <QSignalBlocker>
#include <QWheelEvent>
#include <algorithm>
#include <cmath>

#include "controls/look_palette.h"
#include "controls/motion.h"

namespace vantrel {
namespace {

// Points.
constexpr double kEndGap = 4;
constexpr double kSideGap = 4;
constexpr double kShortestHandle = 32;

constexpr int kClickPageTenths = 9;

int wholePoints(double value) {
  return static_cast<int>(std::lround(std::clamp(value, 0.0, 1e9)));
}

}  // namespace

FloatingScrollBar::FloatingScrollBar(Qt::Orientation orientation, QWidget* parent)
    : QScrollBar(orientation, parent) {
  setAttribute(Qt::WA_OpaquePaintEvent, false);
  setCursor(Qt::ArrowCursor);
  setVisible(false);
  m_idle.setSingleShot(true);
  m_idle.setInterval(kIdleMilliseconds);
  connect(&m_idle, &QTimer::timeout, this, &FloatingScrollBar::rest);
  m_fade.setEasingCurve(QEasingCurve::OutCubic);
  connect(&m_fade, &QVariantAnimation::valueChanged, this,
          [this](const QVariant& opacity) { setOpacity(opacity.toDouble()); });
}

void FloatingScrollBar::mirror(double extent, double page, double offset) {
  const QSignalBlocker blocker(this);
  setRange(0, wholePoints(extent - page));
  setPageStep(std::max(1, wholePoints(page)));
  setValue(wholePoints(offset));
  if (maximum() == 0) setOpacity(0);
}

void FloatingScrollBar::wake() {
  if (maximum() == 0) return;
  m_fade.stop();
  setOpacity(1);
  m_idle.start();
}

void FloatingScrollBar::rest() {
  if (m_grip || underMouse()) return;
  m_fade.stop();
  m_fade.setDuration(showsMotion(*this) ? kFadeMilliseconds : 0);
  m_fade.setStartValue(m_opacity);
  m_fade.setEndValue(0.0);
  m_fade.start();
}

void FloatingScrollBar::letGo() {
  if (!m_grip) return;
  m_grip.reset();
  m_idle.start();
}

void FloatingScrollBar::setOpacity(double opacity) {
  m_opacity = opacity;
  // What is not seen takes no click.
  setVisible(opacity > 0);
  update();
}

double FloatingScrollBar::track() const {
  return std::max(1.0, (isVertical() ? height() : width()) - 2 * kEndGap);
}

double FloatingScrollBar::handleLength() const {
  const double extent = double{1} * maximum() + pageStep();
  return std::min(track(), std::max(kShortestHandle, track() * pageStep() / extent));
}

double FloatingScrollBar::handleStart() const {
  const double free = track() - handleLength();
  return kEndGap + free * value() / std::max(1, maximum());
}

QRectF FloatingScrollBar::handle() const {
  const double thickness = kThickness - 2 * kSideGap;
  return isVertical() ? QRectF(kSideGap, handleStart(), thickness, handleLength())
                      : QRectF(handleStart(), kSideGap, handleLength(), thickness);
}

double FloatingScrollBar::along(const QPointF& point) const {
  return isVertical() ? point.y() : point.x();
}

void FloatingScrollBar::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setOpacity(m_opacity);
  const HandleColors colors = scrollHandleColors(palette(), m_grip || underMouse());
  painter.setPen(colors.edge);
  painter.setBrush(colors.fill);
  const QRectF rect = handle().adjusted(-0.5, -0.5, 0.5, 0.5);
  const double radius = (kThickness - 2 * kSideGap + 1) / 2;
  painter.drawRoundedRect(rect, radius, radius);
}

void FloatingScrollBar::mousePressEvent(QMouseEvent* event) {
  if (event->button() != Qt::LeftButton) {
    event->ignore();
    return;
  }
  const double position = along(event->position());
  const double start = handleStart();
  wake();
  if (position >= start && position < start + handleLength()) {
    m_grip = position - start;
    return;
  }
  const int page = pageStep() * kClickPageTenths / 10;
  setValue(value() + (position < start ? -page : page));
}

void FloatingScrollBar::mouseMoveEvent(QMouseEvent* event) {
  if (!m_grip) {
    event->ignore();
    return;
  }
  wake();
  const double free = std::max(1.0, track() - handleLength());
  const double start = along(event->position()) - *m_grip - kEndGap;
  setValue(wholePoints(start / free * maximum()));
}

void FloatingScrollBar::mouseReleaseEvent(QMouseEvent* event) {
  if (event->button() != Qt::LeftButton) {
    event->ignore();
    return;
  }
  letGo();
  wake();
}

void FloatingScrollBar::wheelEvent(QWheelEvent* event) {
  event->ignore();
}

void FloatingScrollBar::contextMenuEvent(QContextMenuEvent* event) {
  event->ignore();
}

void FloatingScrollBar::enterEvent(QEnterEvent* event) {
  QScrollBar::enterEvent(event);
  wake();
}

void FloatingScrollBar::leaveEvent(QEvent* event) {
  QScrollBar::leaveEvent(event);
  wake();
}

}  // namespace vantrel
