#include "controls/device_pixels.h"

#include <gtest/gtest.h>

#include <QImage>
#include <QPainter>
#include <algorithm>
#include <cmath>
#include <vector>

#include "controls/plate.h"

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

/// What a hairline across the middle of an image leaves in a line across it.
std::vector<QRgb> acrossHairline(double scale, int place, Qt::Orientation orientation) {
  constexpr int kSide = 40;
  const int side = static_cast<int>(std::ceil(kSide * scale));
  QImage image(side, side, QImage::Format_RGB32);
  image.setDevicePixelRatio(scale);
  image.fill(Qt::black);
  QPainter painter(&image);
  painter.setRenderHint(QPainter::Antialiasing);
  const bool isLevel = orientation == Qt::Horizontal;
  drawHairline(painter, isLevel ? QRect(0, place, kSide, 1) : QRect(place, 0, 1, kSide), Qt::white);
  painter.end();
  std::vector<QRgb> colors;
  for (int step = 0; step < side; ++step)
    colors.push_back(isLevel ? image.pixel(side / 2, step) : image.pixel(step, side / 2));
  return colors;
}

TEST(DevicePixels, HoldAHairlineOfOneThicknessWhereverItLies) {
  const struct {
    double scale;
    long thickness;
  } cases[] = {{1, 1}, {1.25, 1}, {1.5, 1}, {1.75, 2}, {2, 2}, {3, 3}};
  for (const auto& [scale, thickness] : cases) {
    for (const Qt::Orientation orientation : {Qt::Horizontal, Qt::Vertical}) {
      for (int place = 3; place < 11; ++place) {
        const std::vector<QRgb> colors = acrossHairline(scale, place, orientation);
        EXPECT_EQ(std::count(colors.begin(), colors.end(), qRgb(255, 255, 255)), thickness)
            << scale << " at " << place;
        EXPECT_EQ(std::count(colors.begin(), colors.end(), qRgb(0, 0, 0)),
                  static_cast<long>(colors.size()) - thickness)
            << scale << " at " << place << ": nothing is half covered";
      }
    }
  }
}

TEST(DevicePixels, HoldTheBorderOfAPlate) {
  for (const double scale : {1.0, 1.25, 1.5, 2.0}) {
    for (int place = 3; place < 11; ++place) {
      QImage image(60, 60, QImage::Format_RGB32);
      image.setDevicePixelRatio(scale);
      image.fill(Qt::black);
      QPainter painter(&image);
      drawPlate(&painter, QRect(place, place, 15, 15), 0, Qt::blue, Qt::white, 1);
      painter.end();
      const int middle = static_cast<int>((place + 7) * scale);
      std::vector<QColor> colors;
      for (int x = 0; x <= middle; ++x) {
        const QColor color = image.pixelColor(x, middle);
        if (colors.empty() || colors.back() != color || color == QColor(Qt::white))
          colors.push_back(color);
      }
      std::vector<QColor> expected{Qt::black, Qt::white, Qt::blue};
      if (scale == 2) expected.insert(expected.begin() + 1, Qt::white);
      EXPECT_EQ(colors, expected) << scale << " at " << place;
    }
  }
}

TEST(DevicePixels, AreTheUnitsWithoutAScale) {
  QImage image(40, 30, QImage::Format_RGB32);
  QPainter painter(&image);
  EXPECT_EQ(toDevicePixels(painter, QRectF(3, 4, 5, 6)), QRect(3, 4, 5, 6));
  EXPECT_TRUE(painter.deviceTransform().isIdentity());
}

}  // namespace
}  // namespace vantrel
