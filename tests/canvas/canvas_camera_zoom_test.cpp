#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <random>

#include "canvas/canvas_camera.h"

namespace vantrel {
namespace {

constexpr double kNone = std::numeric_limits<double>::quiet_NaN();
constexpr double kInfinite = std::numeric_limits<double>::infinity();

CanvasCamera cameraOf(const CanvasCamera::Wish& wish, const QSizeF& viewport) {
  CanvasCamera camera;
  camera.setViewport(viewport);
  camera.update(wish, true, false, 0);
  return camera;
}

/// The source point at a point of the viewport, before any rounding to device pixels.
QPointF sourceAt(const CanvasCamera& camera, const QPointF& point) {
  return (camera.scrollOffset() + point - camera.imageFrame().topLeft()) /
         camera.projection().scale();
}

TEST(CanvasCameraZoom, KeepsWhatIsUnderThePointer) {
  CanvasCamera camera =
      cameraOf({.sourceSize = QSizeF(4000, 3000), .zoom = 1, .fit = false}, {800, 600});
  const QPointF pointer(123, 456);
  const QPointF source = sourceAt(camera, pointer);
  for (const double factor : {1.1275, 1.1275, 0.5, 3.0, 0.9}) {
    ASSERT_TRUE(camera.zoomAround(pointer, factor));
    EXPECT_NEAR(sourceAt(camera, pointer).x(), source.x(), 1e-9);
    EXPECT_NEAR(sourceAt(camera, pointer).y(), source.y(), 1e-9);
  }
  EXPECT_DOUBLE_EQ(camera.shownZoom(), 1.1275 * 1.1275 * 0.5 * 3 * 0.9);
  EXPECT_DOUBLE_EQ(camera.wish().zoom, camera.shownZoom());
}

TEST(CanvasCameraZoom, StartsFromWhatIsShownAndTurnsTheFitOff) {
  CanvasCamera camera = cameraOf({.sourceSize = QSizeF(1000, 500)}, {740, 692});
  EXPECT_DOUBLE_EQ(camera.shownZoom(), 0.5);
  EXPECT_TRUE(camera.zoomAround({370, 346}, 2));
  EXPECT_FALSE(camera.wish().fit);
  EXPECT_DOUBLE_EQ(camera.shownZoom(), 1);
  EXPECT_FALSE(camera.takeFittedZoom());
}

TEST(CanvasCameraZoom, StaysWithinItsRange) {
  CanvasCamera camera =
      cameraOf({.sourceSize = QSizeF(1000, 500), .zoom = 9, .fit = false}, {800, 600});
  const QPointF pointer(10, 10);
  const QPointF source = sourceAt(camera, pointer);
  for (const double factor : {2.0, kInfinite, 1.5}) {
    EXPECT_TRUE(camera.zoomAround(pointer, factor));
    EXPECT_EQ(camera.shownZoom(), 10);
    EXPECT_NEAR(sourceAt(camera, pointer).x(), source.x(), 1e-9);
  }
  for (const double factor : {1e-9, 0.0, -3.0, -kInfinite}) {
    EXPECT_TRUE(camera.zoomAround(pointer, factor));
    EXPECT_EQ(camera.shownZoom(), 0.1);
  }
}

TEST(CanvasCameraZoom, ChangesNothingForWhatIsNoNumber) {
  CanvasCamera camera = cameraOf({.sourceSize = QSizeF(1000, 500)}, {800, 600});
  const QRectF frame = camera.imageFrame();
  EXPECT_FALSE(camera.zoomAround({kNone, 3}, 2));
  EXPECT_FALSE(camera.zoomAround({3, kInfinite}, 2));
  EXPECT_FALSE(camera.zoomAround({3, 3}, kNone));
  EXPECT_TRUE(camera.wish().fit);
  EXPECT_EQ(camera.imageFrame(), frame);
}

TEST(CanvasCameraZoom, IsToldOnceForEachFit) {
  CanvasCamera::Wish wish{.sourceSize = QSizeF(1000, 500)};
  CanvasCamera camera = cameraOf(wish, {740, 692});
  EXPECT_DOUBLE_EQ(camera.takeFittedZoom().value(), 0.5);
  camera.setViewport({740, 692});
  camera.update(wish, false, true, 0);
  EXPECT_FALSE(camera.takeFittedZoom());
  camera.setViewport({740.05, 692});
  EXPECT_FALSE(camera.takeFittedZoom());
  camera.setViewport({741, 692});
  EXPECT_DOUBLE_EQ(camera.takeFittedZoom().value(), 0.501);
  camera.update(wish, true, false, 0);
  EXPECT_DOUBLE_EQ(camera.takeFittedZoom().value(), 0.501);
}

TEST(CanvasCameraZoom, IsToldAgainWhenTheFitReturns) {
  CanvasCamera::Wish wish{.sourceSize = QSizeF(1000, 500)};
  CanvasCamera camera = cameraOf(wish, {740, 692});
  EXPECT_TRUE(camera.takeFittedZoom());
  wish.fit = false;
  camera.update(wish, false, false, 0);
  EXPECT_FALSE(camera.takeFittedZoom());
  wish.fit = true;
  camera.update(wish, false, false, 0);
  EXPECT_DOUBLE_EQ(camera.takeFittedZoom().value(), 0.5);
  EXPECT_TRUE(camera.zoomAround({1, 1}, 1.5));
  camera.update(wish, false, false, 0);
  EXPECT_DOUBLE_EQ(camera.takeFittedZoom().value(), 0.5);
}

TEST(CanvasCameraZoom, IsNotToldOnceTheFitIsOff) {
  CanvasCamera camera = cameraOf({.sourceSize = QSizeF(1000, 500)}, {740, 692});
  camera.update({.sourceSize = QSizeF(1000, 500), .fit = false}, false, false, 0);
  EXPECT_FALSE(camera.takeFittedZoom());
}

TEST(CanvasCameraZoom, WaitsForTheEndOfAMove) {
  CanvasCamera::Wish wish{.sourceSize = QSizeF(1000, 500)};
  CanvasCamera camera = cameraOf(wish, {740, 692});
  wish.request = 1;
  camera.update(wish, false, false, 0);
  EXPECT_FALSE(camera.takeFittedZoom());
  camera.tick(1);
  EXPECT_DOUBLE_EQ(camera.takeFittedZoom().value(), 0.5);
}

TEST(CanvasCameraZoom, HasItsOriginOnAWholeDevicePixel) {
  for (const double ratio : {1.0, 1.25, 1.5, 1.75, 2.0, 3.0}) {
    CanvasCamera camera =
        cameraOf({.sourceSize = QSizeF(999, 501), .zoom = 2, .fit = false}, {801, 601});
    camera.setDevicePixelRatio(ratio);
    for (int step = 0; step < 50; ++step) {
      camera.scrollTo({100 + step * 0.37, 300 - step * 0.61});
      const QPointF exact = camera.imageFrame().topLeft() - camera.scrollOffset();
      const QPointF origin = camera.projection().imageFrame().topLeft();
      EXPECT_NEAR(origin.x() * ratio, std::round(origin.x() * ratio), 1e-9);
      EXPECT_NEAR(origin.y() * ratio, std::round(origin.y() * ratio), 1e-9);
      EXPECT_LE(std::abs(origin.x() - exact.x()) * ratio, 0.5 + 1e-9);
      EXPECT_LE(std::abs(origin.y() - exact.y()) * ratio, 0.5 + 1e-9);
      EXPECT_DOUBLE_EQ(camera.projection().scale() * ratio, 2);
    }
  }
}

/// Anything that a user, an editor and a display can do, in any order.
class AnySequence {
 public:
  explicit AnySequence(unsigned seed) : m_random(seed) {
    m_camera.setViewport({800, 600});
    m_camera.update(m_wish, true, false, m_now);
  }

  void step() {
    switch (m_random() % 6) {
      case 0:
        return update();
      case 1:
        return resize();
      case 2:
        return zoom();
      case 3:
        return m_camera.scrollTo({between(-3000, 9000), between(-3000, 9000)});
      case 4:
        return m_camera.setDevicePixelRatio(kRatios[m_random() % kRatios.size()]);
      default:
        m_now += between(0, 0.1);
        return m_camera.tick(m_now);
    }
  }

  void expectSound() const {
    const QSizeF extent = m_camera.documentSize() - m_camera.viewport();
    const QPointF offset = m_camera.scrollOffset();
    EXPECT_TRUE(offset.x() >= 0 && offset.y() >= 0);
    if (!m_camera.viewport().isEmpty()) {
      EXPECT_TRUE(offset.x() <= extent.width() && offset.y() <= extent.height());
    }
    const QRectF frame = m_camera.imageFrame(), shown = m_camera.projection().imageFrame();
    for (const double value :
         {offset.x(), offset.y(), frame.x(), frame.y(), frame.width(), frame.height(), shown.x(),
          shown.y(), shown.width(), shown.height(), extent.width(), extent.height(),
          m_camera.shownZoom(), m_camera.projection().scale(), m_camera.anchor().x(),
          m_camera.anchor().y(), m_camera.fittedScale()}) {
      EXPECT_TRUE(std::isfinite(value));
    }
  }

 private:
  static constexpr std::array<double, 6> kRatios{1, 1.25, 1.5, 1.75, 2, 3};
  static constexpr std::array<QSizeF, 7> kSources{
      QSizeF(0, 0),       QSizeF(1, 1),         QSizeF(1, 4000), QSizeF(30'000, 100),
      QSizeF(1920, 1080), QSizeF(12'000, 9000), QSizeF(333, 777)};

  double between(double low, double high) {
    return low + (high - low) * static_cast<double>(m_random()) / std::mt19937::max();
  }

  void update() {
    const bool mediaChanged = m_random() % 4 == 0;
    m_wish = m_camera.wish();
    if (mediaChanged) m_wish.sourceSize = kSources[m_random() % kSources.size()];
    if (m_random() % 2 == 0) m_wish.zoom = between(0.1, 10);
    m_wish.fit = m_random() % 3 == 0;
    if (m_random() % 3 == 0) ++m_wish.request;
    m_wish.centersOnRequest = m_random() % 2 == 0;
    if (m_random() % 4 == 0) {
      m_wish.insets = QMarginsF(between(0, 60), between(0, 60), between(0, 60), between(0, 200));
    }
    m_camera.update(m_wish, mediaChanged, m_random() % 2 == 0, m_now);
  }

  void resize() {
    const QSizeF size = m_random() % 8 == 0 ? QSizeF(0, between(0, 100))
                                            : QSizeF(between(300, 2500), between(400, 1500));
    const bool keepsFocus = !m_camera.wish().fit && m_camera.shownZoom() > 0 && !size.isEmpty() &&
                            !m_camera.viewport().isEmpty();
    m_camera.setViewport(m_camera.viewport());
    const QPointF source = sourceAt(m_camera, m_camera.anchor());
    m_camera.setViewport(size);
    if (!keepsFocus) return;
    const QPointF kept = sourceAt(m_camera, m_camera.anchor());
    EXPECT_NEAR(kept.x(), source.x(), 1e-6);
    EXPECT_NEAR(kept.y(), source.y(), 1e-6);
  }

  void zoom() {
    const QPointF pointer(between(0, m_camera.viewport().width()),
                          between(0, m_camera.viewport().height()));
    const bool isShown = m_camera.shownZoom() > 0 && !m_camera.viewport().isEmpty();
    const QPointF source = isShown ? sourceAt(m_camera, pointer) : QPointF();
    EXPECT_EQ(m_camera.zoomAround(pointer, std::exp(between(-1, 1))), isShown);
    if (!isShown) return;
    const QPointF shown = m_camera.projection().toView(source);
    const double half = 0.5 / m_camera.devicePixelRatio() + 1e-6;
    const QSizeF extent = m_camera.documentSize() - m_camera.viewport();
    const QPointF offset = m_camera.scrollOffset();
    if (offset.x() > 0 && offset.x() < extent.width()) {
      EXPECT_NEAR(shown.x(), pointer.x(), half);
    }
    if (offset.y() > 0 && offset.y() < extent.height()) {
      EXPECT_NEAR(shown.y(), pointer.y(), half);
    }
  }

  std::mt19937 m_random;
  CanvasCamera m_camera;
  CanvasCamera::Wish m_wish{.sourceSize = QSizeF(1920, 1080)};
  double m_now = 0;
};

TEST(CanvasCameraZoom, StaysSoundThroughAnySequence) {
  for (unsigned seed = 1; seed <= 40; ++seed) {
    AnySequence sequence(seed);
    for (int step = 0; step < 500; ++step) {
      sequence.step();
      sequence.expectSound();
      ASSERT_FALSE(::testing::Test::HasFailure()) << "seed " << seed << ", step " << step;
    }
  }
}

}  // namespace
}  // namespace vantrel
