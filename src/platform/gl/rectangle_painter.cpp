#include "platform/gl/rectangle_painter.h"

#include <QOpenGLBuffer>
#include <QOpenGLContext>
#include <QOpenGLFunctions>
#include <QOpenGLVertexArrayObject>
#include <algorithm>
#include <cstddef>
#include <utility>

#include "platform/gl/shared_program.h"

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

/// A premultiplied colour.
struct Paint {
  float red = 0, green = 0, blue = 0, alpha = 0;

  [[nodiscard]] Paint times(float factor) const {
    return {red * factor, green * factor, blue * factor, alpha * factor};
  }
  [[nodiscard]] Paint over(const Paint& below) const {
    const Paint rest = below.times(1 - alpha);
    return {red + rest.red, green + rest.green, blue + rest.blue, alpha + rest.alpha};
  }
  friend bool operator==(const Paint&, const Paint&) = default;
};

struct Area {
  double left, top, right, bottom;
  Paint paint;
};

/// What the rectangles cover of the target, each where it lies.
std::vector<Area> visibleAreas(const std::vector<ColoredRectangle>& rectangles,
                               const QSize& target) {
  std::vector<Area> areas;
  areas.reserve(rectangles.size());
  for (const auto& [rect, anyColor] : rectangles) {
    const QColor color = anyColor.toRgb();
    const Paint opaque{color.redF(), color.greenF(), color.blueF(), 1};
    // Cut here, where far corners still have their pixels: the shader's floats would round them.
    // In this order of arguments what is not a number stays so, and is left out.
    const Area area{std::max(rect.left(), 0.0), std::max(rect.top(), 0.0),
                    std::min<double>(rect.right(), target.width()),
                    std::min<double>(rect.bottom(), target.height()), opaque.times(color.alphaF())};
    if (area.left < area.right && area.top < area.bottom) areas.push_back(area);
  }
  return areas;
}

std::vector<double> sortedOnce(std::vector<double> edges) {
  std::sort(edges.begin(), edges.end());
  edges.erase(std::unique(edges.begin(), edges.end()), edges.end());
  return edges;
}

/// The same picture from areas that do not overlap, so that a common opacity does not show one
/// through another. For a few areas: the time grows with the cube of their number.
std::vector<Area> flattened(const std::vector<Area>& areas) {
  std::vector<double> columns;
  std::vector<double> rows;
  for (const Area& area : areas) {
    columns.insert(columns.end(), {area.left, area.right});
    rows.insert(rows.end(), {area.top, area.bottom});
  }
  columns = sortedOnce(std::move(columns));
  rows = sortedOnce(std::move(rows));

  std::vector<Area> cells;
  for (size_t row = 1; row < rows.size(); ++row) {
    for (size_t column = 1; column < columns.size(); ++column) {
      Area cell{columns[column - 1], rows[row - 1], columns[column], rows[row], {}};
      for (const Area& area : areas) {
        const bool covers = area.left <= cell.left && area.right >= cell.right &&
                            area.top <= cell.top && area.bottom >= cell.bottom;
        if (covers) cell.paint = area.paint.over(cell.paint);
      }
      if (cell.paint != Paint{}) cells.push_back(cell);
    }
  }
  return cells;
}

/// A corner in normalised device coordinates, y upwards.
struct Vertex {
  float x, y;
  Paint paint;
};

/// Two triangles for each area.
std::vector<Vertex> triangles(const std::vector<Area>& areas, const QSize& target, float opacity) {
  std::vector<Vertex> vertices;
  vertices.reserve(areas.size() * 6);
  for (const Area& area : areas) {
    const Paint paint = area.paint.times(opacity);
    const auto left = static_cast<float>(area.left / target.width() * 2 - 1);
    const auto top = static_cast<float>(1 - area.top / target.height() * 2);
    const auto right = static_cast<float>(area.right / target.width() * 2 - 1);
    const auto bottom = static_cast<float>(1 - area.bottom / target.height() * 2);
    vertices.insert(vertices.end(), {{left, top, paint},
                                     {left, bottom, paint},
                                     {right, top, paint},
                                     {right, top, paint},
                                     {left, bottom, paint},
                                     {right, bottom, paint}});
  }
  return vertices;
}

}  // namespace

/// What lives in the context.
class RectanglePainter::Program final {
 public:
  Program() : m_shaders(sharedProgram(kVertexShader, kFragmentShader, {"position", "color"})) {
    if (!m_shaders->isLinked() || !m_layout.create() || !m_corners.create()) return;
    const QOpenGLVertexArrayObject::Binder layout(&m_layout);
    m_corners.bind();
    m_shaders->enableAttributeArray(0);
    m_shaders->setAttributeBuffer(0, GL_FLOAT, offsetof(Vertex, x), 2, sizeof(Vertex));
    m_shaders->enableAttributeArray(1);
    m_shaders->setAttributeBuffer(1, GL_FLOAT, offsetof(Vertex, paint), 4, sizeof(Vertex));
    m_corners.release();
  }

  void fill(const std::vector<Vertex>& vertices, const QSize& target) {
    if (!m_corners.isCreated() || !m_shaders->bind()) return;
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
    m_shaders->release();
  }

 private:
  const std::shared_ptr<QOpenGLShaderProgram> m_shaders;
  QOpenGLVertexArrayObject m_layout;
  QOpenGLBuffer m_corners;
};

RectanglePainter::RectanglePainter() = default;
RectanglePainter::~RectanglePainter() = default;

void RectanglePainter::draw(const QSize& target, const std::vector<ColoredRectangle>& rectangles,
                            double opacity) {
  if (!(opacity > 0)) return;
  std::vector<Area> areas = visibleAreas(rectangles, target);
  if (areas.empty()) return;
  if (opacity < 1) areas = flattened(areas);
  if (!m_program) m_program = std::make_unique<Program>();
  m_program->fill(triangles(areas, target, static_cast<float>(std::min(opacity, 1.0))), target);
}

void RectanglePainter::release() {
  m_program.reset();
}

}  // namespace vantrel
