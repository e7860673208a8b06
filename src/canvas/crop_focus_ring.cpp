#include "canvas/crop_focus_ring.h"

namespace vantrel {
namespace {

/// In points.
constexpr double kRingWidth = 2;
/// Keeps the ring off the handles that it surrounds, and short of the fields beyond them.
constexpr double kCropGap = 1;

QRectF grown(const QRectF& rect, double by) {
  return rect.adjusted(-by, -by, by, by);
}

/// What the crop's handles take up.
QRectF handlesBounds(const QRectF& selection) {
  return CropOverlayGeometry::handleRect(CropHandle::topLeft, selection)
      .united(CropOverlayGeometry::handleRect(CropHandle::bottomRight, selection));
}

}  // namespace

std::vector<ColoredRectangle> cropFocusRing(const std::optional<CropHandle>& handle,
                                            const QRectF& selection, const QColor& color,
                                            double devicePixelRatio) {
  const QRectF ringed = handle ? CropOverlayGeometry::handleRect(*handle, selection)
                               : grown(handlesBounds(selection), kCropGap);
  const QRectF inner = CropOverlayGeometry::snappedToDevice(ringed, devicePixelRatio);
  const QRectF outer =
      CropOverlayGeometry::snappedToDevice(grown(ringed, kRingWidth), devicePixelRatio);
  const double width = outer.width();
  return {
      {QRectF(outer.topLeft(), QPointF(outer.right(), inner.top())), color},
      {QRectF(outer.left(), inner.bottom(), width, outer.bottom() - inner.bottom()), color},
      {QRectF(outer.left(), inner.top(), inner.left() - outer.left(), inner.height()), color},
      {QRectF(inner.right(), inner.top(), outer.right() - inner.right(), inner.height()), color}};
}

}  // namespace vantrel
