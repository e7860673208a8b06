#include "controls/device_pixels.h"

#include <gtest/gtest.h>

#include <QImage>
#include <QPainter>

namespace vantrel {
namespace {

TEST(DevicePixels, PutEdgesOnWholeOnes) {
  QImage image(400, 300, QImage::Format_RGB32);
  image.setDevicePixelRatio(1.5);
  image.fill(Qt::black);
  QPainter painter(&image);
  painter.translate(101, 11);
  const QRect rect = toDevicePixels(painter, QRectF(1, 0, 85, 62));
  EXPECT_EQ(rect, QRect(153, 17, 128, 93));
  painter.setRenderHint(QPainter::Antialiasing);
  painter.fillRect(rect, Qt::white);
  painter.end();
  EXPECT_EQ(image.pixelColor(152, 60), QColor(Qt::black));
  EXPECT_EQ(image.pixelColor(153, 60), QColor(Qt::white));
  EXPECT_EQ(image.pixelColor(280, 60), QColor(Qt::white));
  EXPECT_EQ(image.pixelColor(281, 60), QColor(Qt::black));
  EXPECT_EQ(image.pixelColor(200, 16), QColor(Qt::black));
  EXPECT_EQ(image.pixelColor(200, 17), QColor(Qt::white));
}

TEST(DevicePixels, AreTheUnitsWithoutAScale) {
  QImage image(40, 30, QImage::Format_RGB32);
  QPainter painter(&image);
  EXPECT_EQ(toDevicePixels(painter, QRectF(3, 4, 5, 6)), QRect(3, 4, 5, 6));
  EXPECT_TRUE(painter.deviceTransform().isIdentity());
}

}  // namespace
}  // namespace vantrel
