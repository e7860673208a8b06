#include "platform/gl/picture_surface.h"

#include <gtest/gtest.h>

#include <QOpenGLContext>
#include <QScreen>
#include <QScrollArea>
#include <QTest>
#include <QWindow>
#include <memory>

namespace vantrel {
namespace {

const QColor kFirst(200, 40, 20), kSecond(10, 90, 230);

/// Fills itself with one colour.
class PlainSurface final : public PictureSurface {
 public:
  explicit PlainSurface(QWidget* parent = nullptr) : PictureSurface(parent) {
    setBackground(kFirst);
  }
  ~PlainSurface() override { leaveContext(); }

  using PictureSurface::setBackground;
  [[nodiscard]] int frames() const { return m_frames; }
  /// Counts the returns of what lives in the context.
  void setReleases(int* releases) { m_releases = releases; }
  using PictureSurface::deviceSize;

 protected:
  void pictureTaken(const VideoPicture* /*picture*/) override {}
  void drawFrame() override { ++m_frames; }
  void releaseResources() override {
    PictureSurface::releaseResources();
    EXPECT_TRUE(QOpenGLContext::currentContext());
    if (m_releases) ++*m_releases;
  }

 private:
  int m_frames = 0;
  int* m_releases = nullptr;
};

/// Not valid where nothing is yet.
QColor onScreen(QWidget& widget, const QPoint& position) {
  const QWidget& window = *widget.window();
  const QPoint place = widget.mapTo(&window, position) * window.devicePixelRatioF();
  const QImage shown = window.screen()->grabWindow(window.winId()).toImage();
  return shown.rect().contains(place) ? shown.pixelColor(place) : QColor();
}

class PictureSurfaceTest : public ::testing::Test {
 protected:
  void SetUp() override {
    ASSERT_TRUE(PictureSurface::isSupported());
    surface = new PlainSurface(&window);
    surface->setGeometry(20, 10, 200, 100);
    over = new QWidget(surface);
    over->setGeometry(0, 0, 200, 20);
    window.resize(320, 240);
    window.show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&window));
    ASSERT_TRUE(waitFor(*surface, {100, 50}, kFirst));
    ASSERT_TRUE(QTest::qWaitFor([this] { return surface->hasFrame(); }));
  }
  static bool waitFor(QWidget& widget, const QPoint& position, const QColor& color) {
    return QTest::qWaitFor([&] { return onScreen(widget, position) == color; });
  }
  static bool isComposed() { return qgetenv("VANTREL_FRAMES") == "composed"; }

  QWidget window;
  PlainSurface* surface = nullptr;
  /// Lies over the top of the surface.
  QWidget* over = nullptr;
};

TEST_F(PictureSurfaceTest, ShowsWhatWasDrawnLast) {
  surface->setBackground(kSecond);
  EXPECT_TRUE(waitFor(*surface, {100, 50}, kSecond));
  EXPECT_EQ(surface->grabFrame().size(), surface->deviceSize());
  EXPECT_EQ(surface->grabFrame().pixelColor(3, 3), kSecond);
}

TEST_F(PictureSurfaceTest, IsBeneathItsChildren) {
  over->setAutoFillBackground(true);
  over->setPalette(QPalette(kSecond));
  EXPECT_TRUE(waitFor(*surface, {100, 10}, over->palette().color(QPalette::Window)));
  EXPECT_EQ(onScreen(*surface, {100, 30}), kFirst);
}

TEST_F(PictureSurfaceTest, LeavesTheMouseToItsUser) {
  EXPECT_EQ(window.childAt(120, 60), surface);
}

TEST_F(PictureSurfaceTest, AsksForNoFrameForWhatLiesOverIt) {
  if (isComposed()) GTEST_SKIP() << "the toolkit decides";
  const int frames = surface->frames();
  over->setAutoFillBackground(true);
  ASSERT_TRUE(waitFor(*surface, {100, 10}, over->palette().color(QPalette::Window)));
  over->setAutoFillBackground(false);
  over->update();
  EXPECT_TRUE(waitFor(*surface, {100, 10}, kFirst));
  EXPECT_EQ(surface->frames(), frames);
}

TEST_F(PictureSurfaceTest, IsDrawnAnewInEachSize) {
  surface->resize(220, 160);
  EXPECT_TRUE(waitFor(*surface, {210, 150}, kFirst));
  EXPECT_EQ(surface->grabFrame().size(), surface->deviceSize());
}

TEST_F(PictureSurfaceTest, FillsAScrollAreaAsItsViewport) {
  QScrollArea area;
  area.setFrameShape(QFrame::NoFrame);
  auto* const viewport = new PlainSurface;
  area.setViewport(viewport);
  area.resize(150, 90);
  area.show();
  EXPECT_TRUE(waitFor(*viewport, {140, 80}, kFirst));
  area.resize(250, 190);
  EXPECT_TRUE(waitFor(*viewport, {240, 180}, kFirst));
}

TEST_F(PictureSurfaceTest, GivesBackWhatLivesInItsContext) {
  int releases = 0;
  surface->setReleases(&releases);
  delete surface;
  EXPECT_EQ(releases, 1);
}

TEST_F(PictureSurfaceTest, ShowsItsPictureInAnotherWindowToo) {
  int releases = 0;
  surface->setReleases(&releases);
  QWidget other;
  other.resize(300, 200);
  surface->setParent(&other);
  surface->show();
  other.show();
  ASSERT_TRUE(QTest::qWaitForWindowExposed(&other));
  EXPECT_TRUE(waitFor(*surface, {100, 50}, kFirst));
  // A context that is composed with belongs to its window.
  EXPECT_EQ(releases, isComposed() ? 1 : 0);
}

TEST_F(PictureSurfaceTest, LeavesAWindowFreeOfOpenGLWhereFramesAreCopied) {
  QWidget plain;
  plain.resize(300, 200);
  plain.show();
  ASSERT_TRUE(QTest::qWaitForWindowExposed(&plain));
  const WId native = plain.winId();
  auto* const late = new PlainSurface(&plain);
  late->resize(100, 100);
  late->show();
  ASSERT_TRUE(waitFor(*late, {50, 50}, kFirst));
  EXPECT_EQ(plain.windowHandle()->surfaceType() == QSurface::RasterSurface, !isComposed());
  EXPECT_EQ(plain.winId() == native, !isComposed());
}

}  // namespace
}  // namespace vantrel
