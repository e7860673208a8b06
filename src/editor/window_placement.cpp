#include "editor/window_placement.h"

#include <algorithm>

namespace vantrel::WindowPlacement {
namespace {

// Points.
constexpr QPoint kStep{28, 28};
/// From the upper left corner to the pointer that holds the window.
constexpr QPoint kGrip{80, 12};

}  // namespace

QPoint cascaded(const QRect& front, const QSize& size, const QRect& room) {
  const QRect next(front.topLeft() + kStep, size);
  return room.contains(next) ? next.topLeft() : room.topLeft();
}

QPoint under(const QPoint& pointer, const QSize& size, const QRect& room) {
  const QPoint wish = pointer - kGrip;
  const int right = std::max(room.left(), room.left() + room.width() - size.width());
  const int bottom = std::max(room.top(), room.top() + room.height() - size.height());
  return {std::clamp(wish.x(), room.left(), right), std::clamp(wish.y(), room.top(), bottom)};
}

}  // namespace vantrel::WindowPlacement
