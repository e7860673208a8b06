#include "controls/plate.h"

#include <QPainter>

#include "controls/device_pixels.h"

namespace vantrel {

void drawPlate(QPainter* painter, const QRect& rect, double radius, const QColor& fill,
               const QColor& border, double width) {
  painter->save();
  painter->setRenderHint(QPainter::Antialiasing);
  const double scale = painter->deviceTransform().m11();
  const double line = width > 0 ? deviceLineWidth(*painter, width) : 0;
  const QRectF plate = toDevicePixels(*painter, rect);
  painter->setPen(line > 0 ? QPen(border, line) : QPen(Qt::NoPen));
  painter->setBrush(fill);
  const double inset = line / 2, corner = radius * scale - inset;
  painter->drawRoundedRect(plate.adjusted(inset, inset, -inset, -inset), corner, corner);
  painter->restore();
}

}  // namespace vantrel
