#include "controls/device_pixels.h"

#include <QPainter>
#include <QTransform>
#include <algorithm>
#include <cmath>

namespace vantrel {

QRect toDevicePixels(QPainter& painter, const QRectF& rect) {
  const QTransform toDevice = painter.deviceTransform();
  const QRectF mapped = toDevice.mapRect(rect);
  const QPoint topLeft = mapped.topLeft().toPoint();
  const QPoint end = mapped.bottomRight().toPoint();
  painter.setWorldTransform(toDevice.inverted() * painter.worldTransform());
  return {topLeft, QSize(end.x() - topLeft.x(), end.y() - topLeft.y())};
}

int deviceLineWidth(const QPainter& painter, double width) {
  // Rather thin than thick, where it is between two.
  constexpr double kBias = 0.25;
  const double pixels = std::round(width * painter.deviceTransform().m11() - kBias);
  return std::max(1, static_cast<int>(pixels));
}

void drawHairline(QPainter& painter, const QRect& strip, const QColor& color) {
  painter.save();
  const int width = deviceLineWidth(painter, 1);
  QRect line = toDevicePixels(painter, strip);
  if (strip.width() > strip.height()) {
    line.setHeight(width);
  } else {
    line.setWidth(width);
  }
  painter.fillRect(line, color);
  painter.restore();
}

}  // namespace vantrel
