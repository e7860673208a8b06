#pragma once

#include <QColor>
#include <QVariantAnimation>
#include <vector>

#include "canvas/canvas_projection.h"
#include "model/crop_margins.h"
#include "platform/gl/picture_surface.h"
#include "platform/gl/rectangle_painter.h"
#include "platform/image/bitmap.h"

namespace vantrel {

/// The surface that draws the canvas: the picture at the camera's rectangle, what surrounds the
/// crop, and the fade between the whole picture and its kept part. Main thread.
class VideoCanvasView final : public PictureSurface {
  Q_OBJECT

 public:
  static constexpr int kFadeMilliseconds = 220;

  explicit VideoCanvasView(QWidget* parent = nullptr);
  ~VideoCanvasView() override;

  [[nodiscard]] const CanvasProjection& projection() const { return m_projection; }
  [[nodiscard]] const CropMargins& crop() const { return m_crop; }
  /// Of dimming, border, handles and fields, and of the picture outside the crop: 1 while editing,
  /// 0 in preview, between them while it fades.
  [[nodiscard]] double editingOpacity() const { return m_editingOpacity; }
  /// The running fade; ended when nothing fades.
  [[nodiscard]] QVariantAnimation& fade() { return m_fade; }
  /// Whether what is on the screen is the picture, as sharp as it will be.
  [[nodiscard]] bool isPictureShown() const { return m_isPictureShown; }

  /// An empty bitmap and no source for nothing.
  void setMedia(const Bitmap& image, VideoPictureSource* source);
  void setCanvasColor(const QColor& color);
  /// Places picture and crop; starts the fade when the preview has changed.
  void position(const CanvasProjection& projection, const CropMargins& crop, bool previewOnly);
  /// Marks what the keyboard moves, over all else.
  void setFocusRing(std::vector<ColoredRectangle> ring);

 Q_SIGNALS:
  void editingOpacityChanged(double opacity);
  /// A frame with all of the picture that is in view has been drawn.
  void pictureShown();

 protected:
  void pictureTaken(const VideoPicture* picture) override;
  void releaseResources() override;
  void drawFrame() override;

 private:
  void redraw();
  void fadeTo(double opacity);
  [[nodiscard]] PictureView pictureView() const;

  RectanglePainter m_rectangles;
  bool m_hasPicture = false;
  bool m_isPictureShown = false;
  CanvasProjection m_projection;
  CropMargins m_crop;
  std::vector<ColoredRectangle> m_focusRing;
  bool m_displaysPreview = false;
  double m_editingOpacity = 1;
  QVariantAnimation m_fade;
};

}  // namespace vantrel
