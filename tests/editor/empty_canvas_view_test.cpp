#include "editor/empty_canvas_view.h"

#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QAccessible>
#include <QSignalSpy>
#include <QTest>

namespace vantrel {
namespace {

class EmptyCanvasViewTest : public ::testing::Test {
 protected:
  EmptyCanvasViewTest() {
    view.resize(700, 600);
    view.show();
  }

  EmptyCanvasView view;
  QAbstractButton& open = *view.openButton();
  QAbstractButton& sample = *view.sampleButton();
};

TEST_F(EmptyCanvasViewTest, StandsInTheMiddle) {
  const QRect artwork = view.artworkFrame();
  EXPECT_EQ(artwork.size(), QSize(256, 256));
  EXPECT_EQ(open.y() - (artwork.y() + artwork.height()), 32);
  EXPECT_EQ(sample.y() - (open.y() + open.height()), 12);
  EXPECT_GE(open.width(), 120);
  const int above = artwork.y(), below = view.height() - (sample.y() + sample.height());
  EXPECT_NEAR(above, below, 1);
  for (const QRect& part : {artwork, open.geometry(), sample.geometry()})
    EXPECT_NEAR(part.x() + part.width() / 2.0, view.width() / 2.0, 1);
}

TEST_F(EmptyCanvasViewTest, SaysWhatItOffers) {
  EXPECT_EQ(open.text(), QStringLiteral("Drop or Open…"));
  EXPECT_EQ(sample.text(), QStringLiteral("Sample Video"));
  EXPECT_TRUE(sample.font().underline());
  EXPECT_LT(QFontInfo(sample.font()).pixelSize(), QFontInfo(open.font()).pixelSize());
  QSignalSpy openAsked(&view, &EmptyCanvasView::openRequested);
  QSignalSpy sampleAsked(&view, &EmptyCanvasView::sampleRequested);
  QTest::mouseClick(&open, Qt::LeftButton);
  EXPECT_EQ(openAsked.count(), 1);
  EXPECT_EQ(sampleAsked.count(), 0);
  QTest::mouseClick(&sample, Qt::LeftButton);
  EXPECT_EQ(sampleAsked.count(), 1);
}

TEST_F(EmptyCanvasViewTest, DrawsTheArtworkInItsFrame) {
  const QImage image = view.grab(view.artworkFrame()).toImage();
  const QColor behind = view.grab(QRect(0, 0, 1, 1)).toImage().pixelColor(0, 0);
  int drawn = 0;
  for (int y = 0; y < image.height(); ++y) {
    for (int x = 0; x < image.width(); ++x)
      drawn += image.pixelColor(x, y) != behind ? 1 : 0;
  }
  EXPECT_GT(drawn, image.width() * image.height() / 20);
}

TEST_F(EmptyCanvasViewTest, KeepsTheArtworkFromAssistiveTools) {
  QAccessibleInterface* const root = QAccessible::queryAccessibleInterface(&view);
  ASSERT_NE(root, nullptr);
  ASSERT_EQ(root->childCount(), 2);
  EXPECT_EQ(root->child(0)->text(QAccessible::Name), QStringLiteral("Drop or Open…"));
  EXPECT_EQ(root->child(1)->text(QAccessible::Name), QStringLiteral("Sample Video"));
}

}  // namespace
}  // namespace vantrel
