#include "canvas/crop_cursors.h"

#include <gtest/gtest.h>

#include <QPainter>
#include <QPixmap>
#include <algorithm>
#include <array>
#include <cstdlib>
#include <map>

namespace vantrel {
namespace {

constexpr std::array kRatios{1.0, 1.25, 1.5, 2.0};

TEST(CropCursors, DrawsTheMoveCursorSharpAtEveryRatio) {
  for (const double ratio : kRatios) {
    const QImage image = CropCursors::moveImage(ratio);
    EXPECT_EQ(image.size(), QSize(28, 28) * ratio);
    EXPECT_EQ(image.devicePixelRatio(), ratio);
  }
  EXPECT_EQ(CropCursors::moveImage(1.1).size(), QSize(31, 31));
}

TEST(CropCursors, DrawsFourBlackArrowsWithAWhiteHalo) {
  const QImage image = CropCursors::moveImage(1);
  const QColor none(0, 0, 0, 0);
  for (const QPoint point : {QPoint(14, 14), QPoint(13, 8), QPoint(14, 20), QPoint(8, 13)}) {
    EXPECT_EQ(image.pixelColor(point), QColor(Qt::black)) << point.x() << ' ' << point.y();
  }
  // On both sides of the shafts, between head and middle.
  for (const QPoint point : {QPoint(12, 10), QPoint(15, 10), QPoint(10, 12), QPoint(10, 15),
                             QPoint(12, 18), QPoint(18, 15)}) {
    EXPECT_EQ(image.pixelColor(point), QColor(Qt::white)) << point.x() << ' ' << point.y();
  }
  for (const QPoint point : {QPoint(0, 0), QPoint(27, 0), QPoint(14, 0), QPoint(11, 10)}) {
    EXPECT_EQ(image.pixelColor(point), none) << point.x() << ' ' << point.y();
  }
}

/// The widest difference of a channel between two pictures as they look on grey.
int difference(const QImage& a, const QImage& b) {
  const auto onGrey = [](QImage image) {
    image.setDevicePixelRatio(1);
    QImage grey(image.size(), QImage::Format_RGB32);
    grey.fill(Qt::gray);
    QPainter(&grey).drawImage(0, 0, image);
    return grey;
  };
  const QImage first = onGrey(a);
  const QImage second = onGrey(b);
  int widest = first.size() == second.size() ? 0 : 255;
  for (int y = 0; widest < 255 && y < first.height(); ++y) {
    for (int x = 0; x < first.width(); ++x) {
      const int here = qRed(first.pixel(x, y)) - qRed(second.pixel(x, y));
      widest = std::max(widest, std::abs(here));
    }
  }
  return widest;
}

TEST(CropCursors, DrawsTheMoveCursorAlikeOnAllSides) {
  // Where the edges of strokes meet within a pixel, what they cover of it is not summed exactly.
  constexpr int kMost = 72;
  for (const double ratio : kRatios) {
    const QImage image = CropCursors::moveImage(ratio);
    EXPECT_LE(difference(image, image.mirrored(true, false)), kMost) << ratio;
    EXPECT_LE(difference(image, image.mirrored(false, true)), kMost) << ratio;
    EXPECT_LE(difference(image, image.transformed(QTransform().rotate(90))), kMost) << ratio;
  }
}

TEST(CropCursors, MakesTheMoveCursorOnceForEachRatio) {
  for (const double ratio : kRatios) {
    const QCursor& cursor = CropCursors::move(ratio);
    EXPECT_EQ(&CropCursors::move(ratio), &cursor);
    EXPECT_EQ(cursor.hotSpot(), QPoint(14, 14));
    EXPECT_EQ(cursor.pixmap().devicePixelRatio(), ratio);
    EXPECT_EQ(cursor.pixmap().size(), QSize(28, 28) * ratio);
  }
}

TEST(CropCursors, TakesTheOthersFromTheDesktop) {
  const std::map<CropCursor, Qt::CursorShape> shapes{
      {CropCursor::arrow, Qt::ArrowCursor},        {CropCursor::vertical, Qt::SizeVerCursor},
      {CropCursor::horizontal, Qt::SizeHorCursor}, {CropCursor::topLeft, Qt::SizeFDiagCursor},
      {CropCursor::top, Qt::SizeVerCursor},        {CropCursor::topRight, Qt::SizeBDiagCursor},
      {CropCursor::right, Qt::SizeHorCursor},      {CropCursor::bottomRight, Qt::SizeFDiagCursor},
      {CropCursor::bottom, Qt::SizeVerCursor},     {CropCursor::bottomLeft, Qt::SizeBDiagCursor},
      {CropCursor::left, Qt::SizeHorCursor}};
  for (const auto& [kind, shape] : shapes) {
    EXPECT_EQ(CropCursors::cursor(kind, 1.5).shape(), shape);
  }
  EXPECT_EQ(CropCursors::cursor(CropCursor::move, 1.5), CropCursors::move(1.5));
}

}  // namespace
}  // namespace vantrel
