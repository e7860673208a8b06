#include "platform/gl/rectangle_painter.h"

#include <QOpenGLBuffer>
#include <QOpenGLContext>
#include <QOpenGLFunctions>
#include <QOpenGLShaderProgram>
#include <QOpenGLVertexArrayObject>
#include <algorithm>
#include <array>

namespace vantrel {
namespace {

constexpr const char* kVertexShader = R"(#version 150
in vec2 position;
in vec4 color;
out vec4 fill;
void main() {
  fill = color;
  gl_Position = vec4(position, 0.0, 1.0);
}
)";

constexpr const char* kFragmentShader = R"(#version 150
in vec4 fill;
out vec4 fragment;
void main() {
  fragment = fill;
}
)";

/// A corner in normalised device coordinates, y upwards, with a premultiplied colour.
struct Vertex {
  float x, y;
  float red, green, blue, alpha;
};

/// Two triangles of what `rectangle` covers of the target; none where it misses it.
void append(std::vector<Vertex>& vertices, const ColoredRectangle& rectangle, const QSize& target,
            double opacity) {
  // Cut here, where far corners still have their pixels: the shader's floats would round them.
  // In this order of arguments what is not a number stays so, and is left out.
  const QRectF& rect = rectangle.rect;
  const double left = std::max(rect.left(), 0.0);
  const double top = std::max(rect.top(), 0.0);
  const double right = std::min<double>(rect.right(), target.width());
  const double bottom = std::min<double>(rect.bottom(), target.height());
  if (!(left < right && top < bottom)) return;

  const QColor color = rectangle.color.toRgb();
  const float alpha = color.alphaF() * static_cast<float>(opacity);
  const auto vertexAt = [&](double x, double y) {
    return Vertex{static_cast<float>(x / target.width() * 2 - 1),
                  static_cast<float>(1 - y / target.height() * 2),
                  color.redF() * alpha,
                  color.greenF() * alpha,
                  color.blueF() * alpha,
                  alpha};
  };
  const Vertex topLeft = vertexAt(left, top);
  const Vertex topRight = vertexAt(right, top);
  const Vertex bottomLeft = vertexAt(left, bottom);
  const Vertex bottomRight = vertexAt(right, bottom);
  vertices.insert(vertices.end(),
                  {topLeft, bottomLeft, topRight, topRight, bottomLeft, bottomRight});
}

}  // namespace

/// What lives in the context.
class RectanglePainter::Program final {
 public:
  Program() {
    m_shaders.addShaderFromSourceCode(QOpenGLShader::Vertex, kVertexShader);
    m_shaders.addShaderFromSourceCode(QOpenGLShader::Fragment, kFragmentShader);
    m_shaders.bindAttributeLocation("position", 0);
    m_shaders.bindAttributeLocation("color", 1);
    if (!m_shaders.link() || !m_layout.create() || !m_corners.create()) return;
    const QOpenGLVertexArrayObject::Binder layout(&m_layout);
    m_corners.bind();
    m_shaders.enableAttributeArray(0);
    m_shaders.setAttributeBuffer(0, GL_FLOAT, offsetof(Vertex, x), 2, sizeof(Vertex));
    m_shaders.enableAttributeArray(1);
    m_shaders.setAttributeBuffer(1, GL_FLOAT, offsetof(Vertex, red), 4, sizeof(Vertex));
    m_corners.release();
  }

  void fill(const std::vector<Vertex>& vertices, const QSize& target) {
    if (!m_corners.isCreated() || !m_shaders.bind()) return;
    QOpenGLFunctions& gl = *QOpenGLContext::currentContext()->functions();
    for (const GLenum test : {GL_CULL_FACE, GL_DEPTH_TEST, GL_SCISSOR_TEST, GL_STENCIL_TEST}) {
      gl.glDisable(test);
    }
    gl.glViewport(0, 0, target.width(), target.height());
    gl.glEnable(GL_BLEND);
    gl.glBlendEquation(GL_FUNC_ADD);
    gl.glBlendFunc(GL_ONE, GL_ONE_MINUS_SRC_ALPHA);
    gl.glColorMask(GL_TRUE, GL_TRUE, GL_TRUE, GL_TRUE);
    {
      const QOpenGLVertexArrayObject::Binder layout(&m_layout);
      m_corners.bind();
      m_corners.allocate(vertices.data(), static_cast<int>(vertices.size() * sizeof(Vertex)));
      m_corners.release();
      gl.glDrawArrays(GL_TRIANGLES, 0, static_cast<GLsizei>(vertices.size()));
    }
    gl.glDisable(GL_BLEND);
    m_shaders.release();
  }

 private:
  QOpenGLShaderProgram m_shaders;
  QOpenGLVertexArrayObject m_layout;
  QOpenGLBuffer m_corners;
};

RectanglePainter::RectanglePainter() = default;
RectanglePainter::~RectanglePainter() = default;

void RectanglePainter::draw(const QSize& target, const std::vector<ColoredRectangle>& rectangles,
                            double opacity) {
  if (!(opacity > 0)) return;
  std::vector<Vertex> vertices;
  vertices.reserve(rectangles.size() * 6);
  for (const ColoredRectangle& rectangle : rectangles) {
    append(vertices, rectangle, target, std::min(opacity, 1.0));
  }
  if (vertices.empty()) return;
  if (!m_program) m_program = std::make_unique<Program>();
  m_program->fill(vertices, target);
}

void RectanglePainter::release() {
  m_program.reset();
}

}  // namespace vantrel
