#include "canvas/canvas_projection.h"

#include <cmath>

namespace vantrel {
namespace {

bool isUsable(const QSizeF& size) {
  return std::isfinite(size.width()) && std::isfinite(size.height()) && size.width() > 0 &&
         size.height() > 0;
}

bool isUsable(const QPointF& point) {
  return std::isfinite(point.x()) && std::isfinite(point.y());
}

}  // namespace

CanvasProjection::CanvasProjection(const QSizeF& source, const QPointF& origin, double scale) {
  if (isUsable(source)) m_sourceSize = source;
  if (isUsable(origin)) m_origin = origin;
  if (std::isfinite(scale) && scale > 0) m_scale = scale;
}

}  // namespace vantrel
