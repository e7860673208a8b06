#include "canvas/crop_overlay_geometry.h"

#include <algorithm>
#include <cmath>

#include "canvas/crop_appearance.h"

namespace vantrel::CropOverlayGeometry {
namespace {

using Edge = CropMargins::Edge;

/// Sizes of the handles, in points or in device pixels.
struct HandleSizes {
  double corner = 12, length = 24, depth = 8;
};

constexpr double kBandOutside = 6;
constexpr double kBandThickness = 9;

QRectF placed(CropHandle handle, const QRectF& selection, const HandleSizes& sizes) {
  const auto& [corner, length, depth] = sizes;
  const double left = selection.left();
  const double top = selection.top();
  const double right = selection.right();
  const double bottom = selection.bottom();
  const double midX = selection.center().x() - length / 2;
  const double midY = selection.center().y() - length / 2;
  switch (handle) {
    case CropHandle::topLeft:
      return {left - corner, top - corner, corner, corner};
    case CropHandle::top:
      return {midX, top - depth, length, depth};
    case CropHandle::topRight:
      return {right, top - corner, corner, corner};
    case CropHandle::right:
      return {right, midY, depth, length};
    case CropHandle::bottomRight:
      return {right, bottom, corner, corner};
    case CropHandle::bottom:
      return {midX, bottom, length, depth};
    case CropHandle::bottomLeft:
      return {left - corner, bottom, corner, corner};
    case CropHandle::left:
      return {left - depth, midY, depth, length};
  }
  return {};
}

/// A length in points as whole device pixels.
double wholePixels(double points, double devicePixelRatio) {
  return std::max(1.0, std::round(points * devicePixelRatio));
}

double snappedEdge(double edge) {
  // A half that its arithmetic has moved a little is still a half.
  constexpr double kTolerance = 1.0 / 256;
  return std::ceil(edge - 0.5 - kTolerance);
}

struct Span {
  double low, high;
};

Span snapped(double low, double high) {
  const Span span{snappedEdge(low), snappedEdge(high)};
  if (span.low < span.high) return span;
  const double pixel = std::floor((low + high) / 2);
  return {pixel, pixel + 1};
}

void appendFilled(std::vector<ColoredRectangle>& rectangles, double left, double top, double right,
                  double bottom, const QColor& color) {
  if (left < right && top < bottom) {
    rectangles.push_back({{left, top, right - left, bottom - top}, color});
  }
}

/// Fills `outer` but for `inner`, which lies within it, with rectangles that do not overlap.
void appendSurround(std::vector<ColoredRectangle>& rectangles, const QRectF& outer,
                    const QRectF& inner, const QColor& color) {
  const auto append = [&](double left, double top, double right, double bottom) {
    appendFilled(rectangles, left, top, right, bottom, color);
  };
  append(outer.left(), outer.top(), outer.right(), inner.top());
  append(outer.left(), inner.bottom(), outer.right(), outer.bottom());
  append(outer.left(), inner.top(), inner.left(), inner.bottom());
  append(inner.right(), inner.top(), outer.right(), inner.bottom());
}

void appendDimming(std::vector<ColoredRectangle>& rectangles, const QRectF& frame,
                   const QRectF& selection) {
  const QRectF kept = selection.intersected(frame);
  if (kept.isEmpty()) {
    rectangles.push_back({frame, CropAppearance::excludedArea()});
  } else {
    appendSurround(rectangles, frame, kept, CropAppearance::excludedArea());
  }
}

void appendHandles(std::vector<ColoredRectangle>& rectangles, const QRectF& selection,
                   double devicePixelRatio) {
  const HandleSizes points;
  const HandleSizes pixels{wholePixels(points.corner, devicePixelRatio),
                           wholePixels(points.length, devicePixelRatio),
                           wholePixels(points.depth, devicePixelRatio)};
  for (const CropHandle handle : kCropHandles) {
    QRectF rect = placed(handle, selection, pixels);
    // In the middle of an edge it may begin on half a pixel.
    rect.moveTo(std::floor(rect.left()), std::floor(rect.top()));
    rectangles.push_back({rect, CropAppearance::cropHandles()});
  }
}

}  // namespace

const std::vector<CropMargins::Edge>& edgesOf(CropHandle handle) {
  static const std::array<std::vector<Edge>, kCropHandles.size()> kEdges{
      {{Edge::top, Edge::left},
       {Edge::top},
       {Edge::top, Edge::right},
       {Edge::right},
       {Edge::bottom, Edge::right},
       {Edge::bottom},
       {Edge::bottom, Edge::left},
       {Edge::left}}};
  return kEdges.at(static_cast<size_t>(handle));
}

QRectF handleRect(CropHandle handle, const QRectF& selection) {
  return placed(handle, selection, HandleSizes{});
}

QRectF edgeBand(CropMargins::Edge edge, const QRectF& selection) {
  constexpr double kInside = kBandThickness - kBandOutside;
  switch (edge) {
    case Edge::left:
      return {selection.left() - kBandOutside, selection.top(), kBandThickness, selection.height()};
    case Edge::top:
      return {selection.left(), selection.top() - kBandOutside, selection.width(), kBandThickness};
    case Edge::right:
      return {selection.right() - kInside, selection.top(), kBandThickness, selection.height()};
    case Edge::bottom:
      return {selection.left(), selection.bottom() - kInside, selection.width(), kBandThickness};
  }
  return {};
}

QRectF snappedToDevice(const QRectF& rect, double devicePixelRatio) {
  const Span x = snapped(rect.left() * devicePixelRatio, rect.right() * devicePixelRatio);
  const Span y = snapped(rect.top() * devicePixelRatio, rect.bottom() * devicePixelRatio);
  return {x.low, y.low, x.high - x.low, y.high - y.low};
}

std::vector<ColoredRectangle> rectangles(const CanvasProjection& projection,
                                         const CropMargins& crop, double devicePixelRatio) {
  if (projection.isEmpty() || !std::isfinite(devicePixelRatio) || devicePixelRatio <= 0) return {};
  const QRectF points = projection.toView(crop.rectangle(projection.sourceSize()));
  const QRectF selection = snappedToDevice(points, devicePixelRatio);
  const double border = wholePixels(kBorderWidth, devicePixelRatio);

  std::vector<ColoredRectangle> result;
  result.reserve(kCropHandles.size() + 8);
  appendDimming(result, snappedToDevice(projection.imageFrame(), devicePixelRatio), selection);
  appendSurround(result, selection.adjusted(-border, -border, border, border), selection,
                 CropAppearance::cropBorder());
  appendHandles(result, selection, devicePixelRatio);
  return result;
}

}  // namespace vantrel::CropOverlayGeometry
