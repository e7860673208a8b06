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
  /// Steps of reduction along the stored picture's axes.
  struct Steps {
    int x = 0, y = 0;
    friend bool operator==(const Steps&, const Steps&) = default;
  };
  [[nodiscard]] static Steps stepsOfPlane(const VideoPicture& picture, Steps steps, int plane);
  [[nodiscard]] static int64_t bytesNeeded(const VideoPicture& picture, Steps steps);
  [[nodiscard]] Steps stepsFor(const VideoPicture& picture, const VideoPlacement& placement) const;

  void setColor(const VideoColorKind& kind);
  void setPicture(const std::shared_ptr<const VideoPicture>& picture, Steps steps);
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
  Steps m_steps;
  std::array<PlaneTexture, 3> m_planes;
  PlaneReduction m_reduction;

  std::vector<float> m_positions;
  TableTexture m_positionTable;
};

}  // namespace vantrel
