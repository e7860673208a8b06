#pragma once

class QColor;
class QPainter;
class QRect;

namespace vantrel {

/// A filled rounded rectangle with a border inside its edge, if `width` is not 0. Sizes in points;
/// it lies on whole device pixels.
void drawPlate(QPainter* painter, const QRect& rect, double radius, const QColor& fill,
               const QColor& border, double width);

}  // namespace vantrel
