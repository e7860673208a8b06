#pragma once

// Private to this folder.

#include <QOpenGLFunctions>
#include <cstdint>

#include "platform/gl/plane_reduction.h"
#include "platform/movie/plane_view.h"

namespace vantrel {

/// A texture of one channel that takes the samples of planes as they are. It lives in the context
/// that is current in all calls; whoever owns it calls `release`, or the context goes.
class PlaneTexture final {
 public:
  /// Fills it with a plane that is not empty, made smaller by steps. Where size and kind are those
  /// of the plane before, no memory is made anew.
  void upload(QOpenGLFunctions& gl, const PlaneView& plane, int stepsX, int stepsY,
              PlaneReduction& reduction);
  /// To a texture unit, counted from 0; `filter` is GL_NEAREST or GL_LINEAR.
  void bind(QOpenGLFunctions& gl, int unit, GLint filter) const;
  void release(QOpenGLFunctions& gl);

  [[nodiscard]] int width() const { return m_width; }
  [[nodiscard]] int height() const { return m_height; }
  [[nodiscard]] int64_t byteCount() const { return int64_t{m_width} * m_height * m_bytesPerSample; }

 private:
  void make(QOpenGLFunctions& gl, int width, int height, int bytesPerSample);

  GLuint m_texture = 0;
  int m_width = 0, m_height = 0, m_bytesPerSample = 0;
};

/// A texture of one row and two channels of floating-point numbers, for tables.
class TableTexture final {
 public:
  /// `count` entries of two numbers each.
  void upload(QOpenGLFunctions& gl, const float* pairs, int count);
  void bind(QOpenGLFunctions& gl, int unit, GLint filter) const;
  void release(QOpenGLFunctions& gl);

  [[nodiscard]] int64_t byteCount() const;

 private:
  GLuint m_texture = 0;
  int m_count = 0;
};

}  // namespace vantrel
