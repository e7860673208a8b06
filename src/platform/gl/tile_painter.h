#pragma once

// Private to this folder.

#include <cstdint>
#include <memory>
#include <vector>

#include "platform/gl/picture_view.h"
#include "platform/gl/tile_pyramid.h"
#include "platform/gl/tile_quads.h"

class QOpenGLShaderProgram;

namespace vantrel {

/// Draws tiles with OpenGL. One thread at a time, with the same context current in every call until
/// `release`.
class TilePainter {
 public:
  TilePainter();
  ~TilePainter();
  TilePainter(const TilePainter&) = delete;
  TilePainter& operator=(const TilePainter&) = delete;

  /// Makes a texture of a tile.
  [[nodiscard]] static uint32_t upload(const TilePixels& pixels);
  static void remove(const std::vector<uint32_t>& textures);

  /// Quads of unreduced texels are sharp when the picture is magnified; all others are smooth: each
  /// device pixel is the mean of the texels under it. `isOpaque`: no tile has alpha.
  void draw(const PictureView& view, const PicturePlacement& placement,
            const std::vector<TileQuad>& quads, bool isOpaque);
  void release();

  /// What textures beside those of the tiles take.
  [[nodiscard]] int64_t textureBytes() const { return m_tableBytes; }

 private:
  struct Objects;

  void fillTable(const PicturePlacement& placement);
  void drawQuads(QOpenGLShaderProgram& program, const std::vector<TileQuad>& quads,
                 const PictureView& view, const PicturePlacement& placement);

  /// Null until drawn and after `release`.
  std::unique_ptr<Objects> m_objects;
  int64_t m_tableBytes = 0;
};

}  // namespace vantrel
