#pragma once

#include "platform/gl/picture_surface.h"

namespace vantrel {

/// Shows the picture of a video on black: in the middle, as large as fits. Main thread.
class PlayerSurface final : public PictureSurface {
  Q_OBJECT

 public:
  explicit PlayerSurface(QWidget* parent = nullptr);
  ~PlayerSurface() override;

  /// Null for none; the last picture stays then.
  void setSource(VideoPictureSource* source) { setPictureSource(source); }

 protected:
  void pictureTaken(const VideoPicture* picture) override;
  void drawFrame() override;

 private:
  /// In device pixels.
  [[nodiscard]] PictureView pictureView() const;

  /// Of the picture as it is displayed.
  QSizeF m_pictureSize;
};

}  // namespace vantrel
