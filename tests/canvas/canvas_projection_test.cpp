#include "canvas/canvas_projection.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace vantrel {
namespace {

TEST(CanvasProjection, MapsThereAndBack) {
  const CanvasProjection projection({4001, 2999}, {-13.5, 71}, 0.1375);
  for (const QPointF point : {QPointF(0, 0), QPointF(4001, 2999), QPointF(17.25, 1204.5)}) {
    const QPointF back = projection.toSource(projection.toView(point));
    EXPECT_NEAR(back.x(), point.x(), 1e-9);
    EXPECT_NEAR(back.y(), point.y(), 1e-9);
  }
}

TEST(CanvasProjection, MapsTheWholeSourceToTheImageFrame) {
  const CanvasProjection projection({300, 200}, {10, 20}, 2);
  EXPECT_EQ(projection.imageFrame(), QRectF(10, 20, 600, 400));
  EXPECT_EQ(projection.toView(QRectF(0, 0, 300, 200)), projection.imageFrame());
  EXPECT_EQ(projection.toView(QRectF(30, 20, 60, 40)).size(), QSizeF(120, 80));
}

TEST(CanvasProjection, IsEmptyForASizeWithoutPixels) {
  const double infinite = std::numeric_limits<double>::infinity();
  const double none = std::numeric_limits<double>::quiet_NaN();
  for (const QSizeF size : {QSizeF(0, 0), QSizeF(10, 0), QSizeF(-1, 5), QSizeF(infinite, 5),
                            QSizeF(none, none), QSizeF()}) {
    const CanvasProjection projection(size, {400, 300}, 2);
    EXPECT_TRUE(projection.isEmpty());
    EXPECT_EQ(projection.imageFrame(), QRectF(400, 300, 0, 0));
  }
  EXPECT_TRUE(CanvasProjection().isEmpty());
}

TEST(CanvasProjection, KeepsAUsableScaleAndOrigin) {
  for (const double scale : {0.0, -1.0, std::numeric_limits<double>::quiet_NaN(),
                             std::numeric_limits<double>::infinity()}) {
    EXPECT_DOUBLE_EQ(CanvasProjection({10, 10}, {0, 0}, scale).scale(), 1);
  }
  const double none = std::numeric_limits<double>::quiet_NaN();
  EXPECT_EQ(CanvasProjection({10, 10}, {none, 3}, 1).imageFrame().topLeft(), QPointF(0, 0));
}

}  // namespace
}  // namespace vantrel
