#include "canvas/crop_overlay_geometry.h"

#include <algorithm>
#include <cmath>

namespace vantrel::CropOverlayGeometry {
namespace {

constexpr double kCorner = 12;
constexpr double kEdgeLength = 24;
constexpr double kEdgeDepth = 8;

}  // namespace

QRectF handleRect(CropHandle handle, const QRectF& selection) {
  const double left = selection.left();
  const double top = selection.top();
  const double right = selection.right();
  const double bottom = selection.bottom();
  const double midX = selection.center().x() - kEdgeLength / 2;
  const double midY = selection.center().y() - kEdgeLength / 2;
  switch (handle) {
    case CropHandle::topLeft:
      return {left - kCorner, top - kCorner, kCorner, kCorner};
    case CropHandle::top:
      return {midX, top - kEdgeDepth, kEdgeLength, kEdgeDepth};
    case CropHandle::topRight:
      return {right, top - kCorner, kCorner, kCorner};
    case CropHandle::right:
      return {right, midY, kEdgeDepth, kEdgeLength};
    case CropHandle::bottomRight:
      return {right, bottom, kCorner, kCorner};
    case CropHandle::bottom:
      return {midX, bottom, kEdgeLength, kEdgeDepth};
    case CropHandle::bottomLeft:
      return {left - kCorner, bottom, kCorner, kCorner};
    case CropHandle::left:
      return {left - kEdgeDepth, midY, kEdgeDepth, kEdgeLength};
  }
  return {};
}

QRectF snappedToDevice(const QRectF& rect, double devicePixelRatio) {
  const double left = std::round(rect.left() * devicePixelRatio);
  const double top = std::round(rect.top() * devicePixelRatio);
  const double right = std::max(left + 1, std::round(rect.right() * devicePixelRatio));
  const double bottom = std::max(top + 1, std::round(rect.bottom() * devicePixelRatio));
  return {left, top, right - left, bottom - top};
}

}  // namespace vantrel::CropOverlayGeometry
