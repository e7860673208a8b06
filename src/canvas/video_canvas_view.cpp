#include "canvas/video_canvas_view.h"

#include <QEasingCurve>
#include <cmath>
#include <utility>

#include "canvas/crop_overlay_geometry.h"
#include "controls/motion.h"

namespace vantrel {
namespace {

/// Slow at both ends: the cubic Bézier curve through (0.42, 0) and (0.58, 1).
QEasingCurve easeInEaseOut() {
  QEasingCurve curve(QEasingCurve::BezierSpline);
  curve.addCubicBezierSegment({0.42, 0}, {0.58, 1}, {1, 1});
  return curve;
}

}  // namespace

VideoCanvasView::VideoCanvasView(QWidget* parent) : PictureSurface(parent) {
  m_fade.setEasingCurve(easeInEaseOut());
  connect(&m_fade, &QVariantAnimation::valueChanged, this, [this](const QVariant& opacity) {
    m_editingOpacity = opacity.toDouble();
    redraw();
    Q_EMIT editingOpacityChanged(m_editingOpacity);
  });
}

VideoCanvasView::~VideoCanvasView() {
  leaveContext();
}

void VideoCanvasView::setMedia(const Bitmap& image, VideoPictureSource* source) {
  setPictureSource(source);
  if (source) return;
  m_hasPicture = !image.isEmpty();
  pictures().setImage(image);
  redraw();
}

void VideoCanvasView::pictureTaken(const VideoPicture* picture) {
  m_hasPicture = picture != nullptr;
  redraw();
}

void VideoCanvasView::setCanvasColor(const QColor& color) {
  setBackground(color);
}

void VideoCanvasView::position(const CanvasProjection& projection, const CropMargins& crop,
                               bool previewOnly) {
  if (projection != m_projection || crop != m_crop) {
    m_projection = projection;
    m_crop = crop;
    redraw();
  }
  if (previewOnly == m_displaysPreview) return;
  m_displaysPreview = previewOnly;
  fadeTo(previewOnly ? 0 : 1);
}

void VideoCanvasView::setFocusRing(std::vector<ColoredRectangle> ring) {
  if (ring == m_focusRing) return;
  m_focusRing = std::move(ring);
  requestFrame();
}

void VideoCanvasView::fadeTo(double opacity) {
  m_fade.stop();
  m_fade.setDuration(showsMotion(*this) ? kFadeMilliseconds : 0);
  m_fade.setStartValue(m_editingOpacity);
  m_fade.setEndValue(opacity);
  m_fade.start();
}

void VideoCanvasView::redraw() {
  m_isPictureShown = false;
  requestFrame();
}

void VideoCanvasView::releaseResources() {
  PictureSurface::releaseResources();
  m_rectangles.release();
}

PictureView VideoCanvasView::pictureView() const {
  const double ratio = devicePixelRatioF();
  const QRectF frame = m_projection.imageFrame();
  const QPointF origin(std::round(frame.x() * ratio), std::round(frame.y() * ratio));
  const QRectF kept = m_projection.toView(m_crop.rectangle(m_projection.sourceSize()));
  return {deviceSize(),
          {origin, frame.size() * ratio},
          CropOverlayGeometry::snappedToDevice(kept, ratio),
          m_editingOpacity};
}

void VideoCanvasView::drawFrame() {
  if (m_projection.isEmpty() || deviceSize().isEmpty()) return;

  pictures().draw(pictureView());
  auto rectangles = CropOverlayGeometry::rectangles(m_projection, m_crop, devicePixelRatioF());
  rectangles.insert(rectangles.end(), m_focusRing.begin(), m_focusRing.end());
  m_rectangles.draw(deviceSize(), rectangles, m_editingOpacity);
  if (m_isPictureShown || !m_hasPicture || !pictures().isComplete()) return;
  m_isPictureShown = true;
  QMetaObject::invokeMethod(
      this,
      [this] {
        if (m_isPictureShown) Q_EMIT pictureShown();
      },
      Qt::QueuedConnection);
}

}  // namespace vantrel
