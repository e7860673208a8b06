#include "platform/gl/first_drawing.h"

#include <QRectF>
#include <vector>

#include "platform/gl/picture_content.h"
#include "platform/gl/picture_placement.h"
#include "platform/gl/rectangle_painter.h"
#include "platform/gl/shared_program.h"
#include "platform/gl/tile_painter.h"

namespace vantrel {
namespace {

/// Of the pictures. No power of two, for which renderers may have a program of its own.
constexpr int kSide = 5;
constexpr double kMagnification = 2, kReduction = 0.6;
/// BT.2020 with PQ, in code points of ITU-T H.273.
constexpr ColorTags kHdr{9, 16, 9};

PictureView viewOf(const QSize& target, double scale) {
  return {target, {0, 0, kSide * scale, kSide * scale}, QRectF(QPointF(0, 0), target), 1};
}

void drawTile(TilePainter& painter, const PictureView& view) {
  const auto placement = PicturePlacement::of(view, kSide, kSide);
  if (!placement) return;
  const TilePixels pixels{kSide, kSide, std::vector<uint8_t>(size_t{4} * kSide * kSide)};
  const PixelRect all{0, 0, kSide, kSide};
  const uint32_t texture = TilePainter::upload(pixels);
  painter.draw(view, *placement, {{texture, all, all, 1}}, true);
  TilePainter::remove({texture});
}

/// With a chroma sample for two pixels each way.
std::shared_ptr<const VideoPicture> makeVideoPicture(int depth, const ColorTags& color) {
  const int bytes = depth > 8 ? 2 : 1;
  const int chromaSide = (kSide + 1) / 2;
  const auto samples = std::make_shared<std::vector<uint16_t>>(kSide * kSide);
  auto picture = std::make_shared<VideoPicture>();
  const auto* const data = reinterpret_cast<const uint8_t*>(samples->data());
  picture->planes.fill({data, ptrdiff_t{kSide} * bytes, chromaSide, chromaSide, bytes});
  picture->planes[0].width = picture->planes[0].height = kSide;
  picture->chromaShiftX = picture->chromaShiftY = 1;
  picture->depth = depth;
  picture->color = color.completed();
  picture->naturalSize = {kSide, kSide};
  picture->owner = samples;
  return picture;
}

}  // namespace

std::vector<std::shared_ptr<QOpenGLShaderProgram>> drawOneOfEach(const QSize& target) {
  TilePainter tiles;
  RectanglePainter rectangles;
  const auto video = makeVideoContent(makeVideoPicture(8, {}));
  const auto hdrVideo = makeVideoContent(makeVideoPicture(10, kHdr));
  for (const double scale : {kReduction, kMagnification}) {
    const PictureView view = viewOf(target, scale);
    drawTile(tiles, view);
    video->draw(view);
    hdrVideo->draw(view);
  }
  rectangles.draw(target, {{QRectF(0, 0, 1, 1), Qt::white}}, 1);

  auto programs = sharedPrograms();
  tiles.release();
  video->release();
  hdrVideo->release();
  rectangles.release();
  return programs;
}

}  // namespace vantrel
