#include "platform/gl/video_program.h"

#include <QGenericMatrix>
#include <QVector3D>
#include <algorithm>

#include "platform/gl/shared_program.h"

namespace vantrel {
namespace {

constexpr const char* kVertexShader = R"(#version 150
uniform vec4 corners;
void main() {
  vec2 corner = vec2(gl_VertexID & 1, gl_VertexID >> 1);
  gl_Position = vec4(mix(corners.xy, corners.zw, corner), 0.0, 1.0);
}
)";

constexpr const char* kConverting = "#version 150\n#define CONVERTS_LIGHT\n";
constexpr const char* kNotConverting = "#version 150\n";

/// Behind a line with the version. Tables are read at the centres of their first and last entries
/// for 0 and 1.
constexpr const char* kFragmentShader = R"(
uniform sampler2D luma, blueDifference, redDifference;
uniform sampler2D positions;
uniform ivec2 firstPosition;
uniform bool transposes;
uniform vec4 lumaSampling, chromaSampling;
uniform mat3 toSignal;
uniform vec3 offset;
uniform vec4 retained;
uniform float excludedOpacity;
out vec4 fragment;

#ifdef CONVERTS_LIGHT
uniform sampler2D light;
uniform float lastEntry;
uniform vec3 luminance;
uniform float gain, exponent, peak;
uniform mat3 toSrgb;

vec2 tables(float at) {
  return texture(light, vec2((at * lastEntry + 0.5) / (lastEntry + 1.0), 0.5)).rg;
}

vec3 displayed(vec3 signal) {
  vec3 color = vec3(tables(signal.r).r, tables(signal.g).r, tables(signal.b).r);
  if (exponent != 0.0) color *= gain * pow(max(dot(luminance, color), 1e-6), exponent);
  float brightest = max(max(color.r, color.g), max(color.b, 1e-9));
  color *= min(tables(sqrt(sqrt(min(brightest / peak, 1.0)))).g, 1.0 / brightest);
  color = clamp(toSrgb * color, 0.0, 1.0);
  return mix(color * 12.92, 1.055 * pow(max(color, 1e-6), vec3(1.0 / 2.4)) - 0.055,
             greaterThan(color, vec3(0.0031308)));
}
#endif

void main() {
  ivec2 at = ivec2(gl_FragCoord.xy) - firstPosition;
  vec2 place = vec2(texelFetch(positions, ivec2(at.x, 0), 0).r,
                    texelFetch(positions, ivec2(at.y, 0), 0).g);
  if (transposes) place = place.yx;
  vec2 ofChroma = place * chromaSampling.xy + chromaSampling.zw;
  vec3 samples = vec3(texture(luma, place * lumaSampling.xy + lumaSampling.zw).r,
                      texture(blueDifference, ofChroma).r, texture(redDifference, ofChroma).r);
  vec3 color = clamp(toSignal * samples + offset, 0.0, 1.0);
#ifdef CONVERTS_LIGHT
  color = displayed(color);
#endif
  bool isRetained = all(greaterThan(gl_FragCoord.xy, retained.xy)) &&
                    all(lessThan(gl_FragCoord.xy, retained.zw));
  float opacity = isRetained ? 1.0 : excludedOpacity;
  fragment = vec4(color * opacity, opacity);
}
)";

QMatrix3x3 asMatrix(const ColorMatrix& values) {
  std::array<float, 9> rows{};
  std::transform(values.begin(), values.end(), rows.begin(),
                 [](double value) { return static_cast<float>(value); });
  return QMatrix3x3(rows.data());
}

QVector3D asVector(const std::array<double, 3>& values) {
  return {static_cast<float>(values[0]), static_cast<float>(values[1]),
          static_cast<float>(values[2])};
}

QVector4D asVector(const VideoProgram::Sampling& sampling) {
  return {sampling.scale.x(), sampling.scale.y(), sampling.shift.x(), sampling.shift.y()};
}

/// Left, bottom, right and top in pixels.
QVector4D edgesOf(const QRect& rect) {
  return {static_cast<float>(rect.x()), static_cast<float>(rect.y()),
          static_cast<float>(rect.x() + rect.width()),
          static_cast<float>(rect.y() + rect.height())};
}

/// Pixels in normalised device coordinates.
QVector4D normalised(const QVector4D& edges, const QSize& target) {
  const QVector4D size(static_cast<float>(target.width()), static_cast<float>(target.height()),
                       static_cast<float>(target.width()), static_cast<float>(target.height()));
  return edges / size * 2 - QVector4D(1, 1, 1, 1);
}

}  // namespace

VideoProgram::VideoProgram(const VideoDisplayColor& color)
    : m_color(color),
      m_shaders(sharedProgram(
          kVertexShader,
          QByteArray(color.convertsLight ? kConverting : kNotConverting) + kFragmentShader, {})) {
  m_isReady = m_shaders->isLinked() && m_layout.create();
}

void VideoProgram::setColor() {
  m_shaders->setUniformValue("luma", kLuma);
  m_shaders->setUniformValue("blueDifference", kBlueDifference);
  m_shaders->setUniformValue("redDifference", kRedDifference);
  m_shaders->setUniformValue("positions", kPositions);
  m_shaders->setUniformValue("toSignal", asMatrix(m_color.toSignal));
  m_shaders->setUniformValue("offset", asVector(m_color.offset));
  if (m_color.convertsLight) {
    m_shaders->setUniformValue("light", kLight);
    m_shaders->setUniformValue("lastEntry", GLfloat{VideoLight::kTableSize - 1});
    m_shaders->setUniformValue("luminance", asVector(m_color.light.luminance));
    m_shaders->setUniformValue("gain", static_cast<GLfloat>(m_color.light.gain));
    m_shaders->setUniformValue("exponent", static_cast<GLfloat>(m_color.light.exponent));
    m_shaders->setUniformValue("peak", static_cast<GLfloat>(m_color.light.peak));
    m_shaders->setUniformValue("toSrgb", asMatrix(m_color.light.toSrgb));
  }
}

void VideoProgram::draw(QOpenGLFunctions& gl, const Geometry& geometry) {
  if (!m_isReady) return;
  m_shaders->bind();
  setColor();
  m_shaders->setUniformValue("corners", normalised(edgesOf(geometry.drawn), geometry.target));
  m_shaders->setUniformValue("retained", edgesOf(geometry.retained));
  m_shaders->setUniformValue("excludedOpacity", static_cast<GLfloat>(geometry.excludedOpacity));
  m_shaders->setUniformValue("transposes", geometry.transposes);
  m_shaders->setUniformValue("lumaSampling", asVector(geometry.luma));
  m_shaders->setUniformValue("chromaSampling", asVector(geometry.chroma));
  // Qt sets vectors of integers as floats.
  gl.glUniform2i(m_shaders->uniformLocation("firstPosition"), geometry.drawn.x(),
                 geometry.drawn.y());
  for (const GLenum test :
       {GL_CULL_FACE, GL_DEPTH_TEST, GL_FRAMEBUFFER_SRGB, GL_SCISSOR_TEST, GL_STENCIL_TEST})
    gl.glDisable(test);
  gl.glColorMask(GL_TRUE, GL_TRUE, GL_TRUE, GL_TRUE);
  gl.glViewport(0, 0, geometry.target.width(), geometry.target.height());
  if (geometry.excludedOpacity < 1) {
    gl.glEnable(GL_BLEND);
  } else {
    gl.glDisable(GL_BLEND);
  }
  gl.glBlendEquation(GL_FUNC_ADD);
  gl.glBlendFunc(GL_ONE, GL_ONE_MINUS_SRC_ALPHA);
  {
    const QOpenGLVertexArrayObject::Binder layout(&m_layout);
    gl.glDrawArrays(GL_TRIANGLE_STRIP, 0, 4);
  }
  gl.glDisable(GL_BLEND);
  m_shaders->release();
}

}  // namespace vantrel
