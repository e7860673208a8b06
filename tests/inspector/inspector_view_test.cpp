#include "inspector/inspector_view.h"

#include <gtest/gtest.h>

#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSignalSpy>
#include <QTest>

#include "controls/crop_number_field.h"
#include "export/crop_export_state.h"
#include "inspector/crop_export_footer.h"
#include "inspector/crop_section.h"
#include "model/edit_history.h"

namespace vantrel {
namespace {

class InspectorViewTest : public ::testing::Test {
 protected:
  InspectorViewTest() {
    source.imageSource.emplace();
    source.sourceSize = {640, 480};
    source.loaded = true;
    source.canExport = true;
    history.setPixelStep(1);
  }
  void show() {
    view.setSource(source);
    view.resize(InspectorView::kWidth, 700);
    view.show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&view));
  }
  CropNumberField* field(CropMargins::Edge edge) { return view.cropSection()->marginField(edge); }

  EditHistory history;
  CropExportState exportState;
  InspectorSource source;
  InspectorView view{history, exportState, QColor(225, 0, 0)};
};

TEST_F(InspectorViewTest, ShowsTheMargins) {
  history.setCrop({1, 2, 3, 4});
  show();
  EXPECT_EQ(field(CropMargins::Edge::left)->text(), QStringLiteral("1"));
  EXPECT_EQ(field(CropMargins::Edge::top)->text(), QStringLiteral("2"));
  EXPECT_EQ(field(CropMargins::Edge::right)->text(), QStringLiteral("3"));
  EXPECT_EQ(field(CropMargins::Edge::bottom)->text(), QStringLiteral("4"));
  EXPECT_EQ(view.footer()->statusLabel()->text(), QStringLiteral("636 × 474 px · PNG"));
}

TEST_F(InspectorViewTest, ShowsWhatAVideoHasOfTheFacts) {
  source.imageSource->colorProfileName = QStringLiteral("Wide");
  show();
  source.imageSource.reset();
  source.sourceBytes = 34'000;
  view.setSource(source);
  QStringList shown;
  for (const QLabel* label : view.findChildren<QLabel*>()) {
    if (label->isVisible()) shown << label->text();
  }
  EXPECT_TRUE(shown.contains(QStringLiteral("640 × 480")));
  EXPECT_TRUE(shown.contains(QStringLiteral("34 kB")));
  EXPECT_FALSE(shown.contains(QStringLiteral("Format")));
  EXPECT_FALSE(shown.contains(QStringLiteral("Wide")));
  EXPECT_EQ(view.footer()->statusLabel()->text(), QStringLiteral("640 × 480 px · HEVC"));
}

TEST_F(InspectorViewTest, SetsALegalMargin) {
  history.setCrop({0, 0, 100, 0});
  show();
  Q_EMIT field(CropMargins::Edge::left)->valueEdited(5000);
  EXPECT_EQ(history.crop(), (CropMargins{539, 0, 100, 0}));
  EXPECT_EQ(field(CropMargins::Edge::left)->text(), QStringLiteral("539"));
  Q_EMIT field(CropMargins::Edge::top)->valueEdited(-5);
  EXPECT_EQ(history.crop().top, 0);
}

TEST_F(InspectorViewTest, CutsALongProfileShortAndTellsAllOfIt) {
  const QString name = QStringLiteral("<b>Wide</b> gamut, ") + QString(60, QLatin1Char('m'));
  source.imageSource->colorProfileName = name;
  show();
  QLabel* value = nullptr;
  for (QLabel* label : view.findChildren<QLabel*>()) {
    if (label->text() == name) value = label;
  }
  ASSERT_NE(value, nullptr);
  EXPECT_TRUE(value->toolTip().contains(name.toHtmlEscaped()));
  const QImage shown = value->grab().toImage();
  const QString cut = value->fontMetrics().elidedText(name, Qt::ElideRight, value->width());
  ASSERT_TRUE(cut.endsWith(QStringLiteral("…")));
  value->setText(cut);
  EXPECT_EQ(value->grab().toImage(), shown);
}

TEST_F(InspectorViewTest, LeavesDropsToTheWindow) {
  show();
  for (const QLineEdit* text : view.findChildren<QLineEdit*>())
    EXPECT_FALSE(text->acceptDrops());
}

TEST_F(InspectorViewTest, ShowsDashesWithoutAFile) {
  source = {};
  show();
  EXPECT_FALSE(view.cropSection()->isEnabled());
  EXPECT_TRUE(field(CropMargins::Edge::left)->text().isEmpty());
  EXPECT_EQ(view.footer()->statusLabel()->text(), QStringLiteral("Ready"));
  EXPECT_FALSE(view.footer()->exportButton()->isEnabled());
}

TEST_F(InspectorViewTest, AllowsNoEditWhileBusy) {
  source.busy = true;
  source.canExport = false;
  show();
  EXPECT_FALSE(view.cropSection()->isEnabled());
  EXPECT_FALSE(view.footer()->exportButton()->isEnabled());
}

TEST_F(InspectorViewTest, TurnsTheButtonIntoProgressAndBack) {
  show();
  QSignalSpy started(&view, &InspectorView::exportRequested);
  QSignalSpy cancelled(&view, &InspectorView::cancelRequested);
  QTest::mouseClick(view.footer()->exportButton(), Qt::LeftButton);
  EXPECT_EQ(started.count(), 1);
  EXPECT_FALSE(view.footer()->cancelButton()->isVisible());

  exportState.setIndeterminate(true);
  exportState.setProgress(0.0);
  EXPECT_FALSE(view.footer()->exportButton()->isVisible());
  ASSERT_TRUE(view.footer()->cancelButton()->isVisible());
  QTest::mouseClick(view.footer()->cancelButton(), Qt::LeftButton);
  EXPECT_EQ(cancelled.count(), 1);

  exportState.setMessage(CropExportState::Message::cancelled);
  exportState.setProgress({});
  EXPECT_TRUE(view.footer()->exportButton()->isVisible());
  EXPECT_EQ(view.footer()->statusLabel()->text(), QStringLiteral("Export cancelled"));
}

}  // namespace
}  // namespace vantrel
