#include "controls/symbol_icon.h"

#include <gtest/gtest.h>

#include <QImage>
#include <QPainter>
#include <QPalette>

namespace vantrel {
namespace {

/// How thick the stroke of a minus of `side` is in its middle, in points.
double strokeOf(int side, double scale) {
  const QIcon icon = symbolIcon(QStringLiteral("minus"), QPalette(Qt::white));
  const QImage image = icon.pixmap(QSize(side, side), scale).toImage();
  double ink = 0;
  for (int y = 0; y < image.height(); ++y)
    ink += image.pixelColor(image.width() / 2, y).alphaF();
  return ink / scale;
}

TEST(SymbolIcon, HasStrokesOfOneWeightWhateverItsSize) {
  constexpr double kWeight = 1.75 * 18 / 24, kRounding = 0.06;
  for (const double scale : {1.0, 2.0}) {
    for (const int side : {11, 14, 16, 18})
      EXPECT_NEAR(strokeOf(side, scale), kWeight, kRounding) << side << " at " << scale;
  }
}

}  // namespace
}  // namespace vantrel
