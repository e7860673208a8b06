#pragma once

#include <QColor>
#include <QMarginsF>
#include <QWidget>
#include <optional>

#include "canvas/canvas_projection.h"
#include "model/crop_margins.h"
#include "platform/image/bitmap.h"

class QPainter;

namespace vantrel {

class PicturePreview;

/// Shows a picture, fitted, under its crop: what the crop cuts away is dimmed, a border and eight
/// handles stand around the rest. The picture is rendered in the background.
class CropCanvas final : public QWidget {
  Q_OBJECT

 public:
  explicit CropCanvas(QWidget* parent = nullptr);

  [[nodiscard]] CanvasProjection projection() const;
  /// Whether what is on the screen is the picture at its present size.
  [[nodiscard]] bool isPictureShown() const;

  /// An empty bitmap for none.
  void setPicture(const Bitmap& picture);
  void setCrop(const CropMargins& crop);
  /// Behind the picture; the palette's own colour for a canvas if absent.
  void setCanvasColor(const std::optional<QColor>& color);
  /// The part of the view, in points, that a fitted picture keeps clear of.
  void setFramingInsets(const QMarginsF& insets);

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  [[nodiscard]] QSizeF sourceSize() const;
  void drawPicture(QPainter& painter, const QRectF& frame);
  void drawOverlay(QPainter& painter, const QRectF& frame, const QRectF& selection) const;

  Bitmap m_picture;
  PicturePreview* m_preview;
  CropMargins m_crop;
  std::optional<QColor> m_color;
  QMarginsF m_insets;
};

}  // namespace vantrel
