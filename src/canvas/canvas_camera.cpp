#include "canvas/canvas_camera.h"

#include <algorithm>
#include <cmath>

#include "canvas/crop_zoom_stops.h"

namespace vantrel {
namespace {

/// What a fitted source leaves free on both sides together, in points: room for the fields.
constexpr double kFreeWidth = 240, kFreeHeight = 192;
/// A fitted zoom that differs by no more counts as the same.
constexpr double kZoomTolerance = 1e-4;
/// Of lengths, zooms and ratios. Far beyond any screen or picture, and far from what overflows when
/// a few of them are multiplied.
constexpr double kSmallest = 1e-12, kLargest = 1e12;
constexpr QPointF kMiddle(0.5, 0.5);

bool isUsable(double value) {
  return value >= kSmallest && value <= kLargest;
}

bool isUsable(const QSizeF& size) {
  return isUsable(size.width()) && isUsable(size.height());
}

double usableInset(double inset) {
  return std::isfinite(inset) ? std::clamp(inset, -kLargest, kLargest) : 0;
}

CanvasCamera::Wish usable(CanvasCamera::Wish wish) {
  if (!isUsable(wish.sourceSize)) wish.sourceSize = QSizeF(0, 0);
  if (!isUsable(wish.zoom)) wish.zoom = 1;
  wish.insets = QMarginsF(usableInset(wish.insets.left()), usableInset(wish.insets.top()),
                          usableInset(wish.insets.right()), usableInset(wish.insets.bottom()));
  return wish;
}

/// What the insets leave of the viewport; may be below 0.
QSizeF framed(const QSizeF& viewport, const QMarginsF& insets) {
  return {viewport.width() - insets.left() - insets.right(),
          viewport.height() - insets.top() - insets.bottom()};
}

QPointF scaled(const QPointF& fraction, const QSizeF& size) {
  return {fraction.x() * size.width(), fraction.y() * size.height()};
}

double fractionOf(double distance, double length) {
  return length > 0 ? distance / length : kMiddle.x();
}

double limited(double value, double from, double extent) {
  return std::isnan(value) ? from : std::clamp(value, 0.0, std::max(0.0, extent));
}

double eased(double t) {
  return t * t * (3 - 2 * t);
}

}  // namespace

double CanvasCamera::shownZoom() const {
  return m_imageFrame.isEmpty() || m_wish.sourceSize.isEmpty() ? 0 : m_scale * m_devicePixelRatio;
}

QPointF CanvasCamera::anchor() const {
  const QSizeF room = framed(m_viewport, m_wish.insets);
  return {m_wish.insets.left() + std::max(1.0, room.width()) / 2,
          m_wish.insets.top() + std::max(1.0, room.height()) / 2};
}

double CanvasCamera::fittedScale() const {
  const QSizeF room = framed(m_viewport, m_wish.insets);
  const QSizeF& source = m_wish.sourceSize;
  return std::min(std::max(1.0, room.width() - kFreeWidth) / std::max(1.0, source.width()),
                  std::max(1.0, room.height() - kFreeHeight) / std::max(1.0, source.height()));
}

CanvasProjection CanvasCamera::projection() const {
  if (m_imageFrame.isEmpty()) return {};
  // Rounding all halves upwards lets a slow pan advance evenly to both sides of zero.
  const auto onDevicePixel = [this](double points) {
    return std::floor(points * m_devicePixelRatio + 0.5) / m_devicePixelRatio;
  };
  const QPointF origin = m_imageFrame.topLeft() - m_scrollOffset;
  return {m_wish.sourceSize, {onDevicePixel(origin.x()), onDevicePixel(origin.y())}, m_scale};
}

std::optional<double> CanvasCamera::takeFittedZoom() {
  if (!m_hasUntakenZoom || isMoving()) return {};
  m_hasUntakenZoom = false;
  return m_publishedZoom;
}

void CanvasCamera::update(const Wish& wish, bool mediaChanged, bool needsLayout, double now) {
  const Wish wanted = usable(wish);
  const bool framingChanged = wanted.zoom != m_wish.zoom || wanted.fit != m_wish.fit ||
                              wanted.sourceSize != m_wish.sourceSize;
  const bool isRequested = wanted.request != m_wish.request && !mediaChanged;
  m_wish = wanted;
  if (!m_wish.fit || mediaChanged) forgetFittedZoom();
  if (mediaChanged || (framingChanged && !isRequested)) stopMove();
  if (isRequested) {
    startMove(now);
  } else if (framingChanged || mediaChanged || needsLayout) {
    layOut(mediaChanged ? kMiddle : focusAt(m_pivot));
  }
}

void CanvasCamera::setViewport(const QSizeF& points) {
  const QSizeF viewport = isUsable(points) ? points : QSizeF(0, 0);
  const bool centersSource = m_wish.fit && viewport != m_viewport && !isMoving();
  m_viewport = viewport;
  layOut(centersSource ? kMiddle : focusAt(m_pivot));
}

void CanvasCamera::setDevicePixelRatio(double ratio) {
  if (!isUsable(ratio)) return;
  m_devicePixelRatio = ratio;
  layOut(focusAt(m_pivot));
}

void CanvasCamera::tick(double now) {
  if (!m_move || !std::isfinite(now)) return;
  const double t = std::clamp((now - m_move->start) / kMoveSeconds, 0.0, 1.0);
  if (t >= 1) {
    finishMove();
    return;
  }
  const double progress = eased(t);
  m_move->scale = std::lerp(m_move->startScale, m_move->endScale, progress);
  layOut(m_move->startFocus + (m_move->endFocus - m_move->startFocus) * progress);
}

void CanvasCamera::stopMove() {
  m_move.reset();
}

void CanvasCamera::finishMove() {
  if (!m_move) return;
  const QPointF focus = m_move->endFocus;
  stopMove();
  layOut(focus);
}

void CanvasCamera::scrollTo(const QPointF& offset) {
  if (m_viewport.isEmpty()) return;
  const QSizeF extent = m_documentSize - m_viewport;
  m_scrollOffset = {limited(offset.x(), m_scrollOffset.x(), extent.width()),
                    limited(offset.y(), m_scrollOffset.y(), extent.height())};
}

bool CanvasCamera::zoomAround(const QPointF& viewportPoint, double factor) {
  const bool isPoint = std::isfinite(viewportPoint.x()) && std::isfinite(viewportPoint.y());
  const double current = shownZoom();
  if (!(current > 0) || m_viewport.isEmpty() || !isPoint || std::isnan(factor)) return false;
  const QPointF pixel = (m_scrollOffset + viewportPoint - m_imageFrame.topLeft()) / m_scale;
  stopMove();
  m_wish.zoom = std::clamp(current * factor, CropZoomStops::kMinimum, CropZoomStops::kMaximum);
  m_wish.fit = false;
  forgetFittedZoom();
  layOut(focusAt(m_pivot));
  scrollTo(m_imageFrame.topLeft() + pixel * m_scale - viewportPoint);
  return true;
}

double CanvasCamera::wantedScale() const {
  if (m_move) return m_move->scale;
  return m_wish.fit ? fittedScale() : m_wish.zoom / m_devicePixelRatio;
}

QPointF CanvasCamera::focusAt(const QPointF& viewportPoint) const {
  const QPointF distance = m_scrollOffset + viewportPoint - m_imageFrame.topLeft();
  return {fractionOf(distance.x(), m_imageFrame.width()),
          fractionOf(distance.y(), m_imageFrame.height())};
}

void CanvasCamera::layOut(const QPointF& focus) {
  if (m_viewport.isEmpty()) return;
  m_scale = wantedScale();
  const QSizeF shown = m_wish.sourceSize * m_scale;
  // A whole viewport of free room: each edge of the source can reach the middle of the view.
  m_documentSize = shown + m_viewport;
  const QSizeF room = framed(m_viewport, m_wish.insets);
  const QPointF origin(m_wish.insets.left() + room.width() / 2,
                       m_wish.insets.top() + room.height() / 2);
  m_imageFrame = QRectF(origin, shown);
  m_pivot = anchor();
  scrollTo(origin + scaled(focus, shown) - m_pivot);
  publishFittedZoom();
}

void CanvasCamera::publishFittedZoom() {
  if (!m_wish.fit || isMoving() || m_wish.sourceSize.isEmpty()) return;
  const double zoom = shownZoom();
  if (m_publishedZoom && std::abs(zoom - *m_publishedZoom) <= kZoomTolerance) return;
  m_publishedZoom = zoom;
  m_hasUntakenZoom = true;
}

void CanvasCamera::forgetFittedZoom() {
  m_publishedZoom.reset();
  m_hasUntakenZoom = false;
}

void CanvasCamera::startMove(double now) {
  stopMove();
  if (m_imageFrame.isEmpty() || m_wish.sourceSize.isEmpty()) {
    layOut(kMiddle);
    return;
  }
  const QPointF focus = focusAt(anchor());
  m_move = Move{.start = std::isfinite(now) ? now : 0,
                .startScale = m_imageFrame.width() / m_wish.sourceSize.width(),
                .endScale = wantedScale(),
                .startFocus = focus,
                .endFocus = m_wish.centersOnRequest ? kMiddle : focus};
  m_move->scale = m_move->startScale;
  layOut(focus);
}

}  // namespace vantrel
