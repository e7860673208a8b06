#pragma once

// Private to this folder.

#include <QOpenGLFunctions>
#include <QOpenGLShaderProgram>
#include <QOpenGLVertexArrayObject>
#include <QRect>
#include <QSize>
#include <QVector2D>
#include <QVector4D>
#include <memory>

#include "platform/gl/video_display_color.h"

namespace vantrel {

/// The shaders that make colours of a video's planes. Lives in the context that is current in all
/// calls, or outlives it.
class VideoProgram final {
 public:
  /// The texture units that it reads.
  enum Unit { kLuma, kBlueDifference, kRedDifference, kPositions, kLight };

  explicit VideoProgram(const VideoDisplayColor& color);

  /// From stored pixels to the coordinates of a texture.
  struct Sampling {
    QVector2D scale, shift;
  };
  struct Geometry {
    Sampling luma, chroma;
    bool transposes = false;
    /// What is drawn, and what of it is drawn in full, in device pixels from the lower left
    /// corner of the framebuffer. The table of positions begins in the corner of `drawn`.
    QRect drawn, retained;
    QSize target;
    double excludedOpacity = 1;
  };
  void draw(QOpenGLFunctions& gl, const Geometry& geometry);

 private:
  /// Others draw with the same program in between.
  void setColor();

  const VideoDisplayColor m_color;
  const std::shared_ptr<QOpenGLShaderProgram> m_shaders;
  QOpenGLVertexArrayObject m_layout;
  bool m_isReady = false;
};

}  // namespace vantrel
