#include "canvas/video_canvas_view.h"

#include <QEasingCurve>
#include <QOffscreenSurface>
#include <QOpenGLContext>
#include <QOpenGLFunctions>
#include <cmath>
#include <utility>

#include "canvas/crop_overlay_geometry.h"
#include "controls/motion.h"
#include "platform/gl/surface_format.h"

namespace vantrel {
namespace {

/// Slow at both ends: the cubic Bézier curve through (0.42, 0) and (0.58, 1).
QEasingCurve easeInEaseOut() {
  QEasingCurve curve(QEasingCurve::BezierSpline);
  curve.addCubicBezierSegment({0.42, 0}, {0.58, 1}, {1, 1});
  return curve;
}

bool canDraw() {
  QOpenGLContext context;
  context.setFormat(pictureSurfaceFormat());
  if (!context.create() || context.isOpenGLES()) return false;
  QOffscreenSurface surface;
  surface.setFormat(context.format());
  surface.create();
  return context.format().version() >= pictureSurfaceFormat().version() &&
         context.makeCurrent(&surface);
}

}  // namespace

VideoCanvasView::VideoCanvasView(QWidget* parent) : QOpenGLWidget(parent) {
  // No framebuffer can be empty.
  setMinimumSize(1, 1);
  m_fade.setEasingCurve(easeInEaseOut());
  connect(&m_fade, &QVariantAnimation::valueChanged, this, [this](const QVariant& opacity) {
    m_editingOpacity = opacity.toDouble();
    redraw();
    Q_EMIT editingOpacityChanged(m_editingOpacity);
  });
  connect(&m_pictures, &PictureRenderer::pictureImproved, this, [this] { update(); });
}

VideoCanvasView::~VideoCanvasView() {
  // The context goes after this part of the view.
  if (context()) disconnect(context(), nullptr, this, nullptr);
  releaseContext();
}

bool VideoCanvasView::isSupported() {
  if (!s_supported) s_supported = canDraw();
  return *s_supported;
}

bool VideoCanvasView::isSupportKnown() {
  return s_supported.has_value();
}

void VideoCanvasView::setMedia(const Bitmap& image, VideoPictureSource* pictures) {
  if (m_source) disconnect(m_source, nullptr, this, nullptr);
  m_source = pictures;
  if (pictures) {
    connect(pictures, &VideoPictureSource::pictureChanged, this,
            &VideoCanvasView::takeVideoPicture);
    takeVideoPicture();
  } else {
    m_hasPicture = !image.isEmpty();
    m_pictures.setImage(image);
    redraw();
  }
}

void VideoCanvasView::takeVideoPicture() {
  auto picture = m_source->picture();
  m_hasPicture = picture != nullptr;
  m_pictures.setVideoPicture(std::move(picture));
  redraw();
}

void VideoCanvasView::setCanvasColor(const QColor& color) {
  if (color == m_color) return;
  m_color = color;
  update();
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
  update();
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
  update();
}

void VideoCanvasView::initializeGL() {
  // The context goes when the view moves to another window, and comes anew there.
  connect(context(), &QOpenGLContext::aboutToBeDestroyed, this, &VideoCanvasView::releaseContext,
          Qt::UniqueConnection);
}

void VideoCanvasView::releaseContext() {
  if (!isValid()) return;
  makeCurrent();
  m_pictures.release();
  m_rectangles.release();
  doneCurrent();
}

QSize VideoCanvasView::deviceSize() const {
  return size() * devicePixelRatioF();
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

void VideoCanvasView::paintGL() {
  QOpenGLFunctions* const gl = context()->functions();
  gl->glClearColor(m_color.redF(), m_color.greenF(), m_color.blueF(), 1);
  gl->glClear(GL_COLOR_BUFFER_BIT);
  if (m_projection.isEmpty() || deviceSize().isEmpty()) return;

  m_pictures.draw(pictureView());
  auto rectangles = CropOverlayGeometry::rectangles(m_projection, m_crop, devicePixelRatioF());
  rectangles.insert(rectangles.end(), m_focusRing.begin(), m_focusRing.end());
  m_rectangles.draw(deviceSize(), rectangles, m_editingOpacity);
  if (m_isPictureShown || !m_hasPicture || !m_pictures.isComplete()) return;
  m_isPictureShown = true;
  QMetaObject::invokeMethod(
      this,
      [this] {
        if (m_isPictureShown) Q_EMIT pictureShown();
      },
      Qt::QueuedConnection);
}

}  // namespace vantrel
