#include "canvas/crop_canvas.h"

#include <gtest/gtest.h>

#include <QImage>
#include <QTest>
#include <array>
#include <memory>

#include "canvas/crop_appearance.h"

namespace vantrel {
namespace {

constexpr PixelLayout kRgba{ColorModel::Rgb, SampleFormat::UInt8, true};
constexpr QColor kCanvas(40, 80, 120);

/// A picture whose every pixel is `color`.
Bitmap plainPicture(int64_t width, int64_t height, const QColor& color) {
  const auto stride = static_cast<size_t>(width) * 4;
  const std::shared_ptr<std::byte> pixels(new std::byte[stride * static_cast<size_t>(height)],
                                          std::default_delete<std::byte[]>());
  const std::array<int, 4> channels{color.red(), color.green(), color.blue(), color.alpha()};
  for (size_t index = 0; index < stride * static_cast<size_t>(height); ++index) {
    pixels.get()[index] = static_cast<std::byte>(channels.at(index % 4));
  }
  return {width, height, kRgba, pixels, stride, {}};
}

class CropCanvasTest : public ::testing::Test {
 protected:
  void open(const Bitmap& picture) {
    canvas.resize(640, 432);
    canvas.setCanvasColor(kCanvas);
    canvas.setFramingInsets({20, 20, 20, 20});
    canvas.setPicture(picture);
    canvas.show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&canvas));
    ASSERT_TRUE(QTest::qWaitFor([this] { return canvas.isPictureShown(); }));
  }

  /// The colour that is seen at a point of the view.
  QColor colorAt(const QPointF& point) {
    const QImage image = canvas.grab().toImage();
    return image.pixelColor((point * image.devicePixelRatio()).toPoint());
  }

  CropCanvas canvas;
};

TEST_F(CropCanvasTest, ShowsThePictureFittedInItsColours) {
  open(plainPicture(1200, 600, QColor(10, 200, 30)));
  const QRectF frame = canvas.projection().imageFrame();
  EXPECT_EQ(colorAt(frame.center()), QColor(10, 200, 30));
  EXPECT_EQ(colorAt({5, 5}), kCanvas);
  EXPECT_DOUBLE_EQ(frame.width(), 640 - 40 - 240);
}

TEST_F(CropCanvasTest, DimsThePictureButNotTheCanvasOutsideTheCrop) {
  open(plainPicture(1000, 1000, QColor(200, 200, 200)));
  canvas.setCrop({500, 0, 0, 0});
  const QRectF frame = canvas.projection().imageFrame();
  const QPointF middle = frame.center();
  EXPECT_EQ(colorAt({frame.left() + frame.width() * 0.2, middle.y()}), QColor(110, 110, 110));
  EXPECT_EQ(colorAt({frame.left() + frame.width() * 0.8, middle.y()}), QColor(200, 200, 200));
  EXPECT_EQ(colorAt({frame.left() - 30, middle.y()}), kCanvas);
}

TEST_F(CropCanvasTest, DrawsBorderAndHandlesOutsideTheCrop) {
  open(plainPicture(1000, 1000, Qt::black));
  canvas.setCrop({250, 250, 250, 250});
  const QRectF crop = canvas.projection().toView(QRectF(250, 250, 500, 500));
  const double aside = crop.top() + 30;
  EXPECT_EQ(colorAt({crop.left() - 1, aside}), CropAppearance::cropBorder());
  EXPECT_EQ(colorAt({crop.left() + 1, aside}), QColor(Qt::black));
  EXPECT_EQ(colorAt({crop.left() - 4, aside}), QColor(Qt::black));
  EXPECT_EQ(colorAt({crop.left() - 6, crop.top() - 6}), QColor(Qt::white));
  EXPECT_EQ(colorAt({crop.center().x(), crop.bottom() + 5}), QColor(Qt::white));
}

TEST_F(CropCanvasTest, ShowsTheCanvasThroughTransparentPixels) {
  open(plainPicture(300, 300, QColor(0, 0, 0, 0)));
  EXPECT_EQ(colorAt(canvas.projection().imageFrame().center()), kCanvas);
}

TEST_F(CropCanvasTest, ShowsOnlyTheCanvasWithoutAPicture) {
  open(plainPicture(300, 300, Qt::white));
  canvas.setPicture({});
  EXPECT_EQ(colorAt({320, 216}), kCanvas);
  EXPECT_TRUE(canvas.projection().isEmpty());
}

TEST_F(CropCanvasTest, FollowsTheSizeOfTheWindow) {
  open(plainPicture(1000, 500, Qt::red));
  canvas.resize(1000, 700);
  ASSERT_TRUE(QTest::qWaitFor([this] {
    canvas.repaint();
    return canvas.isPictureShown();
  }));
  EXPECT_DOUBLE_EQ(canvas.projection().imageFrame().width(), 1000 - 40 - 240);
  EXPECT_EQ(colorAt(canvas.projection().imageFrame().center()), QColor(Qt::red));
}

}  // namespace
}  // namespace vantrel
