#pragma once

// Private to this folder.

#include <QColor>
#include <QImage>
#include <QSize>
#include <functional>
#include <memory>

class QWidget;

namespace vantrel {

class SharedContext;

/// What a PictureSurface draws into: a child widget that fills it. Main thread.
class PictureFrame {
 public:
  /// The first two are called with the context current.
  struct Drawing {
    /// Into the framebuffer that is bound, which is `deviceSize` large.
    std::function<void()> draw;
    /// The context is about to go.
    std::function<void()> release;
    /// Of what is shown until there is a frame.
    std::function<QColor()> background;
  };

  virtual ~PictureFrame() = default;

  [[nodiscard]] virtual QWidget& widget() = 0;
  /// Draws anew with the next painting.
  virtual void requestDrawing() = 0;
  /// Whether there is a context, in which something may live.
  [[nodiscard]] virtual bool hasContext() const = 0;
  /// Only where there is one; false when it is lost.
  virtual bool makeCurrent() = 0;
  virtual void doneCurrent() = 0;
  /// Draws now; in device pixels; null where that fails.
  [[nodiscard]] virtual QImage grab() = 0;
};

/// The graphics card lays the frame into the window, which it composes whole each time.
[[nodiscard]] PictureFrame* makeComposedFrame(PictureFrame::Drawing drawing, QWidget* parent);
/// The processor copies the frame into the window, which is quicker where it draws the frame too.
[[nodiscard]] PictureFrame* makeCopiedFrame(std::shared_ptr<SharedContext> context,
                                            PictureFrame::Drawing drawing, QWidget* parent);

}  // namespace vantrel
