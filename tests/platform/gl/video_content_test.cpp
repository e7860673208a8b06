#include <array>
#include <limits>

#include "platform/gl/picture_renderer.h"
#include "platform/gl/video_content_fixture.h"

namespace vantrel {
namespace {

using namespace testing;

using Model = VideoPicture::Model;

constexpr MadePicture kGray8{.width = 8, .height = 6, .model = Model::Gray, .isFullRange = true};

/// A gray that tells the place.
int grayAt(int x, int y) {
  return (x * 29 + y * 53 + 7) % 256;
}

std::shared_ptr<VideoPicture> makeGray(MadePicture made = kGray8) {
  return makePicture(made, [](int, int x, int y) { return grayAt(x, y); });
}

class VideoContentTest : public VideoContentFixture {};

TEST_F(VideoContentTest, ShowsEachPixelOnceAtItsOwnSize) {
  const QImage image = drawn(makeGray(), QRectF(11, 7, 8, 6));
  for (int y = 0; y < kCanvas.height(); ++y) {
    for (int x = 0; x < kCanvas.width(); ++x) {
      const bool isInside = x >= 11 && x < 19 && y >= 7 && y < 13;
      const int gray = isInside ? grayAt(x - 11, y - 7) : 0;
      ASSERT_EQ(image.pixelColor(x, y), isInside ? QColor(gray, gray, gray) : QColor(Qt::blue));
    }
  }
}

/// The place of a displayed pixel's edge, half a device pixel going to the right.
int edge(double start, double scale, int pixel) {
  return static_cast<int>(std::floor(start + pixel * scale + 0.5 + 1e-6));
}

TEST_F(VideoContentTest, MagnifiesToSquaresWhoseEdgesAreRounded) {
  for (const double scale : {1.0, 1.18921, 1.5, 2.37841, 4.0, 9.51366, 10.0}) {
    const QPointF origin(-7, -13);
    const QImage image = drawn(makeGray(), QRectF(origin, QSizeF(8, 6) * scale));
    for (int y = 0; y < 6; ++y) {
      for (int x = 0; x < 8; ++x) {
        const QRect square(
            QPoint(edge(origin.x(), scale, x), edge(origin.y(), scale, y)),
            QPoint(edge(origin.x(), scale, x + 1) - 1, edge(origin.y(), scale, y + 1) - 1));
        const QRect visible = square & image.rect();
        if (visible.isEmpty()) continue;
        ASSERT_EQ(image.pixelColor(visible.topLeft()).red(), grayAt(x, y)) << scale << ' ' << x;
        ASSERT_EQ(image.pixelColor(visible.bottomRight()).red(), grayAt(x, y)) << scale << ' ' << x;
      }
    }
  }
}

TEST_F(VideoContentTest, KeepsEdgesExactFarIntoALargePicture) {
  MadePicture made = kGray8;
  made.width = 7001;
  made.height = 3;
  const double scale = 9.51366, start = -66'000;
  const QImage image = drawn(makeGray(made), QRectF(start, 0, 7001 * scale, 3 * scale));
  int shownEdges = 0;
  for (int x = 6930; x < 6960; ++x) {
    const int at = edge(start, scale, x);
    if (at < 1 || at >= kCanvas.width()) continue;
    ++shownEdges;
    EXPECT_EQ(image.pixelColor(at - 1, 0).red(), grayAt(x - 1, 0));
    EXPECT_EQ(image.pixelColor(at, 0).red(), grayAt(x, 0));
  }
  EXPECT_GT(shownEdges, 10);
}

TEST_F(VideoContentTest, ReducesToMeans) {
  // Columns of black and white, one pixel wide: gray, wherever it lies.
  MadePicture made = kGray8;
  made.width = 640;
  made.height = 480;
  const auto picture = makePicture(made, [](int, int x, int) { return x % 2 == 0 ? 0 : 255; });
  for (const double scale : {0.25, 0.125}) {
    const QImage image = drawn(picture, QRectF(0, 0, 640 * scale, 480 * scale));
    for (const int x : {0, 1, 2, 33, 79})
      expectNear(image.pixelColor(x, 20), 127.5, 127.5, 127.5);
  }
  // Nothing strays far where the steps do not divide the zoom.
  const QImage image = drawn(picture, QRectF(0, 0, 640 * 0.23, 480 * 0.23));
  for (int x = 0; x < 140; ++x)
    expectNear(image.pixelColor(x, 20), 127.5, 127.5, 127.5, 2);
}

TEST_F(VideoContentTest, ReducesWithoutShifting) {
  // An edge in the middle stays there.
  MadePicture made = kGray8;
  made.width = made.height = 256;
  const auto picture = makePicture(made, [](int, int x, int) { return x < 128 ? 0 : 255; });
  for (const int size : {16, 32, 50, 64, 100}) {
    const QImage image = drawn(picture, QRectF(0, 0, size, size));
    EXPECT_EQ(image.pixelColor(size / 2 - 2, 8).red(), 0) << size;
    EXPECT_EQ(image.pixelColor(size / 2 + 1, 8).red(), 255) << size;
    const int left = image.pixelColor(size / 2 - 1, 8).red();
    const int right = image.pixelColor(size / 2, 8).red();
    EXPECT_NEAR(left + right, 255, 3) << size;
  }
}

TEST_F(VideoContentTest, MagnifiesAgainAfterAReduction) {
  MadePicture made = kGray8;
  made.width = 80;
  made.height = 60;
  const auto picture = makeGray(made);
  drawn(picture, QRectF(0, 0, 8, 6));
  const QImage image = drawn(picture, QRectF(0, 0, 800, 600));
  EXPECT_EQ(image.pixelColor(75, 55).red(), grayAt(7, 5));
}

struct Turn {
  AffineTransform transform;
  /// The gray of the displayed corners: upper left, upper right, lower left, lower right; the
  /// stored ones have 50, 100, 150, 200.
  std::array<int, 4> corners;
};

TEST_F(VideoContentTest, TurnsPicturesUpright) {
  const auto cornerGray = [](int x, int y) { return 50 + (x < 4 ? 0 : 50) + (y < 3 ? 0 : 100); };
  const Turn turns[] = {
      {{1, 0, 0, 1, 0, 0}, {50, 100, 150, 200}},   {{-1, 0, 0, 1, 8, 0}, {100, 50, 200, 150}},
      {{1, 0, 0, -1, 0, 6}, {150, 200, 50, 100}},  {{-1, 0, 0, -1, 8, 6}, {200, 150, 100, 50}},
      {{0, 1, -1, 0, 6, 0}, {150, 50, 200, 100}},  {{0, -1, 1, 0, 0, 8}, {100, 200, 50, 150}},
      {{0, 1, 1, 0, -3, -9}, {50, 150, 100, 200}}, {{0, -1, -1, 0, 6, 8}, {200, 100, 150, 50}},
  };
  for (const Turn& turn : turns) {
    const auto picture = makePicture(kGray8, [&](int, int x, int y) { return cornerGray(x, y); });
    picture->preferredTransform = turn.transform;
    const bool isTurned = turn.transform.a == 0;
    const QSize size = isTurned ? QSize(6, 8) : QSize(8, 6);
    for (const int scale : {1, 4}) {
      const QSize shownSize = size * scale;
      const QImage image = drawn(picture, QRectF(QPointF(3, 5), shownSize));
      const int right = 3 + shownSize.width() - 1, bottom = 5 + shownSize.height() - 1;
      const std::array corners = {image.pixelColor(3, 5).red(), image.pixelColor(right, 5).red(),
                                  image.pixelColor(3, bottom).red(),
                                  image.pixelColor(right, bottom).red()};
      EXPECT_EQ(corners, turn.corners);
      EXPECT_EQ(image.pixelColor(right + 1, 5), QColor(Qt::blue));
      EXPECT_EQ(image.pixelColor(3, bottom + 1), QColor(Qt::blue));
    }
  }
}

TEST_F(VideoContentTest, MakesPixelsSquare) {
  const auto picture = makePicture(kGray8, [](int, int x, int) { return 20 * x; });
  picture->naturalSize = {16, 6};
  const QImage image = drawn(picture, QRectF(0, 0, 16, 6));
  // Displayed pixel x lies at (x + ½) / 2, of which the sample at j + ½ is 20 j.
  for (int x = 1; x < 15; ++x)
    EXPECT_NEAR(image.pixelColor(x, 3).red(), 20 * ((x + 0.5) / 2 - 0.5), 1);
  const QImage magnified = drawn(picture, QRectF(0, 0, 160, 60));
  EXPECT_EQ(magnified.pixelColor(30, 0), magnified.pixelColor(39, 9));
  EXPECT_NE(magnified.pixelColor(39, 0), magnified.pixelColor(40, 0));
}

TEST_F(VideoContentTest, FillsTheNaturalSizeWithPicturesOfAnotherSize) {
  const auto picture = makePicture(kGray8, [](int, int, int) { return 77; });
  picture->naturalSize = {40, 30};
  const QImage image = drawn(picture, QRectF(0, 0, 40, 30));
  EXPECT_EQ(image.pixelColor(39, 29), QColor(77, 77, 77));
  EXPECT_EQ(image.pixelColor(40, 29), QColor(Qt::blue));
}

TEST_F(VideoContentTest, ReadsRowsWithGapsAndUpwards) {
  for (const int depth : {8, 10}) {
    for (const int padding : {0, 1, 2, 7, 64}) {
      for (const bool isUpsideDown : {false, true}) {
        MadePicture made = kGray8;
        made.depth = depth;
        made.width = 7;
        made.height = 5;
        made.padding = depth == 8 ? padding : padding * 2;
        made.isUpsideDown = isUpsideDown;
        const int scale = depth == 8 ? 1 : 4;
        const auto picture =
            makePicture(made, [&](int, int x, int y) { return grayAt(x, y) * scale; });
        const QImage image = drawn(picture, QRectF(0, 0, 7, 5));
        for (int y = 0; y < 5; ++y) {
          for (int x = 0; x < 7; ++x)
            ASSERT_NEAR(image.pixelColor(x, y).red(), grayAt(x, y), 1) << padding;
        }
      }
    }
  }
}

TEST_F(VideoContentTest, FadesWhatLiesOutsideTheRetainedPart) {
  const auto picture = makePicture(kGray8, [](int, int, int) { return 255; });
  PictureView view = viewOf(QRectF(10, 10, 80, 60));
  view.retained = QRectF(30, 20, 20, 30);
  view.excludedOpacity = 0.25;
  const QImage image = drawn(picture, view);
  for (const QPoint inside : {QPoint(30, 20), QPoint(49, 49)})
    EXPECT_EQ(image.pixelColor(inside), QColor(Qt::white));
  for (const QPoint outside : {QPoint(29, 20), QPoint(50, 49), QPoint(30, 19), QPoint(49, 50)})
    expectNear(image.pixelColor(outside), 64, 64, 255);
  EXPECT_EQ(image.pixelColor(29, 20).alpha(), 255);
}

TEST_F(VideoContentTest, ShowsTheRetainedPartAloneWithoutTheOther) {
  const auto picture = makeGray();
  PictureView view = viewOf(QRectF(10, 10, 80, 60));
  view.retained = QRectF(30, 20, 20, 30);
  view.excludedOpacity = 0;
  const QImage image = drawn(picture, view);
  EXPECT_EQ(image.pixelColor(29, 20), QColor(Qt::blue));
  EXPECT_EQ(image.pixelColor(30, 50), QColor(Qt::blue));
  EXPECT_EQ(image.pixelColor(30, 20).red(), grayAt(2, 1));
  EXPECT_EQ(image.pixelColor(49, 49).red(), grayAt(3, 3));
  view.retained = QRectF(200, 0, 10, 10);
  EXPECT_EQ(drawn(picture, view).pixelColor(30, 20), QColor(Qt::blue));
}

TEST_F(VideoContentTest, ShowsANewPictureAtOnce) {
  EXPECT_EQ(shown(makeFlat(kGray8, 10, 0, 0)), QColor(10, 10, 10));
  EXPECT_TRUE(m_content->isComplete());
  ASSERT_TRUE(m_content->take(makeFlat(kGray8, 90, 0, 0)));
  EXPECT_FALSE(m_content->isComplete());
  // Another size, model and depth.
  const MadePicture rgb{
      .width = 31, .height = 9, .model = Model::Rgb, .depth = 12, .isFullRange = true};
  expectNear(shown(makeFlat(rgb, 0, 4095, 2048)), 0, 255, 127.5);
  EXPECT_TRUE(m_content->isComplete());
  EXPECT_EQ(shown(makeFlat(kGray8, 33, 0, 0)), QColor(33, 33, 33));
}

TEST_F(VideoContentTest, ShowsPicturesThatAreWiderThanTextures) {
  GLint side = 0;
  m_canvas.context().functions()->glGetIntegerv(GL_MAX_TEXTURE_SIZE, &side);
  MadePicture made = kGray8;
  made.width = side + 37;
  made.height = 8;
  const int middle = made.width / 2;
  const auto picture = makePicture(made, [=](int, int x, int) { return x < middle ? 30 : 220; });
  const QImage image = drawn(picture, QRectF(80 - middle, 0, made.width, 8));
  EXPECT_EQ(image.pixelColor(70, 3), QColor(30, 30, 30));
  EXPECT_EQ(image.pixelColor(90, 3), QColor(220, 220, 220));
}

TEST_F(VideoContentTest, IsWhatTheRendererShows) {
  PictureRenderer renderer;
  const PictureView view = viewOf(QRectF(0, 0, 80, 60));
  const auto gray = [&](const std::shared_ptr<const VideoPicture>& picture) {
    renderer.setVideoPicture(picture);
    m_canvas.clear(Qt::blue);
    renderer.draw(view);
    return m_canvas.image().pixelColor(75, 55);
  };
  EXPECT_EQ(gray(makeGray()).red(), grayAt(7, 5));
  EXPECT_TRUE(renderer.isComplete());
  EXPECT_EQ(gray(nullptr), QColor(Qt::blue));
  EXPECT_EQ(renderer.textureBytes(), 0);
  EXPECT_EQ(gray(makeFlat(kGray8, 9, 0, 0)).red(), 9);
  renderer.release();
  EXPECT_EQ(gray(makeFlat(kGray8, 8, 0, 0)).red(), 8);
  renderer.release();
}

TEST_F(VideoContentTest, TellsWhatTheTexturesTake) {
  drawn(makeGray(), QRectF(0, 0, 8, 6));
  EXPECT_GE(m_content->textureBytes(), 48);
  EXPECT_LT(m_content->textureBytes(), 1000);
  m_content->release();
  EXPECT_EQ(m_content->textureBytes(), 0);
}

TEST_F(VideoContentTest, DrawsAgainAfterARelease) {
  const auto picture = makeGray();
  const QImage before = drawn(picture, QRectF(3, 2, 80, 60));
  m_content->release();
  EXPECT_FALSE(m_content->isComplete());
  EXPECT_EQ(drawn(picture, QRectF(3, 2, 80, 60)), before);
}

TEST(VideoContent, IsDrawnAnewAfterItsContextIsGone) {
  const auto picture = makeGray();
  const auto content = makeVideoContent(picture);
  const QRectF frame(0, 0, 80, 60);
  QImage before;
  {
    OffscreenCanvas canvas(kCanvas);
    content->draw({kCanvas, frame, frame, 1});
    before = canvas.image();
  }
  OffscreenCanvas canvas(kCanvas);
  canvas.clear(Qt::black);
  content->draw({kCanvas, frame, frame, 1});
  EXPECT_EQ(canvas.image().pixelColor(75, 55), before.pixelColor(75, 55));
  EXPECT_EQ(canvas.image().pixelColor(75, 55).red(), grayAt(7, 5));
  content->release();
}

TEST(VideoContent, MayOutliveItsContext) {
  const auto content = makeVideoContent(makeGray());
  OffscreenCanvas canvas(kCanvas);
  content->draw({kCanvas, QRectF(0, 0, 8, 6), {}, 1});
}

TEST_F(VideoContentTest, DrawsWhateverStateTheContextIsIn) {
  const QImage before = drawn(makeGray(), QRectF(3, 2, 80, 60));
  QOpenGLFunctions& gl = *m_canvas.context().functions();
  m_canvas.clear(Qt::blue);
  gl.glViewport(1, 1, 3, 3);
  gl.glEnable(GL_SCISSOR_TEST);
  gl.glScissor(0, 0, 1, 1);
  gl.glEnable(GL_CULL_FACE);
  gl.glFrontFace(GL_CW);
  gl.glEnable(GL_BLEND);
  gl.glBlendFunc(GL_ZERO, GL_ZERO);
  gl.glColorMask(GL_FALSE, GL_TRUE, GL_FALSE, GL_FALSE);
  m_content->draw(viewOf(QRectF(3, 2, 80, 60)));
  EXPECT_EQ(m_canvas.image(), before);
}

TEST_F(VideoContentTest, DrawsNothingWhereThereIsNothing) {
  const double nan = std::numeric_limits<double>::quiet_NaN();
  const double infinity = std::numeric_limits<double>::infinity();
  const QImage nothing = drawn(makeGray(), QRectF(500, 500, 8, 6));
  for (const QRectF& frame :
       {QRectF(), QRectF(0, 0, 0, 6), QRectF(0, 0, -8, 6), QRectF(nan, 0, 8, 6),
        QRectF(0, 0, 8, nan), QRectF(infinity, 0, 8, 6), QRectF(0, 0, infinity, 6),
        QRectF(-1e12, 0, 8, 6), QRectF(1e300, 1e300, 8, 6)}) {
    EXPECT_EQ(drawn(makeGray(), frame), nothing);
  }
  PictureView view = viewOf(QRectF(0, 0, 8, 6));
  view.target = QSize(0, 0);
  EXPECT_EQ(drawn(makeGray(), view), nothing);
  EXPECT_EQ(drawn(std::make_shared<VideoPicture>(), QRectF(0, 0, 8, 6)), nothing);
  const auto withoutSize = makeGray();
  withoutSize->naturalSize = {0, nan};
  EXPECT_EQ(drawn(withoutSize, QRectF(0, 0, 8, 6)), nothing);
}

TEST_F(VideoContentTest, ShowsPicturesOfOnePixelWidthOrHeight) {
  MadePicture made = kGray8;
  made.width = 1;
  made.height = 100;
  const QImage image =
      drawn(makePicture(made, [](int, int, int) { return 200; }), QRectF(4, 5, 0.1, 10));
  EXPECT_EQ(image.pixelColor(4, 8), QColor(200, 200, 200));
  EXPECT_EQ(image.pixelColor(5, 8), QColor(Qt::blue));
}

}  // namespace
}  // namespace vantrel
