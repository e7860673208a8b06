#include "platform/gl/tile_painter.h"

#include <QByteArray>
#include <QOpenGLBuffer>
#include <QOpenGLContext>
#include <QOpenGLExtraFunctions>
#include <QOpenGLVertexArrayObject>
#include <QVector4D>
#include <algorithm>
#include <cstddef>
#include <iterator>

#include "platform/gl/shared_program.h"
#include "platform/gl/tile_shaders.h"

namespace vantrel {
namespace {

constexpr int kCornersPerQuad = 4;
constexpr int kTileUnit = 0;
constexpr int kTableUnit = 1;

QOpenGLExtraFunctions& gl() {
  return *QOpenGLContext::currentContext()->extraFunctions();
}

/// Builds what has not been built: each program takes milliseconds, and few pictures need both.
QOpenGLShaderProgram& built(std::shared_ptr<QOpenGLShaderProgram>& program,
                            const char* fragmentShader) {
  if (!program) {
    program = sharedProgram(kTileVertexShader, QByteArray(kTileFragmentCommon) + fragmentShader,
                            {"device", "texel", "footprint", "origin"});
  }
  return *program;
}

void setTextureParameters(GLint filter) {
  gl().glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, filter);
  gl().glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, filter);
  gl().glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAX_LEVEL, 0);
  gl().glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_S, GL_CLAMP_TO_EDGE);
  gl().glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_T, GL_CLAMP_TO_EDGE);
}

void setBlending(bool isOpaque) {
  if (isOpaque) {
    gl().glDisable(GL_BLEND);
    return;
  }
  gl().glEnable(GL_BLEND);
  gl().glBlendEquation(GL_FUNC_ADD);
  gl().glBlendFunc(GL_ONE, GL_ONE_MINUS_SRC_ALPHA);
}

void setState(const QSize& target, bool isOpaque) {
  gl().glViewport(0, 0, target.width(), target.height());
  for (const GLenum test :
       {GL_DEPTH_TEST, GL_STENCIL_TEST, GL_SCISSOR_TEST, GL_CULL_FACE, GL_FRAMEBUFFER_SRGB}) {
    gl().glDisable(test);
  }
  gl().glColorMask(GL_TRUE, GL_TRUE, GL_TRUE, GL_TRUE);
  setBlending(isOpaque);
}

void setUniforms(QOpenGLShaderProgram& program, const PictureView& view,
                 const PicturePlacement& placement) {
  const QRectF& kept = view.retained;
  const double opacity = view.excludedOpacity < 1 ? std::max(0.0, view.excludedOpacity) : 1.0;
  program.setUniformValue("tile", kTileUnit);
  program.setUniformValue("sourcePixels", kTableUnit);
  program.setUniformValue("target", QSizeF(view.target));
  program.setUniformValue("excludedOpacity", static_cast<float>(opacity));
  program.setUniformValue(
      "retained", QVector4D(static_cast<float>(kept.left()), static_cast<float>(kept.top()),
                            static_cast<float>(kept.right()), static_cast<float>(kept.bottom())));
  const GLint first[] = {static_cast<GLint>(placement.x.visible.begin),
                         static_cast<GLint>(placement.y.visible.begin)};
  gl().glUniform2iv(program.uniformLocation("firstVisible"), 1, first);
}

}  // namespace

struct TilePainter::Objects {
  std::shared_ptr<QOpenGLShaderProgram> sharp, smooth;
  QOpenGLVertexArrayObject array;
  QOpenGLBuffer corners;
  uint32_t table = 0;

  Objects() {
    array.create();
    corners.create();
    gl().glGenTextures(1, &table);
    gl().glBindTexture(GL_TEXTURE_2D, table);
    setTextureParameters(GL_NEAREST);
    describeCorners();
  }

  void describeCorners() {
    array.bind();
    corners.bind();
    constexpr size_t kOffsets[] = {offsetof(TileCorner, device), offsetof(TileCorner, texel),
                                   offsetof(TileCorner, footprint), offsetof(TileCorner, origin)};
    GLuint location = 0;
    for (const size_t offset : kOffsets) {
      gl().glEnableVertexAttribArray(location);
      gl().glVertexAttribPointer(location, 2, GL_FLOAT, GL_FALSE, sizeof(TileCorner),
                                 reinterpret_cast<const void*>(offset));
      ++location;
    }
    corners.release();
    array.release();
  }
};

TilePainter::TilePainter() = default;
TilePainter::~TilePainter() = default;

uint32_t TilePainter::upload(const TilePixels& pixels) {
  uint32_t texture = 0;
  gl().glGenTextures(1, &texture);
  gl().glActiveTexture(GL_TEXTURE0 + kTileUnit);
  gl().glBindTexture(GL_TEXTURE_2D, texture);
  setTextureParameters(GL_LINEAR);
  gl().glPixelStorei(GL_UNPACK_ALIGNMENT, 4);
  gl().glPixelStorei(GL_UNPACK_ROW_LENGTH, 0);
  gl().glTexImage2D(GL_TEXTURE_2D, 0, GL_RGBA8, pixels.width, pixels.height, 0, GL_RGBA,
                    GL_UNSIGNED_BYTE, pixels.rgba.data());
  return texture;
}

void TilePainter::remove(const std::vector<uint32_t>& textures) {
  if (textures.empty()) return;
  gl().glDeleteTextures(static_cast<GLsizei>(textures.size()), textures.data());
}

void TilePainter::fillTable(const PicturePlacement& placement) {
  std::vector<float> columns = sourcePixelTable(placement.x);
  std::vector<float> rows = sourcePixelTable(placement.y);
  const size_t width = std::max(columns.size(), rows.size());
  columns.resize(width);
  rows.resize(width);
  columns.insert(columns.end(), rows.begin(), rows.end());
  gl().glActiveTexture(GL_TEXTURE0 + kTableUnit);
  gl().glBindTexture(GL_TEXTURE_2D, m_objects->table);
  gl().glPixelStorei(GL_UNPACK_ALIGNMENT, 4);
  gl().glPixelStorei(GL_UNPACK_ROW_LENGTH, 0);
  gl().glTexImage2D(GL_TEXTURE_2D, 0, GL_R32F, static_cast<GLsizei>(width), 2, 0, GL_RED, GL_FLOAT,
                    columns.data());
  m_tableBytes = static_cast<int64_t>(columns.size() * sizeof(float));
}

void TilePainter::draw(const PictureView& view, const PicturePlacement& placement,
                       const std::vector<TileQuad>& quads, bool isOpaque) {
  if (quads.empty()) return;
  if (!m_objects) m_objects = std::make_unique<Objects>();
  setState(view.target, isOpaque && view.excludedOpacity >= 1);

  std::vector<TileQuad> sharp, smooth;
  std::partition_copy(
      quads.begin(), quads.end(), std::back_inserter(sharp), std::back_inserter(smooth),
      [&](const TileQuad& quad) { return placement.isMagnified() && quad.reduction == 1; });
  if (!sharp.empty()) fillTable(placement);
  gl().glActiveTexture(GL_TEXTURE0 + kTileUnit);
  m_objects->array.bind();
  if (!sharp.empty()) drawQuads(built(m_objects->sharp, kSharpTileShader), sharp, view, placement);
  if (!smooth.empty())
    drawQuads(built(m_objects->smooth, kSmoothTileShader), smooth, view, placement);
  m_objects->array.release();
  gl().glBindTexture(GL_TEXTURE_2D, 0);
}

void TilePainter::drawQuads(QOpenGLShaderProgram& program, const std::vector<TileQuad>& quads,
                            const PictureView& view, const PicturePlacement& placement) {
  std::vector<TileCorner> corners;
  std::vector<uint32_t> textures;
  for (const TileQuad& quad : quads) {
    const std::vector<TileCorner> own = cornersOf(quad, placement);
    if (own.empty()) continue;
    corners.insert(corners.end(), own.begin(), own.end());
    textures.push_back(quad.texture);
  }
  if (textures.empty() || !program.bind()) return;
  setUniforms(program, view, placement);
  m_objects->corners.bind();
  m_objects->corners.allocate(corners.data(),
                              static_cast<int>(corners.size() * sizeof(TileCorner)));
  m_objects->corners.release();
  GLint first = 0;
  for (const uint32_t texture : textures) {
    gl().glBindTexture(GL_TEXTURE_2D, texture);
    gl().glDrawArrays(GL_TRIANGLE_STRIP, first, kCornersPerQuad);
    first += kCornersPerQuad;
  }
  program.release();
}

void TilePainter::release() {
  if (!m_objects) return;
  remove({m_objects->table});
  m_objects.reset();
  m_tableBytes = 0;
}

}  // namespace vantrel
