#include "canvas/crop_overlay.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace vantrel {
namespace {

using CropOverlayGeometry::edgeBand;
using CropOverlayGeometry::edgesOf;
using CropOverlayGeometry::handleRect;
using Edge = CropMargins::Edge;

/// How far beyond a handle, in points, a press takes hold of it, and how far its cursor shows.
constexpr double kPressSlop = 4;
constexpr double kCursorSlop = 3;

constexpr int64_t kSmallStep = 1;
constexpr int64_t kLargeStep = 10;

/// In the order of hit testing.
constexpr std::array kBands{Edge::top, Edge::bottom, Edge::left, Edge::right};

/// Half open, unlike QRectF::contains.
bool contains(const QRectF& rect, const QPointF& point) {
  return point.x() >= rect.left() && point.x() < rect.right() && point.y() >= rect.top() &&
         point.y() < rect.bottom();
}

std::optional<CropHandle> handleAt(const QPointF& point, const QRectF& selection, double slop) {
  for (const CropHandle handle : kCropHandles) {
    const QRectF zone = handleRect(handle, selection).adjusted(-slop, -slop, slop, slop);
    if (contains(zone, point)) return handle;
  }
  return std::nullopt;
}

std::optional<Edge> bandAt(const QPointF& point, const QRectF& selection) {
  for (const Edge edge : kBands) {
    if (contains(edgeBand(edge, selection), point)) return edge;
  }
  return std::nullopt;
}

CropHandle handleOf(Edge edge) {
  constexpr std::array kHandles{CropHandle::left, CropHandle::top, CropHandle::right,
                                CropHandle::bottom};
  return kHandles.at(static_cast<size_t>(edge));
}

CropCursor cursorOf(CropHandle handle) {
  constexpr std::array kCursors{
      CropCursor::topLeft,     CropCursor::top,    CropCursor::topRight,   CropCursor::right,
      CropCursor::bottomRight, CropCursor::bottom, CropCursor::bottomLeft, CropCursor::left};
  return kCursors.at(static_cast<size_t>(handle));
}

/// Whole source pixels, to the right and downwards.
struct Movement {
  int64_t x = 0, y = 0;
};

Movement rounded(const QPointF& movement) {
  return {static_cast<int64_t>(std::round(movement.x())),
          static_cast<int64_t>(std::round(movement.y()))};
}

/// How much a movement of an edge adds to its margin.
int64_t growth(Edge edge, const Movement& movement) {
  switch (edge) {
    case Edge::left:
      return movement.x;
    case Edge::top:
      return movement.y;
    case Edge::right:
      return -movement.x;
    case Edge::bottom:
      return -movement.y;
  }
  return 0;
}

Movement towards(CropOverlay::Direction direction, int64_t distance) {
  switch (direction) {
    case CropOverlay::Direction::left:
      return {-distance, 0};
    case CropOverlay::Direction::right:
      return {distance, 0};
    case CropOverlay::Direction::up:
      return {0, -distance};
    case CropOverlay::Direction::down:
      return {0, distance};
  }
  return {};
}

}  // namespace

QRectF CropOverlay::selection() const {
  return m_projection.toView(m_crop.rectangle(sourceSize()));
}

std::optional<CropOverlay::Grip> CropOverlay::gripAt(const QPointF& point) const {
  if (!m_isEditingEnabled || m_projection.isEmpty()) return std::nullopt;
  const QRectF shown = selection();
  if (const auto handle = handleAt(point, shown, kPressSlop)) return Grip{handle};
  if (const auto edge = bandAt(point, shown)) return Grip{handleOf(*edge)};
  if (contains(shown, point)) return Grip{};
  return std::nullopt;
}

CropCursor CropOverlay::cursorAt(const QPointF& point) const {
  if (!m_isEditingEnabled || m_projection.isEmpty()) return CropCursor::arrow;
  const QRectF shown = selection();
  if (const auto handle = handleAt(point, shown, kCursorSlop)) return cursorOf(*handle);
  if (const auto edge = bandAt(point, shown)) {
    return edge == Edge::top || edge == Edge::bottom ? CropCursor::vertical
                                                     : CropCursor::horizontal;
  }
  return contains(shown, point) ? CropCursor::move : CropCursor::arrow;
}

void CropOverlay::setProjection(const CanvasProjection& projection) {
  if (m_grip && !m_projection.isEmpty() && !projection.isEmpty()) {
    m_dragOrigin = projection.toView(m_projection.toSource(m_dragOrigin));
  }
  m_projection = projection;
}

bool CropOverlay::press(const QPointF& point) {
  m_grip = gripAt(point);
  m_dragOrigin = point;
  m_dragCrop = m_crop;
  return m_grip.has_value();
}

std::optional<CropMargins> CropOverlay::drag(const QPointF& point, bool keepsRatio) {
  if (!m_grip || m_projection.isEmpty()) return std::nullopt;
  QPointF movement = (point - m_dragOrigin) / m_projection.scale();
  if (!std::isfinite(movement.x()) || !std::isfinite(movement.y())) return std::nullopt;
  // Farther than any source reaches, and exact in 64 bits either way.
  constexpr double kFarthest = 0x1p53;
  movement = {std::clamp(movement.x(), -kFarthest, kFarthest),
              std::clamp(movement.y(), -kFarthest, kFarthest)};
  if (m_grip->handle) {
    m_crop = resized(*m_grip->handle, movement, keepsRatio);
  } else {
    const auto [dx, dy] = rounded(movement);
    m_crop = m_dragCrop.translated(dx, dy);
  }
  return m_crop;
}

void CropOverlay::release() {
  m_grip.reset();
}

CropMargins CropOverlay::nudge(Direction direction, bool isLarge) {
  const auto [dx, dy] = towards(direction, isLarge ? kLargeStep : kSmallStep);
  m_crop = m_crop.translated(dx, dy);
  return m_crop;
}

CropMargins CropOverlay::nudge(CropHandle handle, Direction direction, bool isLarge) {
  if (m_projection.isEmpty()) return m_crop;
  // Whole pixel steps: CropMargins::set would take part of one back, or all of it.
  const int64_t wanted = isLarge ? kLargeStep : kSmallStep;
  const int64_t steps = (wanted + m_pixelStep - 1) / m_pixelStep;
  const Movement movement = towards(direction, steps * m_pixelStep);
  for (const Edge edge : edgesOf(handle)) {
    const int64_t added = growth(edge, movement);
    if (added != 0) m_crop.set(edge, m_crop[edge] + added, sourceSize(), m_pixelStep);
  }
  return m_crop;
}

CropMargins CropOverlay::resized(CropHandle handle, const QPointF& movement,
                                 bool keepsRatio) const {
  const auto& edges = edgesOf(handle);
  if (keepsRatio && edges.size() == 2) {
    return m_dragCrop.resizedKeepingRatio(movement.x(), movement.y(), edges, sourceSize(),
                                          m_pixelStep);
  }
  CropMargins next = m_dragCrop;
  const Movement whole = rounded(movement);
  for (const Edge edge : edges) {
    next.set(edge, m_dragCrop[edge] + growth(edge, whole), sourceSize(), m_pixelStep);
  }
  return next;
}

}  // namespace vantrel
