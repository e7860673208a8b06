#pragma once

#include <QRect>

/// Where windows of editors open: the upper left corner of a frame of `size` in the free part of a
/// screen, in points.
namespace vantrel::WindowPlacement {

/// Beside a window at `front`, a little lower and to the right, or at the upper left corner of
/// `room` where it would leave that.
[[nodiscard]] QPoint cascaded(const QRect& front, const QSize& size, const QRect& room);

/// With the upper edge at `pointer`, as if held there, but inside `room`.
[[nodiscard]] QPoint under(const QPoint& pointer, const QSize& size, const QRect& room);

}  // namespace vantrel::WindowPlacement
