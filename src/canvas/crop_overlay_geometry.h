#pragma once

#include <QRectF>
#include <array>
#include <vector>

#include "canvas/canvas_projection.h"
#include "model/crop_margins.h"
#include "platform/gl/rectangle_painter.h"

namespace vantrel {

/// The eight handles around a crop, in the order of drawing and of hit testing.
enum class CropHandle { topLeft, top, topRight, right, bottomRight, bottom, bottomLeft, left };

inline constexpr std::array kCropHandles{
    CropHandle::topLeft,     CropHandle::top,    CropHandle::topRight,   CropHandle::right,
    CropHandle::bottomRight, CropHandle::bottom, CropHandle::bottomLeft, CropHandle::left};

/// What is drawn around a crop, in points of the view; it does not grow with the zoom.
namespace CropOverlayGeometry {

/// Width of the border, which lies wholly outside the selection.
inline constexpr double kBorderWidth = 2;

/// The margins that a handle moves, in the order in which they are set.
[[nodiscard]] const std::vector<CropMargins::Edge>& edgesOf(CropHandle handle);

/// A handle lies wholly outside `selection`, touching it: 12 × 12 at the corners, 24 × 8 or 8 × 24
/// in the middle of the edges.
[[nodiscard]] QRectF handleRect(CropHandle handle, const QRectF& selection);

/// The zone along a whole edge of `selection` that takes hold of it: 6 points outwards, 3 inwards.
[[nodiscard]] QRectF edgeBand(CropMargins::Edge edge, const QRectF& selection);

/// `rect`, in points, in device pixels with its edges on whole ones, and at least one wide and
/// high. A pixel is in it when its centre is; one on the left or top edge is, on the right or
/// bottom edge is not. So an edge on half a pixel goes to the left or up wherever the origin is,
/// and an edge between source pixels goes where nearest sampling changes from one to the next.
[[nodiscard]] QRectF snappedToDevice(const QRectF& rect, double devicePixelRatio);

/// The dimming, the border and the handles around `crop` in device pixels, in the order of drawing;
/// nothing lies inside the selection. Empty without a source.
[[nodiscard]] std::vector<ColoredRectangle> rectangles(const CanvasProjection& projection,
                                                       const CropMargins& crop,
                                                       double devicePixelRatio);

}  // namespace CropOverlayGeometry
}  // namespace vantrel
