#include "platform/gl/plane_texture.h"

#include <QOpenGLExtraFunctions>

namespace vantrel {
namespace {

// Of OpenGL 3, which Qt's common header lacks.
constexpr GLint kR8 = 0x8229, kR16 = 0x822A, kRg32f = 0x8230;
constexpr GLenum kRed = 0x1903, kRg = 0x8227, kUnpackRowLength = 0x0CF2;

GLuint makeTexture(QOpenGLFunctions& gl) {
  GLuint texture = 0;
  gl.glGenTextures(1, &texture);
  gl.glBindTexture(GL_TEXTURE_2D, texture);
  gl.glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_S, GL_CLAMP_TO_EDGE);
  gl.glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_T, GL_CLAMP_TO_EDGE);
  gl.glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_NEAREST);
  return texture;
}

void bindTexture(QOpenGLFunctions& gl, GLuint texture, int unit, GLint filter) {
  gl.glActiveTexture(GL_TEXTURE0 + static_cast<GLenum>(unit));
  gl.glBindTexture(GL_TEXTURE_2D, texture);
  gl.glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, filter);
  gl.glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, filter);
}

void releaseTexture(QOpenGLFunctions& gl, GLuint& texture) {
  if (texture != 0) gl.glDeleteTextures(1, &texture);
  texture = 0;
}

/// Whether OpenGL can read the rows where they are.
bool isUploadable(const PlaneView& plane) {
  return plane.stride >= ptrdiff_t{plane.width} * plane.bytesPerSample &&
         plane.stride % plane.bytesPerSample == 0;
}

}  // namespace

void PlaneTexture::make(QOpenGLFunctions& gl, int width, int height, int bytesPerSample) {
  if (m_texture != 0 && m_width == width && m_height == height &&
      m_bytesPerSample == bytesPerSample)
    return;
  release(gl);
  m_texture = makeTexture(gl);
  const bool isByte = bytesPerSample == 1;
  gl.glTexImage2D(GL_TEXTURE_2D, 0, isByte ? kR8 : kR16, width, height, 0, kRed,
                  isByte ? GL_UNSIGNED_BYTE : GL_UNSIGNED_SHORT, nullptr);
  m_width = width;
  m_height = height;
  m_bytesPerSample = bytesPerSample;
}

void PlaneTexture::upload(QOpenGLFunctions& gl, const PlaneView& plane, int stepsX, int stepsY,
                          PlaneReduction& reduction) {
  const bool isAsItIs = stepsX == 0 && stepsY == 0 && isUploadable(plane);
  const PlaneView rows = isAsItIs ? plane : reduction.reduced(plane, stepsX, stepsY);
  gl.glActiveTexture(GL_TEXTURE0);
  make(gl, rows.width, rows.height, rows.bytesPerSample);
  gl.glBindTexture(GL_TEXTURE_2D, m_texture);
  gl.glPixelStorei(GL_UNPACK_ALIGNMENT, rows.bytesPerSample);
  gl.glPixelStorei(kUnpackRowLength, static_cast<GLint>(rows.stride / rows.bytesPerSample));
  gl.glTexSubImage2D(GL_TEXTURE_2D, 0, 0, 0, rows.width, rows.height, kRed,
                     rows.bytesPerSample == 1 ? GL_UNSIGNED_BYTE : GL_UNSIGNED_SHORT, rows.data);
  gl.glPixelStorei(kUnpackRowLength, 0);
  gl.glPixelStorei(GL_UNPACK_ALIGNMENT, 4);
}

void PlaneTexture::bind(QOpenGLFunctions& gl, int unit, GLint filter) const {
  bindTexture(gl, m_texture, unit, filter);
}

void PlaneTexture::release(QOpenGLFunctions& gl) {
  releaseTexture(gl, m_texture);
  m_width = m_height = 0;
}

void TableTexture::upload(QOpenGLFunctions& gl, const float* pairs, int count) {
  gl.glActiveTexture(GL_TEXTURE0);
  if (m_texture == 0) m_texture = makeTexture(gl);
  gl.glBindTexture(GL_TEXTURE_2D, m_texture);
  gl.glTexImage2D(GL_TEXTURE_2D, 0, kRg32f, count, 1, 0, kRg, GL_FLOAT, pairs);
  m_count = count;
}

void TableTexture::bind(QOpenGLFunctions& gl, int unit, GLint filter) const {
  bindTexture(gl, m_texture, unit, filter);
}

void TableTexture::release(QOpenGLFunctions& gl) {
  releaseTexture(gl, m_texture);
  m_count = 0;
}

int64_t TableTexture::byteCount() const {
  return int64_t{m_count} * 2 * int64_t{sizeof(float)};
}

}  // namespace vantrel
