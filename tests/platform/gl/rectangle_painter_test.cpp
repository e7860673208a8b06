#include "platform/gl/rectangle_painter.h"

#include <gtest/gtest.h>

#include <limits>

#include "platform/gl/offscreen_canvas.h"

namespace vantrel {
namespace {

using testing::OffscreenCanvas;

constexpr QSize kSize(40, 30);

void expectNear(const QColor& color, const QColor& expected) {
  EXPECT_NEAR(color.red(), expected.red(), 1);
  EXPECT_NEAR(color.green(), expected.green(), 1);
  EXPECT_NEAR(color.blue(), expected.blue(), 1);
  EXPECT_NEAR(color.alpha(), expected.alpha(), 1);
}

class RectanglePainterTest : public ::testing::Test {
 protected:
  RectanglePainterTest() : m_canvas(kSize) { m_canvas.clear(Qt::blue); }
  ~RectanglePainterTest() override { m_painter.release(); }

  QImage drawn(const std::vector<ColoredRectangle>& rectangles, double opacity = 1) {
    m_painter.draw(kSize, rectangles, opacity);
    return m_canvas.image();
  }

  /// The canvas after filling these rectangles, whose edges are whole, without OpenGL.
  static QImage filled(const std::vector<ColoredRectangle>& rectangles) {
    QImage image(kSize, QImage::Format_RGBA8888);
    image.fill(Qt::blue);
    for (int y = 0; y < kSize.height(); ++y) {
      for (int x = 0; x < kSize.width(); ++x) {
        for (const auto& [rect, color] : rectangles) {
          const bool inside =
              x >= rect.left() && x < rect.right() && y >= rect.top() && y < rect.bottom();
          if (inside) image.setPixelColor(x, y, color);
        }
      }
    }
    return image;
  }

  OffscreenCanvas m_canvas;
  RectanglePainter m_painter;
};

TEST_F(RectanglePainterTest, FillsExactlyThePixelsOfARectangle) {
  const std::vector<ColoredRectangle> rectangles{{QRectF(3, 2, 7, 5), QColor(225, 0, 0)}};
  EXPECT_EQ(drawn(rectangles), filled(rectangles));
}

TEST_F(RectanglePainterTest, DrawsLaterRectanglesOverEarlierOnes) {
  const std::vector<ColoredRectangle> rectangles{{QRectF(0, 0, 20, 20), QColor(225, 0, 0)},
                                                 {QRectF(10, 10, 1, 1), QColor(Qt::white)},
                                                 {QRectF(10, 5, 30, 25), QColor(0, 77, 3)}};
  EXPECT_EQ(drawn(rectangles), filled(rectangles));
}

TEST_F(RectanglePainterTest, CutsRectanglesAtTheTarget) {
  const std::vector<ColoredRectangle> rectangles{{QRectF(-1e9, -3, 1e9 + 5, 7), QColor(Qt::red)},
                                                 {QRectF(31, 13, 1e12, 1e12), QColor(Qt::green)},
                                                 {QRectF(-20, 10, 20, 10), QColor(Qt::white)},
                                                 {QRectF(12, 30, 4, 4), QColor(Qt::white)}};
  EXPECT_EQ(drawn(rectangles), filled(rectangles));
}

TEST_F(RectanglePainterTest, LetsThroughWhatIsBeneathATranslucentColor) {
  m_canvas.clear(Qt::white);
  const QImage image = drawn({{QRectF(0, 0, 10, 10), QColor::fromRgbF(0, 0, 0, 0.45F)}});
  expectNear(image.pixelColor(5, 5), QColor(140, 140, 140));
  expectNear(image.pixelColor(15, 5), Qt::white);
}

TEST_F(RectanglePainterTest, MultipliesEveryOpacity) {
  m_canvas.clear(Qt::white);
  const QImage image = drawn({{QRectF(0, 0, 10, 10), QColor::fromRgbF(0, 0, 0, 0.45F)},
                              {QRectF(10, 0, 10, 10), QColor(Qt::black)}},
                             0.5);
  expectNear(image.pixelColor(5, 5), QColor::fromRgbF(0.775F, 0.775F, 0.775F));
  expectNear(image.pixelColor(15, 5), QColor::fromRgbF(0.5F, 0.5F, 0.5F));
}

TEST_F(RectanglePainterTest, FadesOverlappingRectanglesAsOnePicture) {
  const std::vector<ColoredRectangle> rectangles{
      {QRectF(0, 0, 30, 20), QColor::fromRgbF(0, 0, 0, 0.45F)},
      {QRectF(5, 5, 20, 20), QColor(225, 0, 0)},
      {QRectF(20, 3, 15, 9), QColor(Qt::white)},
      {QRectF(8, 8, 6, 30), QColor::fromRgbF(0, 1, 0, 0.5F)}};
  const QImage before = m_canvas.image();
  const QImage full = drawn(rectangles);
  m_canvas.clear(Qt::blue);
  const QImage half = drawn(rectangles, 0.5);
  for (int y = 0; y < kSize.height(); ++y) {
    for (int x = 0; x < kSize.width(); ++x) {
      const QColor above = full.pixelColor(x, y);
      const QColor below = before.pixelColor(x, y);
      expectNear(half.pixelColor(x, y),
                 QColor((above.red() + below.red()) / 2, (above.green() + below.green()) / 2,
                        (above.blue() + below.blue()) / 2));
    }
  }
}

TEST_F(RectanglePainterTest, DrawsNothingWithoutOpacityRectanglesOrTarget) {
  const std::vector<ColoredRectangle> rectangles{{QRectF(0, 0, 10, 10), QColor(Qt::red)}};
  const double nan = std::numeric_limits<double>::quiet_NaN();
  drawn(rectangles, 0);
  drawn(rectangles, -1);
  drawn(rectangles, nan);
  drawn({});
  drawn({{QRectF(2, 2, 0, 5), QColor(Qt::red)}, {QRectF(nan, 2, 3, nan), QColor(Qt::red)}});
  m_painter.draw(QSize(0, 0), rectangles, 1);
  EXPECT_EQ(m_canvas.image(), filled({}));
}

TEST_F(RectanglePainterTest, TakesAnOpacityAboveOneForOne) {
  const std::vector<ColoredRectangle> rectangles{{QRectF(0, 0, 10, 10), QColor(1, 2, 3)}};
  EXPECT_EQ(drawn(rectangles, 7), filled(rectangles));
}

TEST_F(RectanglePainterTest, DrawsWhateverStateTheContextIsIn) {
  QOpenGLFunctions& gl = *m_canvas.context().functions();
  gl.glViewport(1, 1, 3, 3);
  gl.glEnable(GL_SCISSOR_TEST);
  gl.glScissor(0, 0, 1, 1);
  gl.glEnable(GL_CULL_FACE);
  gl.glFrontFace(GL_CW);
  gl.glColorMask(GL_FALSE, GL_TRUE, GL_FALSE, GL_FALSE);
  gl.glBlendFunc(GL_ZERO, GL_ZERO);
  const std::vector<ColoredRectangle> rectangles{{QRectF(3, 2, 7, 5), QColor(225, 0, 9)}};
  EXPECT_EQ(drawn(rectangles), filled(rectangles));
}

TEST_F(RectanglePainterTest, DrawsAgainAfterARelease) {
  const std::vector<ColoredRectangle> rectangles{{QRectF(3, 2, 7, 5), QColor(225, 0, 0)}};
  drawn(rectangles);
  m_painter.release();
  m_canvas.clear(Qt::blue);
  EXPECT_EQ(drawn(rectangles), filled(rectangles));
}

TEST(RectanglePainter, OutlivesItsContext) {
  RectanglePainter painter;
  {
    OffscreenCanvas canvas(kSize);
    painter.draw(kSize, {{QRectF(0, 0, 5, 5), QColor(Qt::red)}}, 1);
  }
  OffscreenCanvas canvas(kSize);
  painter.release();
  canvas.clear(Qt::blue);
  painter.draw(kSize, {{QRectF(0, 0, 5, 5), QColor(Qt::red)}}, 1);
  EXPECT_EQ(canvas.image().pixelColor(2, 2), QColor(Qt::red));
  painter.release();
}

}  // namespace
}  // namespace vantrel
