#include "canvas/crop_cursors.h"

#include <QPainter>
#include <QPainterPath>
#include <QPen>
#include <QPixmap>
#include <QPolygonF>
#include <cmath>
#include <map>

namespace vantrel::CropCursors {
namespace {

/// In points, and square.
constexpr int kSize = 28;
constexpr double kMiddle = 14;
/// Where an arm begins and ends, and the depth and half the width of its head.
constexpr double kNear = 3;
constexpr double kFar = 25;
constexpr double kHead = 4;

QPainterPath fourWayArrow() {
  QPainterPath path;
  path.addPolygon(QPolygonF{{kMiddle, kNear}, {kMiddle, kFar}});
  path.addPolygon(QPolygonF{{kNear, kMiddle}, {kFar, kMiddle}});
  for (const double tip : {kNear, kFar}) {
    const double base = tip < kMiddle ? tip + kHead : tip - kHead;
    path.addPolygon(QPolygonF{{kMiddle - kHead, base}, {kMiddle, tip}, {kMiddle + kHead, base}});
    path.addPolygon(QPolygonF{{base, kMiddle - kHead}, {tip, kMiddle}, {base, kMiddle + kHead}});
  }
  return path;
}

}  // namespace

QImage moveImage(double devicePixelRatio) {
  const int pixels = static_cast<int>(std::ceil(kSize * devicePixelRatio));
  QImage image(pixels, pixels, QImage::Format_ARGB32_Premultiplied);
  image.setDevicePixelRatio(devicePixelRatio);
  image.fill(Qt::transparent);
  QPainter painter(&image);
  painter.setRenderHint(QPainter::Antialiasing);
  const QPainterPath arrow = fourWayArrow();
  painter.strokePath(arrow, QPen(Qt::white, 4, Qt::SolidLine, Qt::FlatCap, Qt::RoundJoin));
  painter.strokePath(arrow, QPen(Qt::black, 2, Qt::SolidLine, Qt::FlatCap, Qt::RoundJoin));
  return image;
}

const QCursor& move(double devicePixelRatio) {
  static std::map<double, QCursor> cursors;
  const auto known = cursors.find(devicePixelRatio);
  if (known != cursors.end()) return known->second;
  const QPixmap pixmap = QPixmap::fromImage(moveImage(devicePixelRatio));
  const int middle = static_cast<int>(kMiddle);
  return cursors.try_emplace(devicePixelRatio, pixmap, middle, middle).first->second;
}

QCursor cursor(CropCursor kind, double devicePixelRatio) {
  switch (kind) {
    case CropCursor::arrow:
      return Qt::ArrowCursor;
    case CropCursor::move:
      return move(devicePixelRatio);
    case CropCursor::vertical:
    case CropCursor::top:
    case CropCursor::bottom:
      return Qt::SizeVerCursor;
    case CropCursor::horizontal:
    case CropCursor::left:
    case CropCursor::right:
      return Qt::SizeHorCursor;
    case CropCursor::topLeft:
    case CropCursor::bottomRight:
      return Qt::SizeFDiagCursor;
    case CropCursor::topRight:
    case CropCursor::bottomLeft:
      return Qt::SizeBDiagCursor;
  }
  return Qt::ArrowCursor;
}

}  // namespace vantrel::CropCursors
