#pragma once

// Private to this folder.

#include <QOpenGLContext>
#include <QPointer>
#include <array>
#include <optional>
#include <vector>

#include "platform/gl/plane_texture.h"
#include "platform/gl/video_placement.h"
#include "platform/gl/video_program.h"
#include "platform/gl/video_reduction.h"

namespace vantrel {

/// All that shows a video's pictures and lives in a context: the one that is current when it is
/// made, and in all calls. Where that one is not current, or gone, the destructor leaves it the
/// rest.
class VideoTextures final {
 public:
  VideoTextures();
  ~VideoTextures();
  VideoTextures(const VideoTextures&) = delete;
  VideoTextures& operator=(const VideoTextures&) = delete;

  [[nodiscard]] bool isOfCurrentContext() const;
  [[nodiscard]] int64_t byteCount() const;

  /// Uploads what has changed since the last call, and draws `picture`, which has pixels.
  void draw(const std::shared_ptr<const VideoPicture>& picture, const VideoPlacement& placement,
            const PictureView& view);

 private:
  void setColor(const VideoColorKind& kind);
  void setPicture(const std::shared_ptr<const VideoPicture>& picture,
                  const VideoReduction& reduction);
  void setPositions(const VideoPlacement& placement);
  [[nodiscard]] VideoProgram::Sampling sampling(int plane) const;
  void bindPlanes(bool isOnSamples) const;

  const QPointer<QOpenGLContext> m_context;
  QOpenGLFunctions& m_gl;
  GLint m_largestTexture = 0;

  std::optional<VideoColorKind> m_kind;
  std::optional<VideoProgram> m_program;
  TableTexture m_light;

  /// Of what the planes hold; null for nothing.
  std::shared_ptr<const VideoPicture> m_picture;
  VideoReduction m_reduction;
  std::array<PlaneTexture, 3> m_planes;
  PlaneReduction m_reducer;

  std::vector<float> m_positions;
  TableTexture m_positionTable;
};

}  // namespace vantrel
