#pragma once

#include <QRectF>
#include <QTransform>
#include <array>

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

/// A handle lies wholly outside `selection`, touching it: 12 × 12 at the corners, 24 × 8 or 8 × 24
/// in the middle of the edges.
[[nodiscard]] QRectF handleRect(CropHandle handle, const QRectF& selection);

/// `rect`, in logical coordinates, moved and sized so that its edges lie on whole device pixels and
/// it keeps at least one; `toDevice` scales and translates.
[[nodiscard]] QRectF snappedToDevice(const QRectF& rect, const QTransform& toDevice);

}  // namespace CropOverlayGeometry
}  // namespace vantrel
