#include "canvas/crop_focus_ring.h"

namespace vantrel {
namespace {

/// In points.
constexpr double kRingWidth = 2;
/// Of the line between the ring and the handles that it surrounds.
constexpr double kEdgeWidth = 1;

QRectF grown(const QRectF& rect, double by) {
  return rect.adjusted(-by, -by, by, by);
}

/// What the crop's handles take up.
QRectF handlesBounds(const QRectF& selection) {
  return CropOverlayGeometry::handleRect(CropHandle::topLeft, selection)
      .united(CropOverlayGeometry::handleRect(CropHandle::bottomRight, selection));
}

/// What lies between the two, in four parts.
void addFrame(std::vector<ColoredRectangle>& frames, const QRectF& inner, const QRectF& outer,
              const QColor& color) {
  const double width = outer.width();
  frames.push_back({QRectF(outer.topLeft(), QPointF(outer.right(), inner.top())), color});
  frames.push_back(
      {QRectF(outer.left(), inner.bottom(), width, outer.bottom() - inner.bottom()), color});
  frames.push_back(
      {QRectF(outer.left(), inner.top(), inner.left() - outer.left(), inner.height()), color});
  frames.push_back(
      {QRectF(inner.right(), inner.top(), outer.right() - inner.right(), inner.height()), color});
}

}  // namespace

std::vector<ColoredRectangle> cropFocusRing(const std::optional<CropHandle>& handle,
                                            const QRectF& selection, const FocusColors& colors,
                                            double devicePixelRatio) {
  const auto onDevice = [devicePixelRatio](const QRectF& rect) {
    return CropOverlayGeometry::snappedToDevice(rect, devicePixelRatio);
  };
  const QRectF body =
      handle ? CropOverlayGeometry::handleRect(*handle, selection) : handlesBounds(selection);
  // A handle is an edge by itself.
  const double edge = handle ? 0 : kEdgeWidth;
  const QRectF inner = onDevice(grown(body, edge));
  std::vector<ColoredRectangle> frames;
  if (!handle) addFrame(frames, onDevice(body), inner, colors.edge);
  addFrame(frames, inner, onDevice(grown(body, edge + kRingWidth)), colors.ring);
  return frames;
}

}  // namespace vantrel
