#include "canvas/crop_canvas.h"

#include <QPainter>
#include <QPainterPath>
#include <algorithm>
#include <cmath>
#include <memory>

#include "canvas/crop_appearance.h"
#include "canvas/crop_overlay_geometry.h"
#include "controls/picture_preview.h"
#include "platform/image/scaled_renderer.h"

namespace vantrel {
namespace {

PicturePreview::Render renderOf(const Bitmap& picture) {
  if (picture.isEmpty()) return {};
  // Shared by the calls of one function, which come one at a time.
  const auto renderer = std::make_shared<ScaledRenderer>(picture);
  return [renderer](const QSize& size, const std::stop_token& stop) {
    QImage image(size, QImage::Format_RGBA8888_Premultiplied);
    renderer->render(size.width(), size.height(), image.bits(),
                     static_cast<size_t>(image.bytesPerLine()), stop);
    return image;
  };
}

}  // namespace

CropCanvas::CropCanvas(QWidget* parent) : QWidget(parent), m_preview(new PicturePreview(this)) {
  setAttribute(Qt::WA_OpaquePaintEvent);
  setMinimumSize(1, 1);
  connect(m_preview, &PicturePreview::imageChanged, this, qOverload<>(&QWidget::update));
}

QSizeF CropCanvas::sourceSize() const {
  return {static_cast<double>(m_picture.width()), static_cast<double>(m_picture.height())};
}

CanvasProjection CropCanvas::projection() const {
  return CanvasProjection::fitted(sourceSize(), size(), m_insets);
}

bool CropCanvas::isPictureShown() const {
  return !m_preview->image().isNull() && !m_preview->isRendering();
}

void CropCanvas::setPicture(const Bitmap& picture) {
  const bool same = picture.isEmpty() ? m_picture.isEmpty()
                                      : !m_picture.isEmpty() && picture.row(0) == m_picture.row(0);
  if (same) return;
  m_picture = picture;
  m_preview->setPicture(renderOf(picture));
  update();
}

void CropCanvas::setCrop(const CropMargins& crop) {
  if (crop == m_crop) return;
  m_crop = crop;
  update();
}

void CropCanvas::setCanvasColor(const std::optional<QColor>& color) {
  if (color == m_color) return;
  m_color = color;
  update();
}

void CropCanvas::setFramingInsets(const QMarginsF& insets) {
  if (insets == m_insets) return;
  m_insets = insets;
  update();
}

void CropCanvas::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  painter.fillRect(rect(), m_color.value_or(CropAppearance::canvas(palette())));
  const CanvasProjection projection = this->projection();
  if (projection.isEmpty()) return;

  const QTransform toDevice = painter.deviceTransform();
  const auto snapped = [&](const QRectF& source) {
    return CropOverlayGeometry::snappedToDevice(projection.toView(source), toDevice);
  };
  const QRectF frame = snapped(QRectF(QPointF(0, 0), sourceSize()));
  drawPicture(painter, frame);
  drawOverlay(painter, frame, snapped(m_crop.rectangle(sourceSize())));
}

void CropCanvas::drawPicture(QPainter& painter, const QRectF& frame) {
  const QSize shown = painter.deviceTransform().mapRect(frame).size().toSize();
  const auto width = static_cast<int>(std::min<int64_t>(m_picture.width(), shown.width()));
  const auto height = static_cast<int>(std::min<int64_t>(m_picture.height(), shown.height()));
  m_preview->setSize({width, height});

  const QImage& image = m_preview->image();
  if (image.isNull()) return;
  // Magnified, each source pixel is a sharp square; an outdated size is smoothed over.
  const bool outdated = image.size() != QSize(width, height);
  painter.setRenderHint(QPainter::SmoothPixmapTransform, outdated);
  painter.drawImage(frame, image);
}

void CropCanvas::drawOverlay(QPainter& painter, const QRectF& frame,
                             const QRectF& selection) const {
  const QTransform toDevice = painter.deviceTransform();
  const double border =
      std::max(1.0, std::round(CropOverlayGeometry::kBorderWidth * devicePixelRatioF())) /
      devicePixelRatioF();

  // Nothing below is drawn inside the selection.
  QPainterPath outside;
  outside.setFillRule(Qt::OddEvenFill);
  outside.addRect(QRectF(rect()));
  outside.addRect(selection);
  painter.save();
  painter.setClipPath(outside);
  painter.fillRect(frame, CropAppearance::excludedArea());
  painter.fillRect(selection.adjusted(-border, -border, border, border),
                   CropAppearance::cropBorder());
  for (const CropHandle handle : kCropHandles) {
    const QRectF handleRect = CropOverlayGeometry::handleRect(handle, selection);
    painter.fillRect(CropOverlayGeometry::snappedToDevice(handleRect, toDevice),
                     CropAppearance::cropHandles());
  }
  painter.restore();
}

}  // namespace vantrel
