#include "canvas/video_canvas_view.h"

#include <gtest/gtest.h>

#include <QScreen>
#include <QSignalSpy>
#include <array>
#include <cmath>
#include <cstddef>
#include <tuple>

#include "canvas/canvas_window.h"
#include "canvas/crop_appearance.h"

/// The toolkit's own way to give a screen another density in a test; no public header has it.
class Q_GUI_EXPORT QHighDpiScaling {
 public:
  static void setScreenFactor(QScreen* screen, qreal factor);
};

namespace vantrel {
namespace {

/// A video that has no picture yet.
class WaitingVideo final : public VideoPictureSource {
 public:
  [[nodiscard]] std::shared_ptr<const VideoPicture> picture() const override { return nullptr; }
};

QColor colorOf(const Bitmap& picture, int64_t x, int64_t y) {
  const std::byte* pixel = picture.pixel(x, y);
  return {std::to_integer<int>(pixel[0]), std::to_integer<int>(pixel[1]),
          std::to_integer<int>(pixel[2])};
}

/// The pixel of the source whose square holds the middle of a device pixel; a middle between two
/// squares belongs to the first.
int64_t sourcePixel(int device, double zoom) {
  return static_cast<int64_t>(std::ceil((device + 0.5 - 1e-6) / zoom)) - 1;
}

class VideoCanvasViewTest : public ::testing::Test {
 protected:
  void SetUp() override {
    ASSERT_TRUE(canvas.isReady());
    ASSERT_TRUE(canvas.waitForPicture());
  }
  VideoCanvasView& surface() { return *canvas.canvas.canvas(); }
  double ratio() { return surface().devicePixelRatioF(); }
  double zoom() { return canvas.canvas.camera().shownZoom(); }
  /// What is shown, in device pixels.
  QImage shown() { return surface().grabFrame(); }
  /// A rectangle of the source in device pixels.
  QRect onScreen(const QRectF& source) {
    const CanvasProjection& projection = canvas.canvas.camera().projection();
    return CropOverlayGeometry::snappedToDevice(projection.toView(source), ratio()).toRect();
  }
  QRect cropOnScreen() {
    return onScreen(canvas.history.crop().rectangle(canvas.shown.sourceSize));
  }

  void zoomTo(double zoom) {
    canvas.shown.zoom = zoom;
    canvas.update();
    ASSERT_TRUE(canvas.waitForPicture());
  }
  /// The kept part is that of the picture, pixel by pixel, and nothing is drawn over it.
  void expectKeptPartIsSharp(const QImage& image) {
    const QRect part = cropOnScreen() & image.rect();
    const QRect whole = onScreen(QRectF(QPointF(0, 0), canvas.shown.sourceSize));
    int wrong = 0;
    for (int y = part.top(); y <= part.bottom(); ++y) {
      for (int x = part.left(); x <= part.right(); ++x) {
        const QColor expected = colorOf(canvas.shown.image, sourcePixel(x - whole.left(), zoom()),
                                        sourcePixel(y - whole.top(), zoom()));
        if (image.pixelColor(x, y) != expected) ++wrong;
      }
    }
    EXPECT_FALSE(part.isEmpty());
    EXPECT_EQ(wrong, 0) << "of " << part.width() * part.height() << " pixels";
  }
  /// The border touches the kept part on all four sides, where the view shows them.
  void expectBorderTouches(const QImage& image) {
    const QRect part = cropOnScreen();
    // Beside the handles, which lie in the middle and beyond the corners.
    const int x = part.left() + 2;
    const int y = part.top() + 2;
    for (const auto& [inside, outwards] : {std::tuple{QPoint(part.left(), y), QPoint(-1, 0)},
                                           std::tuple{QPoint(part.right(), y), QPoint(1, 0)},
                                           std::tuple{QPoint(x, part.top()), QPoint(0, -1)},
                                           std::tuple{QPoint(x, part.bottom()), QPoint(0, 1)}}) {
      if (!image.rect().contains(inside + 3 * outwards)) continue;
      EXPECT_NE(image.pixelColor(inside), CropAppearance::cropBorder());
      EXPECT_EQ(image.pixelColor(inside + outwards), CropAppearance::cropBorder());
      ++m_bordersSeen;
    }
  }
  int m_bordersSeen = 0;

  CanvasWindow canvas;
};

TEST_F(VideoCanvasViewTest, TheBorderLiesOnPixelEdgesOfTheSourceAtHundredPercent) {
  zoomTo(1);
  expectKeptPartIsSharp(shown());
  expectBorderTouches(shown());
  EXPECT_EQ(m_bordersSeen, 4);
  EXPECT_EQ(cropOnScreen().size(), QSize(160, 60));
}

TEST_F(VideoCanvasViewTest, TheBorderLiesOnPixelEdgesOfTheSourceAtThousandPercent) {
  zoomTo(10);
  canvas.history.setCrop({77, 33, 83, 37});
  ASSERT_TRUE(canvas.waitForPicture());
  expectKeptPartIsSharp(shown());
  expectBorderTouches(shown());
  EXPECT_EQ(m_bordersSeen, 4);
  EXPECT_EQ(cropOnScreen().size(), QSize(400, 300));
}

TEST_F(VideoCanvasViewTest, TheBorderLiesOnPixelEdgesOfTheSourceBetweenTheStops) {
  for (const double zoom : {1.37, 2.83, 3.5}) {
    zoomTo(zoom);
    canvas.history.setCrop({61, 31, 67, 23});
    canvas.turnWheel(canvas.middle(), {0, 40});
    ASSERT_TRUE(canvas.waitForPicture());
    expectKeptPartIsSharp(shown());
    expectBorderTouches(shown());
  }
  EXPECT_EQ(m_bordersSeen, 12);
}

TEST_F(VideoCanvasViewTest, TheScreenShowsTheSurfacePixelByPixel) {
  zoomTo(1);
  canvas.setPreviewOnly(true);
  surface().fade().setCurrentTime(VideoCanvasView::kFadeMilliseconds);
  const QRect part = cropOnScreen();
  const QPoint origin =
      (QPointF(surface().mapTo(&canvas.window, QPoint(0, 0))) * ratio()).toPoint();
  const auto screen = [&] {
    const QPixmap window = surface().screen()->grabWindow(canvas.window.winId());
    return window.toImage().convertToFormat(QImage::Format_RGB32).copy(part.translated(origin));
  };
  const QImage drawn = shown().convertToFormat(QImage::Format_RGB32).copy(part);
  EXPECT_TRUE(QTest::qWaitFor([&] { return screen() == drawn; }));
}

TEST_F(VideoCanvasViewTest, DimsThePictureButNotTheCanvasOutsideTheCrop) {
  const QRect part = cropOnScreen();
  const QRect whole = onScreen(QRectF(QPointF(0, 0), canvas.shown.sourceSize));
  const QImage image = shown();
  const QPoint cut(whole.left() + 5, part.top() + part.height() / 4);
  const QColor source = colorOf(canvas.shown.image, sourcePixel(5, zoom()),
                                sourcePixel(cut.y() - whole.top(), zoom()));
  EXPECT_NEAR(image.pixelColor(cut).red(), source.red() * 0.55, 1);
  EXPECT_NEAR(image.pixelColor(cut).blue(), source.blue() * 0.55, 1);
  EXPECT_EQ(image.pixelColor(whole.left() - 30, cut.y()), CanvasWindow::kCanvasColor);
}

TEST_F(VideoCanvasViewTest, ThePreviewShowsOnlyTheKeptPart) {
  zoomTo(3);
  canvas.setPreviewOnly(true);
  surface().fade().setCurrentTime(VideoCanvasView::kFadeMilliseconds);
  EXPECT_EQ(surface().editingOpacity(), 0);
  const QImage image = shown();
  expectKeptPartIsSharp(image);
  const QRect part = cropOnScreen();
  int covered = 0;
  for (int y = 0; y < image.height(); ++y) {
    for (int x = 0; x < image.width(); ++x) {
      if (part.contains(x, y)) continue;
      if (image.pixelColor(x, y) != CanvasWindow::kCanvasColor) ++covered;
    }
  }
  EXPECT_EQ(covered, 0);
}

TEST_F(VideoCanvasViewTest, AFadeThatIsReversedStartsFromWhatIsShownAndLastsItsTime) {
  QSignalSpy told(&surface(), &VideoCanvasView::editingOpacityChanged);
  QVariantAnimation& fade = surface().fade();
  canvas.setPreviewOnly(true);
  fade.setCurrentTime(VideoCanvasView::kFadeMilliseconds / 2);
  const double half = surface().editingOpacity();
  EXPECT_NEAR(half, 0.5, 0.01);
  EXPECT_EQ(told.last().at(0).toDouble(), half);

  canvas.setPreviewOnly(false);
  EXPECT_EQ(surface().editingOpacity(), half);
  EXPECT_EQ(fade.duration(), VideoCanvasView::kFadeMilliseconds);
  EXPECT_EQ(fade.currentTime(), 0);
  fade.setCurrentTime(VideoCanvasView::kFadeMilliseconds / 2);
  EXPECT_NEAR(surface().editingOpacity(), (1 + half) / 2, 0.01);
  fade.setCurrentTime(VideoCanvasView::kFadeMilliseconds);
  EXPECT_EQ(surface().editingOpacity(), 1);
}

TEST_F(VideoCanvasViewTest, HalfWayThroughTheFadeTheCutPartShinesHalfThrough) {
  canvas.setPreviewOnly(true);
  surface().fade().pause();
  surface().fade().setCurrentTime(VideoCanvasView::kFadeMilliseconds / 2);
  const double opacity = surface().editingOpacity();
  const QRect whole = onScreen(QRectF(QPointF(0, 0), canvas.shown.sourceSize));
  const QPoint cut(whole.left() + 5, cropOnScreen().top() + cropOnScreen().height() / 4);
  const QColor source = colorOf(canvas.shown.image, sourcePixel(5, zoom()),
                                sourcePixel(cut.y() - whole.top(), zoom()));
  const double picture = CanvasWindow::kCanvasColor.red() * (1 - opacity) + source.red() * opacity;
  EXPECT_NEAR(shown().pixelColor(cut).red(), picture * (1 - 0.45 * opacity), 2);
  expectKeptPartIsSharp(shown());
}

TEST_F(VideoCanvasViewTest, ThePreviewFollowsTheCrop) {
  canvas.setPreviewOnly(true);
  surface().fade().setCurrentTime(VideoCanvasView::kFadeMilliseconds);
  canvas.history.setCrop({50, 10, 30, 40});
  ASSERT_TRUE(canvas.waitForPicture());
  const QImage image = shown();
  expectKeptPartIsSharp(image);
  EXPECT_EQ(image.pixelColor(cropOnScreen().topLeft() - QPoint(1, 1)), CanvasWindow::kCanvasColor);
}

TEST_F(VideoCanvasViewTest, ShowsOnlyTheCanvasWithoutAPicture) {
  QImage blank(shown().size(), QImage::Format_RGB32);
  blank.fill(CanvasWindow::kCanvasColor);
  canvas.shown.image = {};
  canvas.shown.sourceSize = {0, 0};
  canvas.history.reset({});
  canvas.update();
  EXPECT_FALSE(surface().isPictureShown());
  EXPECT_EQ(shown().convertToFormat(QImage::Format_RGB32), blank);
  EXPECT_FALSE(surface().isPictureShown());
}

TEST_F(VideoCanvasViewTest, AVideoWithoutAPictureHidesTheImage) {
  WaitingVideo video;
  canvas.shown.image = {};
  canvas.shown.player = &video;
  canvas.update();
  EXPECT_EQ(shown().pixelColor(cropOnScreen().center()), CanvasWindow::kCanvasColor);
  EXPECT_FALSE(surface().isPictureShown());
}

TEST_F(VideoCanvasViewTest, ShowsAnotherPictureOfTheSameSize) {
  QSignalSpy told(&surface(), &VideoCanvasView::pictureShown);
  canvas.shown.image = testing::makeBitmap(
      200, 100, {ColorModel::Rgb, SampleFormat::UInt8, false},
      [](int64_t x, int64_t y, int channel) { return 16 + testing::scatter(y, x, channel) % 200; });
  canvas.update();
  EXPECT_FALSE(surface().isPictureShown());
  ASSERT_TRUE(QTest::qWaitFor([&] { return told.count() > 0; }));
  EXPECT_TRUE(surface().isPictureShown());
  expectKeptPartIsSharp(shown());
}

TEST_F(VideoCanvasViewTest, SaysNothingOfAPictureThatWasReplacedMeanwhile) {
  QCoreApplication::sendPostedEvents(&surface(), QEvent::MetaCall);
  QSignalSpy told(&surface(), &VideoCanvasView::pictureShown);
  canvas.turnWheel(canvas.middle(), {0, 40});
  (void)shown();
  ASSERT_TRUE(surface().isPictureShown());
  canvas.shown.image = scatteredPicture(100, 50);
  canvas.update();
  QCoreApplication::sendPostedEvents(&surface(), QEvent::MetaCall);
  EXPECT_EQ(told.count(), 0);
}

TEST_F(VideoCanvasViewTest, ShowsPicturesOfOnePixelInADirection) {
  for (const QSize& size : {QSize(1, 1), QSize(1, 90), QSize(150, 1)}) {
    canvas.shown.image = scatteredPicture(size.width(), size.height());
    canvas.shown.sourceSize = size;
    canvas.history.reset({});
    zoomTo(3);
    EXPECT_EQ(cropOnScreen().size(), size * 3);
    expectKeptPartIsSharp(shown());
  }
}

TEST_F(VideoCanvasViewTest, FitsPicturesOfAnyShape) {
  canvas.shown.fit = true;
  for (const QSize& size : {QSize(1, 20000), QSize(30000, 100), QSize(100, 30000)}) {
    canvas.shown.image = scatteredPicture(size.width(), size.height());
    canvas.shown.sourceSize = size;
    canvas.history.reset({});
    zoomTo(1);
    const QRect part = cropOnScreen();
    EXPECT_TRUE(shown().rect().contains(part));
    EXPECT_NE(shown().pixelColor(part.center()), CanvasWindow::kCanvasColor);
    EXPECT_EQ(shown().pixelColor(3, 3), CanvasWindow::kCanvasColor);
  }
}

TEST_F(VideoCanvasViewTest, BearsACropThatIsOutOfView) {
  zoomTo(10);
  canvas.history.setCrop({0, 0, 199, 99});
  canvas.turnWheel(canvas.middle(), {0, 12000});
  canvas.slide(canvas.middle(), {-6000, 0});
  ASSERT_TRUE(canvas.waitForPicture());
  EXPECT_FALSE(cropOnScreen().intersects(shown().rect()));
}

TEST_F(VideoCanvasViewTest, KeepsItsZoomOnAScreenOfAnotherDensity) {
  QScreen* const screen = canvas.window.screen();
  const double before = ratio();
  const double zoomBefore = zoom();
  const auto change = [&](double factor) {
    QHighDpiScaling::setScreenFactor(screen, factor);
    for (QWidget* const widget :
         {static_cast<QWidget*>(&surface()), static_cast<QWidget*>(&canvas.canvas)}) {
      QEvent event(QEvent::ScreenChangeInternal);
      QCoreApplication::sendEvent(widget, &event);
    }
  };
  change(1.25);
  ASSERT_EQ(ratio(), before * 1.25);
  surface().update();
  EXPECT_TRUE(
      QTest::qWaitFor([&] { return canvas.canvas.camera().devicePixelRatio() == ratio(); }));
  EXPECT_DOUBLE_EQ(zoom(), zoomBefore);
  ASSERT_TRUE(canvas.waitForPicture());
  EXPECT_EQ(shown().size(), surface().size() * ratio());
  expectKeptPartIsSharp(shown());
  expectBorderTouches(shown());
  change(1);
}

TEST_F(VideoCanvasViewTest, FollowsADensityThatNoEventTells) {
  QScreen* const screen = canvas.window.screen();
  const double before = ratio();
  for (const double factor : {1.25, 1.0}) {
    QHighDpiScaling::setScreenFactor(screen, factor);
    ASSERT_EQ(ratio(), before * factor);
    surface().update();
    EXPECT_TRUE(
        QTest::qWaitFor([&] { return canvas.canvas.camera().devicePixelRatio() == ratio(); }));
  }
}

TEST_F(VideoCanvasViewTest, ShowsThePictureInAnotherWindowToo) {
  QWidget other;
  QVBoxLayout layout(&other);
  other.resize(600, 500);
  layout.addWidget(&canvas.canvas);
  other.show();
  ASSERT_TRUE(QTest::qWaitForWindowExposed(&other));
  ASSERT_TRUE(canvas.waitForPicture());
  expectKeptPartIsSharp(shown());
  expectBorderTouches(shown());
  canvas.canvas.setParent(nullptr);
}

}  // namespace
}  // namespace vantrel
