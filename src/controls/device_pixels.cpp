#include "controls/device_pixels.h"

#include <QPainter>
#include <QTransform>

namespace vantrel {

QRect toDevicePixels(QPainter& painter, const QRectF& rect) {
  const QTransform toDevice = painter.deviceTransform();
  const QRectF mapped = toDevice.mapRect(rect);
  const QPoint topLeft = mapped.topLeft().toPoint();
  const QPoint end = mapped.bottomRight().toPoint();
  painter.setWorldTransform(toDevice.inverted() * painter.worldTransform());
  return {topLeft, QSize(end.x() - topLeft.x(), end.y() - topLeft.y())};
}

}  // namespace vantrel
