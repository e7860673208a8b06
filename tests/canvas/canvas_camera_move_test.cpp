#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "canvas/canvas_camera.h"

namespace vantrel {
namespace {

constexpr QSizeF kSource(1000, 500), kViewport(1000, 800);

/// A source at a zoom of 1, scrolled away from its middle, and a camera that was asked to move.
class CanvasCameraMove : public ::testing::Test {
 protected:
  CanvasCameraMove() {
    m_camera.setViewport(kViewport);
    m_wish = {.sourceSize = kSource, .zoom = 1, .fit = false};
    m_camera.update(m_wish, true, false, 0);
    m_camera.scrollTo({100, 400});
  }

  void request(double zoom, bool fit, bool centers, double now) {
    m_wish.zoom = zoom;
    m_wish.fit = fit;
    m_wish.centersOnRequest = centers;
    ++m_wish.request;
    m_camera.update(m_wish, false, false, now);
  }

  [[nodiscard]] QPointF focus() const { return m_camera.projection().toSource(m_camera.anchor()); }

  CanvasCamera m_camera;
  CanvasCamera::Wish m_wish;
};

TEST_F(CanvasCameraMove, EasesScaleAndFocusTogether) {
  request(3, false, true, 10);
  EXPECT_TRUE(m_camera.isMoving());
  EXPECT_DOUBLE_EQ(m_camera.shownZoom(), 1);
  EXPECT_EQ(m_camera.scrollOffset(), QPointF(100, 400));
  m_camera.tick(10 + CanvasCamera::kMoveSeconds / 4);
  const double eased = 0.15625;
  EXPECT_DOUBLE_EQ(m_camera.shownZoom(), 1 + 2 * eased);
  EXPECT_NEAR(focus().x(), 100 + 400 * eased, 0.5);
  EXPECT_NEAR(focus().y(), 400 - 150 * eased, 0.5);
  m_camera.tick(10 + CanvasCamera::kMoveSeconds / 2);
  EXPECT_DOUBLE_EQ(m_camera.shownZoom(), 2);
  m_camera.tick(10 + CanvasCamera::kMoveSeconds);
  EXPECT_FALSE(m_camera.isMoving());
  EXPECT_EQ(m_camera.shownZoom(), 3);
  EXPECT_EQ(focus(), QPointF(500, 250));
}

TEST_F(CanvasCameraMove, KeepsTheFocusUnlessItCentres) {
  request(4, false, false, 0);
  for (int frame = 1; frame <= 20; ++frame) {
    m_camera.tick(frame * CanvasCamera::kTickSeconds);
    EXPECT_NEAR(focus().x(), 100, 0.51);
    EXPECT_NEAR(focus().y(), 400, 0.51);
  }
  EXPECT_FALSE(m_camera.isMoving());
}

TEST_F(CanvasCameraMove, TellsTheFittedZoomAtItsEndAlone) {
  request(1, true, true, 0);
  m_camera.tick(0.1);
  EXPECT_FALSE(m_camera.takeFittedZoom());
  m_camera.tick(7);
  EXPECT_DOUBLE_EQ(m_camera.takeFittedZoom().value(), 0.76);
  EXPECT_FALSE(m_camera.takeFittedZoom());
}

TEST_F(CanvasCameraMove, TellsNoZoomOfAMoveThatIsStopped) {
  request(1, true, true, 0);
  m_camera.tick(0.1);
  m_camera.stopMove();
  EXPECT_FALSE(m_camera.takeFittedZoom());
  m_camera.setViewport(kViewport);
  EXPECT_DOUBLE_EQ(m_camera.takeFittedZoom().value(), 0.76);
}

TEST_F(CanvasCameraMove, StartsFromWhereThePictureIsUnderNewInsets) {
  m_wish.insets = QMarginsF(50, 0, 0, 100);
  request(3, false, true, 0);
  EXPECT_EQ(m_camera.projection().imageFrame(), QRectF(400, 0, 1000, 500));
}

TEST_F(CanvasCameraMove, KeepsItsFocusWhenTheViewportChanges) {
  request(1, true, false, 0);
  m_camera.tick(0.1);
  m_camera.setViewport({900, 700});
  EXPECT_NEAR(focus().x(), 100, 0.6);
  EXPECT_NEAR(focus().y(), 400, 0.6);
}

TEST_F(CanvasCameraMove, StartsAnewFromWhereThePictureIs) {
  request(3, false, true, 0);
  m_camera.tick(0.125);
  request(1, false, true, 0.125);
  EXPECT_DOUBLE_EQ(m_camera.shownZoom(), 2);
  m_camera.tick(0.25);
  EXPECT_DOUBLE_EQ(m_camera.shownZoom(), 1.5);
  m_camera.tick(0.375);
  EXPECT_EQ(m_camera.shownZoom(), 1);
}

TEST_F(CanvasCameraMove, EndsThroughANewZoomWithoutARequest) {
  request(3, false, true, 0);
  m_wish.zoom = 5;
  m_camera.update(m_wish, false, false, 0.1);
  EXPECT_FALSE(m_camera.isMoving());
  EXPECT_EQ(m_camera.shownZoom(), 5);
  m_camera.tick(0.2);
  EXPECT_EQ(m_camera.shownZoom(), 5);
}

TEST_F(CanvasCameraMove, GoesOnThroughOtherLayouts) {
  request(3, false, true, 0);
  m_camera.tick(0.125);
  m_camera.update(m_wish, false, true, 0.13);
  m_camera.setViewport({700, 700});
  EXPECT_TRUE(m_camera.isMoving());
  EXPECT_DOUBLE_EQ(m_camera.shownZoom(), 2);
  m_camera.tick(0.25);
  EXPECT_EQ(m_camera.shownZoom(), 3);
  EXPECT_EQ(focus(), QPointF(500, 250));
}

TEST_F(CanvasCameraMove, IsNoneWhenThePictureChangesToo) {
  ++m_wish.request;
  m_wish.sourceSize = {300, 200};
  m_camera.update(m_wish, true, false, 0);
  EXPECT_FALSE(m_camera.isMoving());
  EXPECT_EQ(focus(), QPointF(150, 100));
  m_camera.update(m_wish, false, false, 0);
  EXPECT_FALSE(m_camera.isMoving());
}

TEST_F(CanvasCameraMove, EndsThroughANewPictureAndAZoomAtThePointer) {
  request(3, false, true, 0);
  EXPECT_TRUE(m_camera.zoomAround({500, 400}, 2));
  EXPECT_FALSE(m_camera.isMoving());
  EXPECT_EQ(m_camera.shownZoom(), 2);
  request(3, false, true, 0);
  m_camera.update(m_wish, true, false, 0);
  EXPECT_FALSE(m_camera.isMoving());
  EXPECT_EQ(m_camera.shownZoom(), 3);
}

TEST_F(CanvasCameraMove, CentresAtOnceWithoutAPictureToStartFrom) {
  CanvasCamera camera;
  camera.setViewport(kViewport);
  camera.update({.sourceSize = kSource, .fit = false, .request = 1}, false, false, 0);
  EXPECT_FALSE(camera.isMoving());
  EXPECT_EQ(camera.shownZoom(), 1);
  EXPECT_EQ(camera.scrollOffset(), QPointF(500, 250));
}

TEST_F(CanvasCameraMove, EndsWithoutAViewport) {
  request(3, false, true, 0);
  m_camera.setViewport({0, 0});
  m_camera.tick(0.1);
  EXPECT_DOUBLE_EQ(m_camera.shownZoom(), 1);
  m_camera.tick(1);
  EXPECT_FALSE(m_camera.isMoving());
  m_camera.setViewport(kViewport);
  EXPECT_DOUBLE_EQ(m_camera.shownZoom(), 3);
}

TEST_F(CanvasCameraMove, SurvivesATimeThatIsNone) {
  const double none = std::numeric_limits<double>::quiet_NaN();
  request(3, false, true, none);
  m_camera.tick(none);
  m_camera.tick(-1);
  EXPECT_DOUBLE_EQ(m_camera.shownZoom(), 1);
  m_camera.tick(1);
  EXPECT_EQ(m_camera.shownZoom(), 3);
}

TEST_F(CanvasCameraMove, CanBeLandedAtOnce) {
  request(3, false, true, 0);
  m_camera.tick(0.125);
  m_camera.finishMove();
  EXPECT_FALSE(m_camera.isMoving());
  EXPECT_EQ(m_camera.shownZoom(), 3);
  EXPECT_EQ(focus(), QPointF(500, 250));
  m_camera.scrollTo({100, 400});
  m_camera.finishMove();
  EXPECT_EQ(m_camera.scrollOffset(), QPointF(100, 400));
}

TEST_F(CanvasCameraMove, CanBeStoppedWhereItIs) {
  request(3, false, true, 0);
  m_camera.tick(0.125);
  const QRectF frame = m_camera.imageFrame();
  m_camera.stopMove();
  m_camera.tick(0.2);
  EXPECT_FALSE(m_camera.isMoving());
  EXPECT_EQ(m_camera.imageFrame(), frame);
}

}  // namespace
}  // namespace vantrel
