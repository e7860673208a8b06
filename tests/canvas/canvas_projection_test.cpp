#include "canvas/canvas_projection.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace vantrel {
namespace {

constexpr QMarginsF kInsets{20, 20, 20, 20};

TEST(CanvasProjection, FitsIntoTheRoomThatTheFieldsLeave) {
  const auto projection = CanvasProjection::fitted({1920, 1080}, {1240, 772}, {});
  EXPECT_DOUBLE_EQ(projection.scale(), 1000.0 / 1920);
}

TEST(CanvasProjection, FitsTheTighterSide) {
  const auto projection = CanvasProjection::fitted({4032, 3024}, {960, 727}, kInsets);
  EXPECT_DOUBLE_EQ(projection.scale(), (727.0 - 40 - 192) / 3024);
}

TEST(CanvasProjection, CentresTheSourceInsideTheInsets) {
  const auto projection = CanvasProjection::fitted({100, 50}, {1000, 800}, {10, 20, 30, 60});
  const QRectF frame = projection.imageFrame();
  EXPECT_DOUBLE_EQ(frame.left() - 10, 1000 - 30 - frame.right());
  EXPECT_NEAR(frame.top() - 20, 800 - 60 - frame.bottom(), 1e-9);
  EXPECT_DOUBLE_EQ(frame.width() / frame.height(), 2);
}

TEST(CanvasProjection, MapsThereAndBack) {
  const auto projection = CanvasProjection::fitted({4001, 2999}, {913, 641}, kInsets);
  for (const QPointF point : {QPointF(0, 0), QPointF(4001, 2999), QPointF(17.25, 1204.5)}) {
    const QPointF back = projection.toSource(projection.toView(point));
    EXPECT_NEAR(back.x(), point.x(), 1e-9);
    EXPECT_NEAR(back.y(), point.y(), 1e-9);
  }
}

TEST(CanvasProjection, MapsTheWholeSourceToTheImageFrame) {
  const auto projection = CanvasProjection::fitted({300, 200}, {800, 600}, kInsets);
  EXPECT_EQ(projection.toView(QRectF(0, 0, 300, 200)), projection.imageFrame());
  EXPECT_EQ(projection.toView(QRectF(30, 20, 60, 40)).size(), QSizeF(60, 40) * projection.scale());
}

TEST(CanvasProjection, HasAPositiveScaleInAViewWithoutRoom) {
  for (const QSizeF view : {QSizeF(0, 0), QSizeF(100, 50), QSizeF(-5, -5)}) {
    const auto projection = CanvasProjection::fitted({4000, 3000}, view, kInsets);
    EXPECT_DOUBLE_EQ(projection.scale(), 1.0 / 4000);
    EXPECT_TRUE(std::isfinite(projection.imageFrame().x()));
  }
}

TEST(CanvasProjection, IsEmptyForASizeWithoutPixels) {
  const double infinite = std::numeric_limits<double>::infinity();
  const double none = std::numeric_limits<double>::quiet_NaN();
  for (const QSizeF size : {QSizeF(0, 0), QSizeF(10, 0), QSizeF(-1, 5), QSizeF(infinite, 5),
                            QSizeF(none, none), QSizeF()}) {
    const auto projection = CanvasProjection::fitted(size, {800, 600}, kInsets);
    EXPECT_TRUE(projection.isEmpty());
    EXPECT_GT(projection.scale(), 0);
    EXPECT_EQ(projection.imageFrame().size(), QSizeF(0, 0));
    EXPECT_EQ(projection.imageFrame().topLeft(), QPointF(400, 300));
  }
  EXPECT_TRUE(CanvasProjection().isEmpty());
}

TEST(CanvasProjection, EnlargesASmallSource) {
  const auto projection = CanvasProjection::fitted({32, 32}, {1000, 1000}, kInsets);
  EXPECT_DOUBLE_EQ(projection.scale(), 720.0 / 32);
}

}  // namespace
}  // namespace vantrel
