#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <limits>
#include <memory>
#include <utility>
#include <vector>

#include "platform/gl/drawn_picture.h"
#include "support/bitmap_maker.h"

namespace vantrel {
namespace {

using testing::displayPixels;
using testing::drawComplete;
using testing::makeBitmap;
using testing::OffscreenCanvas;
using testing::scatter;
using testing::viewOf;

constexpr QSize kSize(300, 200);
constexpr PixelLayout kRgb{ColorModel::Rgb, SampleFormat::UInt8, false};
constexpr PixelLayout kRgba{ColorModel::Rgb, SampleFormat::UInt8, true};

Bitmap noise(int64_t width, int64_t height, PixelLayout layout = kRgb) {
  return makeBitmap(width, height, layout,
                    [](int64_t x, int64_t y, int channel) { return scatter(x, y, channel) >> 8; });
}

/// Soft shapes.
Bitmap waves(int64_t width, int64_t height) {
  return makeBitmap(width, height, kRgb, [](int64_t x, int64_t y, int channel) {
    const double along = static_cast<double>(x) / (5 + 4 * channel);
    const double across = static_cast<double>(y) / (17 - 3 * channel);
    return std::floor(127.5 + 80 * std::sin(along) + 47 * std::sin(across + along / 9));
  });
}

class ImageContentTest : public ::testing::Test {
 protected:
  ImageContentTest() : m_canvas(kSize) {}
  ~ImageContentTest() override { m_renderer.release(); }

  QImage shown(const PictureView& view, const QColor& background = Qt::black) {
    return drawComplete(m_canvas, m_renderer, view, background);
  }
  QImage shown(const Bitmap& image, const QPointF& origin, double scale) {
    m_renderer.setImage(image);
    return shown(viewOf(image, kSize, origin, scale));
  }

  OffscreenCanvas m_canvas;
  PictureRenderer m_renderer;
};

/// What `image` looks like magnified, by the rule that the edge of source pixel x lies at the
/// rounded device pixel.
QImage magnified(const QImage& image, const QPointF& origin, double scale) {
  QImage result(kSize, QImage::Format_RGBA8888);
  result.fill(Qt::black);
  const auto edge = [scale](double start, int pixel) {
    return static_cast<int>(std::lround(start + pixel * scale));
  };
  for (int y = 0; y < image.height(); ++y) {
    const int top = std::max(0, edge(origin.y(), y));
    const int bottom = std::min(kSize.height(), edge(origin.y(), y + 1));
    for (int row = top; row < bottom; ++row) {
      for (int x = 0; x < image.width(); ++x) {
        const int right = std::min(kSize.width(), edge(origin.x(), x + 1));
        for (int column = std::max(0, edge(origin.x(), x)); column < right; ++column) {
          result.setPixel(column, row, image.pixel(x, y));
        }
      }
    }
  }
  return result;
}

TEST_F(ImageContentTest, ShowsThePixelsOfTheDisplayAtFullSize) {
  const Bitmap image = noise(700, 600);
  const QPointF origin(-211, -305);
  EXPECT_EQ(shown(image, origin, 1), magnified(displayPixels(image), origin, 1));
}

TEST_F(ImageContentTest, MagnifiesToSquaresWithEdgesOnTheRoundedDevicePixels) {
  const Bitmap image = noise(530, 290);
  const QImage pixels = displayPixels(image);
  for (const double scale : {1.0, 1.1, 1.25, 1.5, 2.0, 2.5, 3.3, 7.77, 10.0, 50.0}) {
    for (const QPointF& origin : {QPointF(3, 5), QPointF(-40, -17), QPointF(-255 * scale, -90)}) {
      const QPointF whole(std::round(origin.x()), origin.y());
      EXPECT_EQ(shown(image, whole, scale), magnified(pixels, whole, scale))
          << scale << " at " << whole.x() << ", " << whole.y();
    }
  }
}

TEST_F(ImageContentTest, MagnifiesTheFarEndOfAPanoramaExactly) {
  const Bitmap image = noise(30'000, 100);
  const double scale = 10.1;
  const QPointF origin(-std::round(29'985 * scale), -300);
  m_renderer.setImage(image);
  const QImage drawn = shown(viewOf(image, kSize, origin, scale));
  const QImage pixels = displayPixels(image);
  for (int x = 0; x < kSize.width(); ++x) {
    int64_t pixel = 29'980;
    while (pixel < 30'000 &&
           std::lround(origin.x() + static_cast<double>(pixel + 1) * scale) <= x) {
      ++pixel;
    }
    const QRgb expected =
        pixel < 30'000 ? pixels.pixel(static_cast<int>(pixel), 34) : QColor(Qt::black).rgb();
    ASSERT_EQ(drawn.pixel(x, 48), expected) << x;
  }
}

/// The mean of the pixels under each device pixel of a reduced picture; beyond its border the
/// picture goes on as it ends.
QColor meanUnder(const QImage& image, const QPointF& origin, double scale, int column, int row) {
  double red = 0, green = 0, blue = 0, covered = 0;
  const auto overlap = [scale](double start, int device, int pixel) {
    const double begin = (device - start) / scale;
    return std::min(begin + 1 / scale, pixel + 1.0) - std::max<double>(begin, pixel);
  };
  const int left = static_cast<int>(std::floor((column - origin.x()) / scale));
  const int top = static_cast<int>(std::floor((row - origin.y()) / scale));
  const int reach = static_cast<int>(std::ceil(1 / scale)) + 1;
  for (int y = top; y < top + reach; ++y) {
    for (int x = left; x < left + reach; ++x) {
      const double weight = std::max(0.0, overlap(origin.x(), column, x)) *
                            std::max(0.0, overlap(origin.y(), row, y));
      const QRgb pixel =
          image.pixel(std::clamp(x, 0, image.width() - 1), std::clamp(y, 0, image.height() - 1));
      red += weight * qRed(pixel);
      green += weight * qGreen(pixel);
      blue += weight * qBlue(pixel);
      covered += weight;
    }
  }
  return QColor(static_cast<int>(std::lround(red / covered)),
                static_cast<int>(std::lround(green / covered)),
                static_cast<int>(std::lround(blue / covered)));
}

int difference(const QColor& a, const QColor& b) {
  return std::max({std::abs(a.red() - b.red()), std::abs(a.green() - b.green()),
                   std::abs(a.blue() - b.blue())});
}

/// The largest difference between what is drawn inside the picture, and the means of its pixels; a
/// failure for every pixel outside it that is not black.
int worstOfReduced(const QImage& drawn, const QImage& pixels, const QPointF& origin, double scale) {
  const auto right = std::lround(origin.x() + pixels.width() * scale);
  const auto bottom = std::lround(origin.y() + pixels.height() * scale);
  int worst = 0;
  for (int y = 0; y < drawn.height(); ++y) {
    for (int x = 0; x < drawn.width(); ++x) {
      const bool isInside = x >= origin.x() && x < right && y >= origin.y() && y < bottom;
      if (isInside) {
        worst = std::max(
            worst, difference(drawn.pixelColor(x, y), meanUnder(pixels, origin, scale, x, y)));
      } else {
        EXPECT_EQ(drawn.pixelColor(x, y), QColor(Qt::black)) << x << ", " << y;
      }
    }
  }
  return worst;
}

TEST_F(ImageContentTest, ReducesToTheMeanOfThePixelsUnderEachDevicePixel) {
  const Bitmap image = noise(560, 390);
  const QImage pixels = displayPixels(image);
  for (const double scale : {0.97, 0.8, 0.70001, 2 / 3.0, 0.55, 0.5}) {
    for (const QPointF& origin : {QPointF(4, 3), QPointF(-101, -77)}) {
      EXPECT_LE(worstOfReduced(shown(image, origin, scale), pixels, origin, scale), 2)
          << scale << " at " << origin.x() << ", " << origin.y();
    }
  }
}

TEST_F(ImageContentTest, ReducesStronglyByWayOfThePictureAtAPowerOfTwo) {
  const Bitmap image = noise(2611, 1702);
  for (const auto& [scale, reduction] : std::vector<std::pair<double, int>>{
           {0.45, 2}, {0.25, 4}, {0.2, 4}, {0.115, 8}, {0.03, 32}, {0.004, 128}}) {
    const QImage reduced = displayPixels(image, reduction);
    for (const QPointF& origin : {QPointF(2, 0), QPointF(-13, -9)}) {
      const QImage drawn = shown(image, origin, scale);
      const auto right = std::lround(origin.x() + 2611 * scale);
      const auto bottom = std::lround(origin.y() + 1702 * scale);
      int worst = 0;
      for (int y = 0; y < std::min<int>(kSize.height(), bottom); ++y) {
        for (int x = std::max(0, qRound(origin.x())); x < std::min<int>(kSize.width(), right);
             ++x) {
          const QColor mean = meanUnder(reduced, origin, scale * reduction, x, y);
          worst = std::max(worst, difference(drawn.pixelColor(x, y), mean));
        }
      }
      EXPECT_LE(worst, 2) << scale << " at " << origin.x();
    }
  }
}

TEST_F(ImageContentTest, KeepsEdgesInPlaceWhenReduced) {
  for (const int edge : {0, 1, 700, 1531, 2047, 2048, 2049, 2600}) {
    const Bitmap image =
        makeBitmap(2611, 50, kRgb, [edge](int64_t x, int64_t, int) { return x < edge ? 255 : 0; });
    for (const double scale : {0.11, 0.1, 0.0626, 0.06, 0.03}) {
      const QImage drawn = shown(image, {5, 0}, scale);
      double white = 0;
      for (int x = 0; x < kSize.width(); ++x)
        white += qRed(drawn.pixel(x, 0)) / 255.0;
      EXPECT_NEAR(white, edge * scale, 0.5) << edge << " at " << scale;
    }
  }
}

TEST_F(ImageContentTest, ReducesAnEvenColorWithoutSeams) {
  const Bitmap image =
      makeBitmap(1500, 1100, kRgb, [](int64_t, int64_t, int channel) { return 60 + 70 * channel; });
  for (const double scale : {0.99, 0.73, 0.31, 0.2}) {
    const QImage drawn = shown(image, {0, 0}, scale);
    for (int y = 0; y < kSize.height(); ++y) {
      for (int x = 0; x < kSize.width(); ++x) {
        ASSERT_LE(difference(drawn.pixelColor(x, y), QColor(60, 130, 200)), 1)
            << x << ", " << y << " at " << scale;
      }
    }
  }
}

TEST_F(ImageContentTest, LaysAlphaOverWhatIsThere) {
  const Bitmap image = noise(100, 90, kRgba);
  const QImage pixels = displayPixels(image);
  const QColor background(10, 200, 90);
  m_renderer.setImage(image);
  const QImage drawn = shown(viewOf(image, kSize, {20, 30}, 2), background);
  for (int y = 0; y < kSize.height(); ++y) {
    for (int x = 0; x < kSize.width(); ++x) {
      const bool isInside = x >= 20 && x < 220 && y >= 30;
      QColor expected = background;
      if (isInside) {
        const uchar* pixel = pixels.constScanLine((y - 30) / 2) + (x - 20) / 2 * 4;
        const auto over = [&](int channel, int below) {
          return pixel[channel] + static_cast<int>(std::lround(below * (255 - pixel[3]) / 255.0));
        };
        expected = QColor(over(0, 10), over(1, 200), over(2, 90));
      }
      ASSERT_LE(difference(drawn.pixelColor(x, y), expected), 1) << x << ", " << y;
    }
  }
}

TEST_F(ImageContentTest, FadesWhatTheCropExcludes) {
  const Bitmap image = makeBitmap(200, 200, kRgb, [](int64_t, int64_t, int) { return 200; });
  m_renderer.setImage(image);
  for (const double scale : {1.0, 0.75}) {
    for (const double opacity : {0.0, 0.25, 0.5, 1.0}) {
      PictureView view = viewOf(image, kSize, {10, 20}, scale);
      view.retained = QRectF(50, 60, 41, 33);
      view.excludedOpacity = opacity;
      const QImage drawn = shown(view, QColor(0, 0, 0));
      for (int y = 0; y < kSize.height(); ++y) {
        for (int x = 0; x < kSize.width(); ++x) {
          const bool isKept = x >= 50 && x < 91 && y >= 60 && y < 93;
          const bool isPicture = x >= 10 && x < 10 + 200 * scale && y >= 20 && y < 20 + 200 * scale;
          const double expected = isKept ? 200 : isPicture ? 200 * opacity : 0;
          ASSERT_NEAR(qRed(drawn.pixel(x, y)), expected, 1) << x << ", " << y;
        }
      }
    }
  }
}

TEST_F(ImageContentTest, ShowsPicturesOfOnePixelAndOnePixelWide) {
  const Bitmap pixel = noise(1, 1);
  EXPECT_EQ(shown(pixel, {7, 9}, 30), magnified(displayPixels(pixel), {7, 9}, 30));
  const Bitmap tall = noise(1, 20'000);
  EXPECT_EQ(shown(tall, {7, -19'990 * 12}, 12),
            magnified(displayPixels(tall), {7, -19'990 * 12}, 12));
}

TEST_F(ImageContentTest, ShowsALineOfAPictureThatIsThinnerThanADevicePixel) {
  const Bitmap tall = makeBitmap(1, 20'000, kRgb, [](int64_t, int64_t, int) { return 180; });
  const QImage drawn = shown(tall, {40, 0}, 0.01);
  for (int x = 0; x < kSize.width(); ++x) {
    EXPECT_EQ(qRed(drawn.pixel(x, 100)), x == 40 ? 180 : 0) << x;
  }
}

TEST_F(ImageContentTest, DrawsNothingForAViewWithoutAPicture) {
  const Bitmap image = noise(50, 50);
  m_renderer.setImage(image);
  const double nan = std::numeric_limits<double>::quiet_NaN();
  const double infinity = std::numeric_limits<double>::infinity();
  for (const QRectF& frame :
       {QRectF(), QRectF(10, 10, 0, 20), QRectF(10, 10, -20, 20), QRectF(400, 0, 50, 50),
        QRectF(0, -60, 50, 50), QRectF(1e12, 0, 50, 50), QRectF(nan, 0, 50, 50),
        QRectF(0, 0, nan, 50), QRectF(0, 0, infinity, 50), QRectF(-infinity, 0, 50, 50),
        QRectF(-1e300, 0, 1e301, 50)}) {
    m_canvas.clear(Qt::black);
    m_renderer.draw({kSize, frame, frame, 1});
    QImage empty(kSize, QImage::Format_RGBA8888);
    empty.fill(Qt::black);
    EXPECT_EQ(m_canvas.image(), empty);
    EXPECT_TRUE(m_renderer.isComplete());
  }
  m_renderer.draw({QSize(0, 0), QRectF(0, 0, 50, 50), QRectF(0, 0, 50, 50), 1});
  EXPECT_TRUE(m_renderer.isComplete());
}

TEST_F(ImageContentTest, IsDrawnAnewAfterARelease) {
  const Bitmap image = noise(700, 600);
  const QImage before = shown(image, {-20, -30}, 1);
  EXPECT_GT(m_renderer.textureBytes(), 0);
  m_renderer.release();
  EXPECT_EQ(m_renderer.textureBytes(), 0);
  EXPECT_FALSE(m_renderer.isComplete());
  EXPECT_EQ(shown(viewOf(image, kSize, {-20, -30}, 1)), before);
}

TEST_F(ImageContentTest, MovesToAnotherContextAfterARelease) {
  const Bitmap image = noise(120, 90);
  const QImage before = shown(image, {0, 0}, 1);
  m_renderer.release();
  OffscreenCanvas other(kSize);
  EXPECT_EQ(drawComplete(other, m_renderer, viewOf(image, kSize, {0, 0}, 1)), before);
  m_renderer.release();
}

TEST_F(ImageContentTest, ChangesNothingForTheSamePixels) {
  const Bitmap image = noise(120, 90);
  static_cast<void>(shown(image, {0, 0}, 1));
  const int64_t bytes = m_renderer.textureBytes();
  m_renderer.setImage(Bitmap(image));
  EXPECT_TRUE(m_renderer.isComplete());
  EXPECT_EQ(m_renderer.textureBytes(), bytes);
}

TEST_F(ImageContentTest, ShowsAnotherPictureInstead) {
  const Bitmap first = noise(120, 90);
  const Bitmap second = waves(121, 91);
  static_cast<void>(shown(first, {0, 0}, 1));
  EXPECT_EQ(shown(second, {0, 0}, 1), magnified(displayPixels(second), {0, 0}, 1));
  m_renderer.setImage({});
  m_canvas.clear(Qt::black);
  m_renderer.draw(viewOf(second, kSize, {0, 0}, 1));
  EXPECT_EQ(m_canvas.image().pixelColor(10, 10), QColor(Qt::black));
  EXPECT_EQ(m_renderer.textureBytes(), 0);
}

/// A grey picture whose rows all lie in the same memory, so that it may be huge.
Bitmap hugePicture(int64_t width, int64_t height) {
  const std::shared_ptr<std::byte> row(new std::byte[static_cast<size_t>(width)],
                                       std::default_delete<std::byte[]>());
  std::fill_n(row.get(), width, std::byte{120});
  return Bitmap(width, height, {ColorModel::Gray, SampleFormat::UInt8, false}, row, 0, {});
}

TEST_F(ImageContentTest, ShowsSomethingCoarserUntilTilesAreThere) {
  const Bitmap image = hugePicture(6000, 4000);
  QImage even(kSize, QImage::Format_RGBA8888);
  even.fill(QColor(120, 120, 120));
  EXPECT_EQ(shown(image, {0, 0}, 0.05), even);
  for (const double scale : {0.2, 0.51, 1.0, 10.0, 1.0, 0.3, 0.05}) {
    m_canvas.clear(Qt::black);
    m_renderer.draw(viewOf(image, kSize, {0, 0}, scale));
    EXPECT_EQ(m_canvas.image(), even) << scale;
  }
}

TEST_F(ImageContentTest, KeepsTexturesWithinTheLimitAndUploadsLittleAtATime) {
  constexpr int64_t kMostUploaded = int64_t{9} << 19;
  // Most of it is cut off by the framebuffer, but all of it is asked for.
  const QSize target(8192, 4608);
  const Bitmap image = hugePicture(33'000, 16'500);
  m_renderer.setImage(image);
  QSignalSpy improved(&m_renderer, &PictureRenderer::pictureImproved);
  int64_t most = 0;
  for (const auto& [left, scale] :
       std::vector<std::pair<double, double>>{{0, 0.51}, {0, 1}, {-8192, 1}, {-16384, 1}}) {
    const PictureView view = viewOf(image, target, {left, 0}, scale);
    do {
      const int64_t before = m_renderer.textureBytes();
      m_renderer.draw(view);
      ASSERT_LE(m_renderer.textureBytes(), PictureRenderer::kMostTextureBytes);
      ASSERT_LE(m_renderer.textureBytes() - before, kMostUploaded);
      most = std::max(most, m_renderer.textureBytes());
      if (m_renderer.isComplete()) break;
    } while (!improved.isEmpty() || improved.wait(60'000));
    EXPECT_TRUE(m_renderer.isComplete());
  }
  EXPECT_GT(most, PictureRenderer::kMostTextureBytes - (int64_t{4} << 20));
}

TEST_F(ImageContentTest, TellsOfImprovementsOnceForEachTurnOfTheEventLoop) {
  m_renderer.setImage(hugePicture(3000, 3000));
  QSignalSpy improved(&m_renderer, &PictureRenderer::pictureImproved);
  const PictureView view = viewOf(hugePicture(3000, 3000), kSize, {0, 0}, 1);
  do {
    improved.clear();
    m_renderer.draw(view);
    m_renderer.draw(view);
    m_renderer.draw(view);
    if (m_renderer.isComplete()) return;
    ASSERT_TRUE(improved.wait(60'000));
  } while (improved.size() == 1);
  ADD_FAILURE() << improved.size() << " signals";
}

TEST_F(ImageContentTest, CanBeReplacedAndDestroyedWhileTilesAreMade) {
  m_renderer.setImage(hugePicture(40'000, 30'000));
  const PictureView view = viewOf(noise(50, 50), kSize, {0, 0}, 4);
  m_renderer.draw(view);
  m_renderer.setImage(hugePicture(40'000, 30'001));
  m_renderer.draw(view);
  PictureRenderer other;
  other.setImage(hugePicture(40'000, 30'000));
}

}  // namespace
}  // namespace vantrel
