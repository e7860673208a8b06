#pragma once

#include <QOpenGLWidget>
#include <QPointer>

#include "platform/gl/picture_renderer.h"
#include "platform/movie/video_picture_source.h"

namespace vantrel {

/// Shows the picture of a video on black: in the middle, as large as fits. Main thread.
class PlayerSurface final : public QOpenGLWidget {
  Q_OBJECT

 public:
  explicit PlayerSurface(QWidget* parent = nullptr);
  ~PlayerSurface() override;

  /// Null for none; the last picture stays then.
  void setSource(VideoPictureSource* source);

 protected:
  void initializeGL() override;
  void paintGL() override;

 private:
  void takePicture();
  void releaseContext();
  /// In device pixels.
  [[nodiscard]] PictureView pictureView() const;

  PictureRenderer m_renderer;
  QPointer<VideoPictureSource> m_source;
  /// Of the picture as it is displayed.
  QSizeF m_pictureSize;
};

}  // namespace vantrel
