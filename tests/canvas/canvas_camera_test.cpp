#include "canvas/canvas_camera.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>

namespace vantrel {
namespace {

constexpr double kNone = std::numeric_limits<double>::quiet_NaN();
constexpr double kInfinite = std::numeric_limits<double>::infinity();

CanvasCamera::Wish fitted(const QSizeF& source) {
  return {.sourceSize = source};
}

CanvasCamera::Wish zoomed(const QSizeF& source, double zoom) {
  return {.sourceSize = source, .zoom = zoom, .fit = false};
}

/// A camera with its first picture.
CanvasCamera cameraOf(const CanvasCamera::Wish& wish, const QSizeF& viewport, double ratio = 1) {
  CanvasCamera camera;
  camera.setDevicePixelRatio(ratio);
  camera.setViewport(viewport);
  camera.update(wish, true, false, 0);
  return camera;
}

double scaleOf(const CanvasCamera& camera) {
  return camera.imageFrame().width() / camera.wish().sourceSize.width();
}

/// What lies at a point of the viewport, as a fraction of the source.
QPointF focusAt(const CanvasCamera& camera, const QPointF& point) {
  const QRectF& frame = camera.imageFrame();
  const QPointF distance = camera.scrollOffset() + point - frame.topLeft();
  return {distance.x() / frame.width(), distance.y() / frame.height()};
}

void expectNear(const QPointF& point, const QPointF& expected, double tolerance = 1e-9) {
  EXPECT_NEAR(point.x(), expected.x(), tolerance);
  EXPECT_NEAR(point.y(), expected.y(), tolerance);
}

TEST(CanvasCamera, AddsAViewportOfFreeRoomAndCentresANewPicture) {
  const CanvasCamera camera = cameraOf(zoomed({1000, 500}, 1), {1000, 800});
  EXPECT_EQ(camera.documentSize(), QSizeF(2000, 1300));
  EXPECT_EQ(camera.imageFrame(), QRectF(500, 400, 1000, 500));
  EXPECT_EQ(camera.scrollOffset(), QPointF(500, 250));
  EXPECT_EQ(camera.anchor(), QPointF(500, 400));
  EXPECT_EQ(camera.projection().toView(QPointF(500, 250)), camera.anchor());
}

TEST(CanvasCamera, FitsWithRoomForTheFields) {
  CanvasCamera camera = cameraOf(fitted({1920, 1080}), {1240, 772}, 2);
  EXPECT_DOUBLE_EQ(camera.fittedScale(), 1000.0 / 1920);
  EXPECT_DOUBLE_EQ(scaleOf(camera), 1000.0 / 1920);
  EXPECT_DOUBLE_EQ(camera.takeFittedZoom().value(), 2000.0 / 1920);
  EXPECT_DOUBLE_EQ(camera.shownZoom(), 2000.0 / 1920);
  EXPECT_NEAR(camera.projection().imageFrame().left(), 120, 0.5);
}

TEST(CanvasCamera, FitsBetweenTheInsets) {
  CanvasCamera::Wish wish = fitted({1000, 1000});
  wish.insets = QMarginsF(10, 20, 30, 140);
  const CanvasCamera camera = cameraOf(wish, {1280, 852});
  EXPECT_EQ(camera.anchor(), QPointF(630, 366));
  EXPECT_DOUBLE_EQ(camera.fittedScale(), (852 - 160 - 192) / 1000.0);
  expectNear(camera.projection().imageFrame().center(), camera.anchor(), 0.5);
  EXPECT_DOUBLE_EQ(camera.projection().imageFrame().top(), 20 + 96);
}

TEST(CanvasCamera, ShowsAZoomInDevicePixels) {
  CanvasCamera camera = cameraOf(zoomed({300, 200}, 1), {800, 600}, 2);
  EXPECT_DOUBLE_EQ(scaleOf(camera), 0.5);
  EXPECT_DOUBLE_EQ(camera.projection().scale(), 0.5);
  camera.setDevicePixelRatio(1.25);
  EXPECT_DOUBLE_EQ(scaleOf(camera), 0.8);
  EXPECT_DOUBLE_EQ(camera.shownZoom(), 1);
}

TEST(CanvasCamera, KeepsTheFocusWhenTheDensityChanges) {
  CanvasCamera camera = cameraOf(zoomed({3000, 2000}, 1), {800, 600});
  camera.scrollTo({200, 1500});
  const QPointF focus = focusAt(camera, camera.anchor());
  camera.setDevicePixelRatio(1.5);
  expectNear(focusAt(camera, camera.anchor()), focus);
}

TEST(CanvasCamera, LeavesTheGeometryWithoutAViewport) {
  for (const QSizeF size : {QSizeF(0, 600), QSizeF(800, 0), QSizeF(-5, -5), QSizeF(),
                            QSizeF(kNone, 600), QSizeF(800, kInfinite)}) {
    CanvasCamera camera = cameraOf(fitted({640, 480}), size);
    EXPECT_TRUE(camera.imageFrame().isEmpty());
    EXPECT_EQ(camera.documentSize(), QSizeF(0, 0));
    EXPECT_EQ(camera.scrollOffset(), QPointF(0, 0));
    EXPECT_EQ(camera.shownZoom(), 0);
    EXPECT_TRUE(camera.projection().isEmpty());
    EXPECT_FALSE(camera.takeFittedZoom());
    EXPECT_FALSE(camera.zoomAround({1, 1}, 2));

    camera = cameraOf(zoomed({640, 480}, 1), {800, 600});
    const QRectF frame = camera.imageFrame();
    camera.setViewport(size);
    camera.scrollTo({0, 0});
    EXPECT_FALSE(camera.zoomAround({1, 1}, 2));
    EXPECT_EQ(camera.imageFrame(), frame);
    EXPECT_EQ(camera.scrollOffset(), QPointF(320, 240));
    camera.setViewport({800, 600});
    EXPECT_EQ(camera.imageFrame(), frame);
    EXPECT_EQ(camera.scrollOffset(), QPointF(320, 240));
  }
}

TEST(CanvasCamera, ShowsNothingForASourceWithoutPixels) {
  for (const QSizeF size : {QSizeF(0, 0), QSizeF(0, 10), QSizeF(-3, 10), QSizeF(kNone, 10),
                            QSizeF(kInfinite, 10), QSizeF(1e300, 1e300)}) {
    CanvasCamera camera = cameraOf(fitted(size), {800, 600});
    EXPECT_EQ(camera.imageFrame(), QRectF(400, 300, 0, 0));
    EXPECT_EQ(camera.documentSize(), camera.viewport());
    EXPECT_EQ(camera.shownZoom(), 0);
    EXPECT_FALSE(camera.takeFittedZoom());
    EXPECT_FALSE(camera.zoomAround({1, 1}, 2));
    EXPECT_TRUE(camera.wish().fit);

    CanvasCamera::Wish wish = fitted(size);
    wish.request = 1;
    camera.update(wish, false, false, 1);
    EXPECT_FALSE(camera.isMoving());
  }
}

TEST(CanvasCamera, ShowsSourcesOfAnyShape) {
  for (const QSizeF size : {QSizeF(1, 1), QSizeF(1, 5000), QSizeF(30'000, 100), QSizeF(1e9, 1)}) {
    CanvasCamera camera = cameraOf(fitted(size), {1240, 772});
    const QRectF frame = camera.projection().imageFrame();
    EXPECT_LE(frame.width(), 1000.0001);
    EXPECT_LE(frame.height(), 580.0001);
    expectNear(frame.center(), {620, 386}, 0.5);
    EXPECT_GT(camera.takeFittedZoom().value(), 0);
    EXPECT_TRUE(camera.zoomAround({620, 386}, 1e9));
    EXPECT_DOUBLE_EQ(camera.shownZoom(), 10);
    EXPECT_EQ(camera.documentSize().width(), size.width() * 10 + 1240);
  }
}

TEST(CanvasCamera, StaysFiniteWithInsetsLargerThanTheViewport) {
  CanvasCamera::Wish wish = fitted({640, 480});
  wish.insets = QMarginsF(900, 0, 400, 2000);
  CanvasCamera camera = cameraOf(wish, {800, 600});
  EXPECT_EQ(camera.anchor(), QPointF(900.5, 0.5));
  EXPECT_DOUBLE_EQ(camera.fittedScale(), 1.0 / 640);
  EXPECT_GE(camera.scrollOffset().x(), 0);
  wish.insets = QMarginsF(kNone, kInfinite, 0, 0);
  camera.update(wish, false, true, 0);
  EXPECT_EQ(camera.anchor(), QPointF(400, 300));
}

TEST(CanvasCamera, TakesNoUnusableZoomOrDensity) {
  CanvasCamera camera = cameraOf(zoomed({640, 480}, 2), {800, 600}, 1.5);
  for (const double value : {0.0, -1.0, kNone, kInfinite, 1e300, 1e-300}) {
    camera.setDevicePixelRatio(value);
    EXPECT_EQ(camera.devicePixelRatio(), 1.5);
    camera.update(zoomed({640, 480}, value), false, false, 0);
    EXPECT_DOUBLE_EQ(camera.shownZoom(), 1);
  }
}

TEST(CanvasCamera, RecentresAFittedPictureWhenTheViewportChanges) {
  CanvasCamera camera = cameraOf(fitted({1920, 1080}), {1240, 772});
  camera.scrollTo({0, 0});
  camera.setViewport({1240, 772});
  EXPECT_EQ(camera.scrollOffset(), QPointF(0, 0));
  camera.setViewport({1000, 772});
  EXPECT_FALSE(camera.isMoving());
  expectNear(focusAt(camera, camera.anchor()), {0.5, 0.5});
  EXPECT_EQ(camera.anchor().x(), 500);
}

TEST(CanvasCamera, KeepsTheFocusOfAZoomedPictureWhenTheViewportChanges) {
  CanvasCamera camera = cameraOf(zoomed({3000, 2000}, 1), {800, 600});
  camera.scrollTo({700, 1900});
  const QPointF focus = focusAt(camera, camera.anchor());
  for (const QSizeF size : {QSizeF(500, 600), QSizeF(1400, 333), QSizeF(2, 2), QSizeF(801, 601)}) {
    camera.setViewport(size);
    expectNear(focusAt(camera, camera.anchor()), focus);
  }
}

TEST(CanvasCamera, TakesNewInsetsWithTheNextLayout) {
  CanvasCamera camera = cameraOf(fitted({1920, 1080}), {1240, 772});
  const QRectF frame = camera.imageFrame();
  CanvasCamera::Wish wish = camera.wish();
  wish.insets = QMarginsF(0, 0, 0, 100);
  camera.update(wish, false, false, 0);
  EXPECT_EQ(camera.imageFrame(), frame);
  camera.setViewport({1240, 772});
  EXPECT_DOUBLE_EQ(scaleOf(camera), 480.0 / 1080);
  expectNear(focusAt(camera, QPointF(620, 336)), {0.5, 0.5});
}

TEST(CanvasCamera, MovesTheFocusOfAZoomedPictureWithItsAnchor) {
  CanvasCamera camera = cameraOf(zoomed({3000, 2000}, 1), {800, 600});
  camera.scrollTo({700, 1900});
  const QPointF focus = focusAt(camera, {400, 300});
  CanvasCamera::Wish wish = camera.wish();
  wish.insets = QMarginsF(0, 0, 0, 100);
  camera.update(wish, false, true, 0);
  expectNear(focusAt(camera, {400, 250}), focus);
}

TEST(CanvasCamera, KeepsTheFocusOfAChangedZoom) {
  CanvasCamera camera = cameraOf(zoomed({3000, 2000}, 1), {800, 600});
  camera.scrollTo({100, 1200});
  const QPointF focus = focusAt(camera, camera.anchor());
  camera.update(zoomed({3000, 2000}, 4), false, false, 0);
  EXPECT_DOUBLE_EQ(camera.shownZoom(), 4);
  expectNear(focusAt(camera, camera.anchor()), focus);
}

TEST(CanvasCamera, CentresANewPictureOnly) {
  CanvasCamera camera = cameraOf(zoomed({3000, 2000}, 1), {800, 600});
  camera.scrollTo({100, 1200});
  camera.update(zoomed({3000, 2000}, 1), false, true, 0);
  EXPECT_EQ(camera.scrollOffset(), QPointF(100, 1200));
  camera.update(zoomed({3000, 2000}, 1), true, false, 0);
  EXPECT_EQ(camera.scrollOffset(), QPointF(1500, 1000));
}

TEST(CanvasCamera, LimitsScrollingToTheDocument) {
  CanvasCamera camera = cameraOf(zoomed({1000, 500}, 1), {1000, 800});
  camera.scrollTo({-10, 5000});
  EXPECT_EQ(camera.scrollOffset(), QPointF(0, 500));
  camera.scrollTo({kInfinite, -kInfinite});
  EXPECT_EQ(camera.scrollOffset(), QPointF(1000, 0));
  camera.scrollTo({20, 30});
  camera.scrollTo({kNone, 40});
  EXPECT_EQ(camera.scrollOffset(), QPointF(20, 40));
}

}  // namespace
}  // namespace vantrel
