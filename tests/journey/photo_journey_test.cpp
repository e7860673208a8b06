#include <cmath>

#include "journey/journey.h"
#include "journey/saved_picture.h"

namespace vantrel {
namespace {

using testing::visible;
using testing::waitUntilGone;

class PhotoJourney : public testing::Journey {
 protected:
  /// From a handle by as many pixels of the source.
  void dragHandle(CropHandle handle, const QPointF& pixels) {
    const QPoint from = middleOf(handle);
    drag(from, from + (pixels * overlay()->overlay().projection().scale()).toPoint());
  }
  /// Closes the review, whose file has been saved.
  void close(ReviewWindow* review) {
    ASSERT_TRUE(testing::activate(review));
    QTest::keyClick(review->windowHandle(), Qt::Key_W, Qt::ControlModifier);
    ASSERT_TRUE(waitUntilGone<ReviewWindow>());
    EXPECT_TRUE(visible<QMessageBox>().isEmpty());
    EXPECT_TRUE(testing::sessionFiles().empty());
  }
};

TEST_F(PhotoJourney, CropsByHandles) {
  testing::savePng(folder / "photo.png", 240, 180);
  const std::string original = testing::readFile(folder / "photo.png");
  ASSERT_NO_FATAL_FAILURE(openByDialog(folder / "photo.png"));
  EXPECT_EQ(editor->windowTitle(), QStringLiteral("photo.png"));

  dragHandle(CropHandle::topLeft, {31, 21});
  EXPECT_EQ(crop(), (CropMargins{31, 21, 0, 0}));
  dragHandle(CropHandle::right, {-50, 9});
  dragHandle(CropHandle::bottom, {7, -40});
  EXPECT_EQ(crop(), (CropMargins{31, 21, 50, 40}));
  EXPECT_EQ(field(Edge::right)->text(), QStringLiteral("50"));
  const QPoint middle = overlay()->overlay().selection().center().toPoint();
  drag(middle, middle + (QPointF(20, -10) * overlay()->overlay().projection().scale()).toPoint());
  EXPECT_EQ(crop(), (CropMargins{51, 11, 30, 50}));
  press(Qt::Key_Down);
  press(Qt::Key_Right, Qt::ShiftModifier);
  EXPECT_EQ(crop(), (CropMargins{61, 12, 20, 49}));
  dragHandle(CropHandle::left, {-500, 0});
  EXPECT_EQ(crop(), (CropMargins{0, 12, 20, 49}));
  press(Qt::Key_Z, Qt::ControlModifier);
  EXPECT_EQ(crop(), (CropMargins{61, 12, 20, 49}));

  press(Qt::Key_P, Qt::ControlModifier);
  EXPECT_TRUE(state().previewOnly());
  ReviewWindow* const review = exportCrop();
  ASSERT_NE(review, nullptr);
  EXPECT_TRUE(review->document().summary().description().startsWith(
      QStringLiteral("PNG · 159 × 119 px · ")));
  ASSERT_NO_FATAL_FAILURE(save(review, folder / "saved.png"));
  ASSERT_NO_FATAL_FAILURE(close(review));
  testing::expectPattern(folder / "saved.png", 159, 119, 61, 12);
  EXPECT_EQ(testing::readFile(folder / "photo.png"), original);
}

TEST_F(PhotoJourney, CropsByTypedNumbersAndUndo) {
  // Slow waves, which a JPEG keeps: a crop one pixel off misses them by far more than it does.
  const auto wave = [](int x, int y, int /*channel*/) {
    return static_cast<uint8_t>(std::lround(128 + 60 * std::sin(x / 9.0) + 60 * std::cos(y / 7.0)));
  };
  testing::JpegSpec spec;
  spec.width = 320;
  spec.height = 200;
  spec.channels = 1;
  spec.sample = wave;
  testing::saveBytes(folder / "photo.jpg", testing::makeJpeg(spec));
  ASSERT_NO_FATAL_FAILURE(openByDialog(folder / "photo.jpg"));

  type(Edge::left, QStringLiteral("11"));
  press(Qt::Key_Return);
  type(Edge::top, QStringLiteral("7"));
  press(Qt::Key_Return);
  type(Edge::right, QStringLiteral("999"));
  press(Qt::Key_Return);
  EXPECT_EQ(crop(), (CropMargins{11, 7, 308, 0}));
  press(Qt::Key_Z, Qt::ControlModifier);
  EXPECT_EQ(crop(), (CropMargins{11, 7, 0, 0}));
  press(Qt::Key_Z, Qt::ControlModifier);
  press(Qt::Key_Z, Qt::ControlModifier);
  EXPECT_EQ(crop(), CropMargins());
  press(Qt::Key_Z, Qt::ControlModifier | Qt::ShiftModifier);
  press(Qt::Key_Z, Qt::ControlModifier | Qt::ShiftModifier);
  EXPECT_EQ(crop(), (CropMargins{11, 7, 0, 0}));
  type(Edge::right, QStringLiteral("20"));
  press(Qt::Key_Return);
  EXPECT_FALSE(state().history().canRedo());
  type(Edge::bottom, QStringLiteral("30"));  // The export takes it as it is being typed.

  ReviewWindow* const review = exportCrop();
  ASSERT_NE(review, nullptr);
  EXPECT_EQ(crop(), (CropMargins{11, 7, 20, 30}));
  EXPECT_TRUE(review->document().summary().description().startsWith(
      QStringLiteral("JPEG · 289 × 163 px · ")));
  ASSERT_NO_FATAL_FAILURE(save(review, folder / "saved.jpg"));
  ASSERT_NO_FATAL_FAILURE(close(review));

  const testing::JpegContents saved = testing::readJpegFile(folder / "saved.jpg");
  ASSERT_EQ(saved.width, 289);
  ASSERT_EQ(saved.height, 163);
  const auto meanMiss = [&](int left, int top) {
    double sum = 0;
    for (int y = 0; y < saved.height; ++y) {
      for (int x = 0; x < saved.width; ++x)
        sum += std::abs(saved.at(x, y, 0) - wave(x + left, y + top, 0));
    }
    return sum / (saved.width * saved.height);
  };
  EXPECT_LT(meanMiss(11, 7), 1);
  for (const auto& [left, top] : {std::pair{10, 7}, {12, 7}, {11, 6}, {11, 8}})
    EXPECT_GT(meanMiss(left, top), 3) << left << ' ' << top;
}

}  // namespace
}  // namespace vantrel
