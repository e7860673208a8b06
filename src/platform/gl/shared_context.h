#pragma once

// Private to this folder.

#include <QOffscreenSurface>
#include <QOpenGLContext>
#include <memory>

namespace vantrel {

/// An OpenGL context without a window, for the frames of any number of surfaces. Main thread.
class SharedContext final {
 public:
  /// Null where there is none of pictureSurfaceFormat.
  [[nodiscard]] static std::unique_ptr<SharedContext> make();

  /// Whether the processor does what a graphics card would.
  [[nodiscard]] bool isSoftware();
  bool makeCurrent() { return m_context.makeCurrent(&m_surface); }
  void doneCurrent() { m_context.doneCurrent(); }

 private:
  SharedContext() = default;

  QOffscreenSurface m_surface;
  QOpenGLContext m_context;
};

}  // namespace vantrel
