#include "review/image_review_view.h"

#include <gtest/gtest.h>

#include <QFontMetricsF>
#include <QTest>
#include <cmath>

#include "controls/picture_preview.h"
#include "review/export_information.h"
#include "support/picture_files.h"
#include "support/temporary_folder.h"

namespace vantrel {
namespace {

ExportSummary summaryOf(double width, double height) {
  ExportSummary summary;
  summary.imageFormat = QStringLiteral("PNG");
  summary.codec = *summary.imageFormat;
  summary.resolution = {width, height};
  summary.bytes = 1200000;
  return summary;
}

TEST(ImageReviewView, ShowsTheFileAndTheSummary) {
  const testing::TemporaryFolder folder;
  testing::PngSpec spec;
  spec.width = 60;
  spec.height = 60;
  spec.sample = [](uint32_t, uint32_t, int channel) -> uint16_t { return channel == 1 ? 200 : 30; };
  testing::saveBytes(folder / "a.png", testing::makePng(spec));

  ImageReviewView view(folder / "a.png", summaryOf(60, 60));
  view.resize(400, 300);
  view.show();
  ASSERT_TRUE(QTest::qWaitForWindowExposed(&view));
  ASSERT_TRUE(QTest::qWaitFor([&] { return view.isImageShown(); }));
  const QImage image = view.grab().toImage();
  const double ratio = image.devicePixelRatio();
  EXPECT_EQ(image.pixelColor((QPointF(200, 150) * ratio).toPoint()), QColor(30, 200, 30));
  EXPECT_EQ(image.pixelColor((QPointF(20, 250) * ratio).toPoint()),
            view.palette().color(QPalette::Window));

  const auto* information = view.findChild<ExportInformation*>();
  ASSERT_NE(information, nullptr);
  EXPECT_EQ(information->pos(), QPoint(12, 12));
  EXPECT_EQ(information->description(), QStringLiteral("PNG · 60 × 60 px · 1.2 MB"));
  EXPECT_EQ(view.childAt(20, 20), nullptr) << "clicks pass through";
}

TEST(ExportInformation, PadsItsLineEvenly) {
  const ExportInformation information(summaryOf(640, 480));
  const QFontMetricsF metrics(information.font());
  EXPECT_EQ(information.sizeHint(),
            QSize(static_cast<int>(std::ceil(metrics.horizontalAdvance(information.description()))),
                  static_cast<int>(std::ceil(metrics.height()))) +
                QSize(20, 12));
}

TEST(ImageReviewView, KeepsTheSummaryInTheCornerOfTheSmallestWindow) {
  const testing::TemporaryFolder folder;
  testing::savePng(folder / "a.png", 10, 10);
  ImageReviewView view(folder / "a.png", summaryOf(10, 10));
  view.resize(1, 1);
  view.show();
  ASSERT_TRUE(QTest::qWaitForWindowExposed(&view));
  EXPECT_EQ(view.minimumSize(), QSize(300, 200));
  EXPECT_EQ(view.findChild<ExportInformation*>()->pos(), QPoint(12, 12));
}

TEST(ImageReviewView, StaysEmptyForAFileThatCannotBeRead) {
  const testing::TemporaryFolder folder;
  ImageReviewView view(folder / "missing.png", summaryOf(10, 10));
  view.show();
  ASSERT_TRUE(QTest::qWaitForWindowExposed(&view));
  const auto* preview = view.findChild<PicturePreview*>();
  ASSERT_TRUE(QTest::qWaitFor([&] { return !preview->isRendering(); }));
  EXPECT_FALSE(view.isImageShown());
}

}  // namespace
}  // namespace vantrel
