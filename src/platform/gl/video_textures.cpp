#include "platform/gl/video_textures.h"

#include <algorithm>
#include <cmath>

#include "platform/gl/picture_renderer.h"
#include "platform/movie/sample_grid.h"

namespace vantrel {
namespace {

/// From rows that count downwards to OpenGL's.
QRect upwards(const PixelRect& rect, const QSize& target) {
  return {static_cast<int>(rect.x), static_cast<int>(target.height() - rect.y - rect.height),
          static_cast<int>(rect.width), static_cast<int>(rect.height)};
}

/// The part of `visible` that lies between whole pixels. What is not a number keeps nothing.
PixelRect intersection(const PixelRect& visible, const QRectF& rect) {
  const auto limited = [](double edge, int64_t low, int64_t length) {
    const auto from = static_cast<double>(low), to = static_cast<double>(low + length);
    return static_cast<int64_t>(std::round(std::max(from, std::min(to, edge))));
  };
  const int64_t left = limited(rect.left(), visible.x, visible.width);
  const int64_t right = limited(rect.right(), visible.x, visible.width);
  const int64_t top = limited(rect.top(), visible.y, visible.height);
  const int64_t bottom = limited(rect.bottom(), visible.y, visible.height);
  return {left, top, right - left, bottom - top};
}

}  // namespace

VideoTextures::VideoTextures()
    : m_context(QOpenGLContext::currentContext()), m_gl(*m_context->functions()) {
  m_gl.glGetIntegerv(GL_MAX_TEXTURE_SIZE, &m_largestTexture);
}

VideoTextures::~VideoTextures() {
  if (!isOfCurrentContext()) return;
  for (PlaneTexture& plane : m_planes)
    plane.release(m_gl);
  m_light.release(m_gl);
  m_positionTable.release(m_gl);
}

bool VideoTextures::isOfCurrentContext() const {
  return m_context && m_context == QOpenGLContext::currentContext();
}

int64_t VideoTextures::byteCount() const {
  int64_t bytes = m_light.byteCount() + m_positionTable.byteCount();
  for (const PlaneTexture& plane : m_planes)
    bytes += plane.byteCount();
  return bytes;
}

void VideoTextures::setColor(const VideoColorKind& kind) {
  if (m_kind == kind) return;
  m_kind = kind;
  const VideoDisplayColor color = VideoDisplayColor::of(kind);
  m_program.emplace(color);
  if (!color.convertsLight) return;
  std::vector<float> pairs;
  for (size_t i = 0; i < VideoLight::kTableSize; ++i)
    pairs.insert(pairs.end(), {color.light.light[i], color.light.tone[i]});
  m_light.upload(m_gl, pairs.data(), VideoLight::kTableSize);
}

void VideoTextures::setPicture(const std::shared_ptr<const VideoPicture>& picture,
                               const VideoReduction& reduction) {
  if (m_picture == picture && m_reduction == reduction) return;
  for (int i = 0; i < picture->planeCount(); ++i) {
    const auto index = static_cast<size_t>(i);
    const VideoReduction ofPlane = reduction.ofPlane(*picture, i);
    m_planes[index].upload(m_gl, picture->planes[index], ofPlane.stepsX, ofPlane.stepsY, m_reducer);
  }
  m_picture = picture;
  m_reduction = reduction;
}

void VideoTextures::setPositions(const VideoPlacement& placement) {
  const std::vector<float>&columns = placement.columns, &rows = placement.rows;
  std::vector<float> pairs(2 * std::max(columns.size(), rows.size()));
  for (size_t i = 0; i < columns.size(); ++i)
    pairs[2 * i] = columns[i];
  // OpenGL counts rows upwards.
  for (size_t i = 0; i < rows.size(); ++i)
    pairs[2 * i + 1] = rows[rows.size() - 1 - i];
  if (pairs == m_positions) return;
  m_positions = std::move(pairs);
  m_positionTable.upload(m_gl, m_positions.data(), static_cast<int>(m_positions.size() / 2));
}

VideoProgram::Sampling VideoTextures::sampling(int plane) const {
  const VideoPicture& picture = *m_picture;
  const bool isChroma = plane > 0 && picture.model == VideoPicture::Model::Yuv;
  SampleGrid alongX, alongY;
  if (isChroma) {
    alongX = horizontalChromaGrid(picture.chromaSiting, picture.chromaShiftX);
    alongY = verticalChromaGrid(picture.chromaSiting, picture.chromaShiftY);
  }
  const VideoReduction reduction = m_reduction.ofPlane(picture, plane);
  const PlaneTexture& texture = m_planes[static_cast<size_t>(plane)];
  // A place of a plane, where its first sample covers 0 to 1, is that of its texture but for size.
  const double sizeX = double(texture.width()) * (1 << reduction.stepsX);
  const double sizeY = double(texture.height()) * (1 << reduction.stepsY);
  VideoProgram::Sampling result;
  result.scale = QVector2D(static_cast<float>(1 / (alongX.step * sizeX)),
                           static_cast<float>(1 / (alongY.step * sizeY)));
  result.shift = QVector2D(static_cast<float>((0.5 - alongX.offset / alongX.step) / sizeX),
                           static_cast<float>((0.5 - alongY.offset / alongY.step) / sizeY));
  return result;
}

void VideoTextures::bindPlanes(bool isOnSamples) const {
  const bool isSubsampled = m_picture->chromaShiftX > 0 || m_picture->chromaShiftY > 0;
  const GLint filter = isOnSamples ? GL_NEAREST : GL_LINEAR;
  for (int i = VideoProgram::kLuma; i <= VideoProgram::kRedDifference; ++i) {
    const int plane = std::min(i, m_picture->planeCount() - 1);
    m_planes[static_cast<size_t>(plane)].bind(m_gl, i,
                                              plane > 0 && isSubsampled ? GL_LINEAR : filter);
  }
}

void VideoTextures::draw(const std::shared_ptr<const VideoPicture>& picture,
                         const VideoPlacement& placement, const PictureView& view) {
  VideoProgram::Geometry geometry;
  geometry.drawn = upwards(placement.visible, view.target);
  geometry.retained = upwards(intersection(placement.visible, view.retained), view.target);
  geometry.excludedOpacity = view.excludedOpacity < 1 ? std::max(view.excludedOpacity, 0.0) : 1;
  geometry.target = view.target;
  geometry.transposes = placement.transposes;

  setColor(VideoColorKind::of(*picture));
  // The rest is for tables, and for what drivers round.
  const VideoReduction::Limits limits{m_largestTexture, PictureRenderer::kMostTextureBytes / 8 * 7};
  setPicture(picture, VideoReduction::of(*picture, placement.scaleX, placement.scaleY, limits));
  setPositions(placement);
  geometry.luma = sampling(0);
  geometry.chroma = sampling(picture->planeCount() - 1);
  bindPlanes(placement.isOnSamples);
  m_positionTable.bind(m_gl, VideoProgram::kPositions, GL_NEAREST);
  m_light.bind(m_gl, VideoProgram::kLight, GL_LINEAR);
  m_program->draw(m_gl, geometry);
  m_gl.glActiveTexture(GL_TEXTURE0);
}

}  // namespace vantrel
