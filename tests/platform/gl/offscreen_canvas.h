#pragma once

#include <QColor>
#include <QImage>
#include <QOffscreenSurface>
#include <QOpenGLContext>
#include <QOpenGLFramebufferObject>
#include <QOpenGLFunctions>
#include <QSize>
#include <optional>

#include "platform/gl/surface_format.h"

namespace vantrel::testing {

/// A framebuffer without a window, bound, in a context of its own that is current.
class OffscreenCanvas final {
 public:
  explicit OffscreenCanvas(const QSize& size) {
    m_context.setFormat(pictureSurfaceFormat());
    if (!m_context.create()) qFatal("there is no OpenGL 3.2");
    m_surface.setFormat(m_context.format());
    m_surface.create();
    m_context.makeCurrent(&m_surface);
    m_frame.emplace(size);
    m_frame->bind();
  }
  ~OffscreenCanvas() {
    m_context.makeCurrent(&m_surface);
    m_frame.reset();
    m_context.doneCurrent();
  }
  OffscreenCanvas(const OffscreenCanvas&) = delete;
  OffscreenCanvas& operator=(const OffscreenCanvas&) = delete;

  [[nodiscard]] QSize size() const { return m_frame->size(); }
  [[nodiscard]] QOpenGLContext& context() { return m_context; }

  void clear(const QColor& color) {
    QOpenGLFunctions& gl = *m_context.functions();
    gl.glClearColor(color.redF(), color.greenF(), color.blueF(), color.alphaF());
    gl.glClear(GL_COLOR_BUFFER_BIT);
  }

  /// What has been drawn, its first row at the top.
  [[nodiscard]] QImage image() const {
    return m_frame->toImage().convertToFormat(QImage::Format_RGBA8888);
  }

 private:
  QOpenGLContext m_context;
  QOffscreenSurface m_surface;
  std::optional<QOpenGLFramebufferObject> m_frame;
};

}  // namespace vantrel::testing
