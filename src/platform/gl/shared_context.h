#pragma once

// Private to this folder.

#include <QObject>
#include <QOffscreenSurface>
#include <QOpenGLContext>
#include <QOpenGLShaderProgram>
#include <QThread>
#include <memory>
#include <vector>

namespace vantrel {

/// An OpenGL context without a window, for the frames of any number of surfaces. Main thread.
class SharedContext final : public QObject {
  Q_OBJECT

 public:
  /// In which frames are drawn; it is read quicker than those without alpha.
  static constexpr GLenum kFrameFormat = 0x8058;  // GL_RGBA8

  /// Null where there is none of pictureSurfaceFormat.
  [[nodiscard]] static std::unique_ptr<SharedContext> make();
  ~SharedContext() override;

  /// Whether the processor does what a graphics card would.
  [[nodiscard]] bool isSoftware();
  /// Has the driver finish the programs in the background, which takes a software renderer tenths
  /// of a second. `isReady` is false until `ready` comes.
  void finishPrograms();
  [[nodiscard]] bool isReady() const { return !m_thread; }

  /// Waits until it is ready.
  bool makeCurrent();
  void doneCurrent() { m_context.doneCurrent(); }

 Q_SIGNALS:
  void ready();

 private:
  SharedContext() = default;
  void drawFirstFrame();
  void takeBack();

  QOffscreenSurface m_surface;
  QOpenGLContext m_context;
  /// Held, so that they stay finished.
  std::vector<std::shared_ptr<QOpenGLShaderProgram>> m_programs;
  /// Has the context, and writes m_programs; null when there is none.
  std::unique_ptr<QThread> m_thread;
};

}  // namespace vantrel
