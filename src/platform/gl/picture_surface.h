#pragma once

#include <QColor>
#include <QImage>
#include <QPointer>
#include <QWidget>
#include <optional>

#include "platform/gl/picture_renderer.h"
#include "platform/movie/video_picture_source.h"

namespace vantrel {

class PictureFrame;

/// A widget that draws a picture with OpenGL. A graphics card also lays it into the window; without
/// one, the processor copies it there, and the window stays free of OpenGL. The context may come
/// and go with the window that the widget is in; what lives in it is given back in time. Where
/// `isSupported` is false, none may be shown. Main thread.
class PictureSurface : public QWidget {
  Q_OBJECT

 public:
  /// Whether this computer can draw such a surface at all; found out once.
  [[nodiscard]] static bool isSupported();
  /// Whether that is known, so that a surface costs little.
  [[nodiscard]] static bool isSupportKnown();

  explicit PictureSurface(QWidget* parent = nullptr);

  /// Whether anything has been drawn yet.
  [[nodiscard]] bool hasFrame() const { return m_hasFrame; }
  /// Draws now; in device pixels.
  [[nodiscard]] QImage grabFrame();

 Q_SIGNALS:
  /// A frame has been drawn, for the screen or for `grabFrame`.
  void frameDrawn();

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
  /// Beneath what is drawn, and in its place until there is a frame.
  void setBackground(const QColor& color);
  /// Draws anew with the next painting.
  void requestFrame();
  /// Over the background, into the framebuffer that is bound, of `deviceSize`; the context is
  /// current.
  virtual void drawFrame() = 0;

  bool event(QEvent* event) override;

 private:
  void takePicture();
  void prepareFrame();
  void draw();

  static inline std::optional<bool> s_supported;
  /// A child, made when it is known what suits; null before, and where nothing does.
  PictureFrame* m_frame = nullptr;
  QColor m_background;
  bool m_hasFrame = false;
  PictureRenderer m_pictures;
  QPointer<VideoPictureSource> m_source;
};

}  // namespace vantrel
