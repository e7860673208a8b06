#pragma once

#include <QRect>

class QColor;
class QPainter;

namespace vantrel {

/// Makes a device pixel the painter's unit, which its scale need not be, and returns `rect`, given
/// in the units before, with each edge on the nearest whole device pixel. The painter neither turns
/// nor mirrors.
[[nodiscard]] QRect toDevicePixels(QPainter& painter, const QRectF& rect);

/// How many device pixels wide a line is drawn that is to be `width` of the painter's units: whole
/// ones, at least one. Lines of one width then look alike wherever they lie.
[[nodiscard]] int deviceLineWidth(const QPainter& painter, double width);

/// Draws a line between areas: the left or the upper part of `strip`, which is one unit thick, as
/// thick as deviceLineWidth says.
void drawHairline(QPainter& painter, const QRect& strip, const QColor& color);

}  // namespace vantrel
