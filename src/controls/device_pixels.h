#pragma once

#include <QRect>

class QPainter;

namespace vantrel {

/// Makes a device pixel the painter's unit, which its scale need not be, and returns `rect`, given
/// in the units before, with each edge on the nearest whole device pixel. The painter neither turns
/// nor mirrors.
[[nodiscard]] QRect toDevicePixels(QPainter& painter, const QRectF& rect);

}  // namespace vantrel
