#pragma once

#include <QOpenGLWidget>
#include <QPointer>
#include <optional>

#include "platform/gl/picture_renderer.h"
#include "platform/movie/video_picture_source.h"

namespace vantrel {

/// A widget that draws a picture with OpenGL. The context comes and goes with the window that the
/// widget is in; what lives in it is given back in time. Where `isSupported` is false, none may be
/// shown. Main thread.
class PictureSurface : public QOpenGLWidget {
  Q_OBJECT

 public:
  /// Whether this computer can draw such a surface at all; found out once.
  [[nodiscard]] static bool isSupported();
  /// Whether that is known, so that a surface costs little.
  [[nodiscard]] static bool isSupportKnown();

  explicit PictureSurface(QWidget* parent = nullptr);

 protected:
  [[nodiscard]] PictureRenderer& pictures() { return m_pictures; }
  /// Shows what this source does, from now on; null for none: the last picture stays then.
  void setPictureSource(VideoPictureSource* source);
  /// A picture of the source is about to be shown; null for none.
  virtual void pictureTaken(const VideoPicture* picture) = 0;

  /// Gives back what lives in the context, which is current; all of it is made anew when need be.
  virtual void releaseResources();
  /// For the destructor of the class that is complete: later nothing can be given back.
  void leaveContext();

  /// In device pixels.
  [[nodiscard]] QSize deviceSize() const { return size() * devicePixelRatioF(); }
  void clear(const QColor& color);
  void initializeGL() override;

 private:
  void takePicture();
  void releaseContext();

  static inline std::optional<bool> s_supported;
  PictureRenderer m_pictures;
  QPointer<VideoPictureSource> m_source;
};

}  // namespace vantrel
