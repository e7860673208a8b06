#include "canvas/canvas_projection.h"

#include <algorithm>
#include <cmath>

namespace vantrel {
namespace {

double fittedScale(double source, double room) {
  return std::max(1.0, room) / std::max(1.0, source);
}

bool isUsable(const QSizeF& size) {
  return std::isfinite(size.width()) && std::isfinite(size.height()) && size.width() > 0 &&
         size.height() > 0;
}

}  // namespace

CanvasProjection CanvasProjection::fitted(const QSizeF& source, const QSizeF& view,
                                          const QMarginsF& insets) {
  const double width = view.width() - insets.left() - insets.right();
  const double height = view.height() - insets.top() - insets.bottom();
  CanvasProjection projection;
  if (isUsable(source)) {
    projection.m_sourceSize = source;
    projection.m_scale = std::min(fittedScale(source.width(), width - kFreeWidth),
                                  fittedScale(source.height(), height - kFreeHeight));
  }
  const QSizeF shown = projection.m_sourceSize * projection.m_scale;
  projection.m_origin = {insets.left() + (width - shown.width()) / 2,
                         insets.top() + (height - shown.height()) / 2};
  return projection;
}

}  // namespace vantrel
