#include "inspector/crop_export_footer.h"

#include <QAccessible>
#include <QLineEdit>
#include <QPushButton>
#include <QSignalSpy>
#include <QToolButton>

#include "controls/popover.h"
#include "controls/slim_progress_bar.h"
#include "inspector/export_footer_text.h"
#include "inspector/inspector_window.h"

namespace vantrel {
namespace {

class CropExportFooterTest : public testing::InspectorWindow {
 protected:
  CropExportFooterTest() { openImage(); }
  CropExportFooter* footer() { return view.footer(); }
  void run(double progress, bool indeterminate = false) {
    exportState.setIndeterminate(indeterminate);
    exportState.setProgress(progress);
  }
  /// Starts an export by the button, as soon as it has been pressed.
  void runWhenPressed() {
    QObject::connect(&view, &InspectorView::exportRequested, &view, [this] { run(0); });
  }
  QString phase() { return footer()->phaseLabel()->text(); }
  double fullness() {
    const SlimProgressBar& bar = *footer()->progressBar();
    return static_cast<double>(bar.value()) / bar.maximum();
  }
};

TEST_F(CropExportFooterTest, IsAStripOfOneHeight) {
  show();
  const auto check = [this] {
    EXPECT_EQ(footer()->height(), 90);
    EXPECT_EQ(placeOf(footer()).bottom(), view.height() - 1);
  };
  check();
  EXPECT_EQ(footer()->exportButton()->height(), 34);
  EXPECT_EQ(placeOf(footer()->exportButton()).y(), placeOf(footer()).y() + 12);
  EXPECT_EQ(placeOf(footer()->helpButton()).y(), placeOf(footer()).y() + 12 + 34 + 8);
  EXPECT_EQ(placeOf(footer()->helpButton()).bottom(), placeOf(footer()).bottom() - 12);
  EXPECT_EQ(placeOf(footer()->exportButton()).x(), 17);
  EXPECT_EQ(placeOf(footer()->exportButton()).right(), InspectorView::kWidth - 17);
  run(0.5);
  QCoreApplication::processEvents();
  check();
  EXPECT_EQ(placeOf(footer()->cancelButton()).right(), InspectorView::kWidth - 17);
  EXPECT_EQ(footer()->cancelButton()->height(), 24);
}

/// Counts how often a label was painted, and how often without room for its text.
class PaintWatch final : public QObject {
 public:
  explicit PaintWatch(QLabel* label) : m_label(*label) { label->installEventFilter(this); }

  int paints = 0, cut = 0;

 protected:
  bool eventFilter(QObject* /*watched*/, QEvent* event) override {
    if (event->type() != QEvent::Paint) return false;
    ++paints;
    if (m_label.width() < m_label.sizeHint().width()) ++cut;
    return false;
  }

 private:
  QLabel& m_label;
};

TEST_F(CropExportFooterTest, NeverShowsItsBytesCutShort) {
  show();
  run(0);
  PaintWatch watch(footer()->bytesLabel());
  for (int step = 1; step < 10; ++step) {
    exportState.setBytes(7 << (3 * step));
    exportState.setProgress(step / 10.0);
  }
  QCoreApplication::processEvents();
  EXPECT_GT(watch.paints, 0);
  EXPECT_EQ(watch.cut, 0);
}

// What starts an export can keep the window from the next turn of the event loop for a while.
TEST_F(CropExportFooterTest, HasAllInItsPlaceAtOnceWhenAnExportBeginsAndEnds) {
  show();
  QCoreApplication::processEvents();
  run(0);
  EXPECT_EQ(placeOf(footer()->cancelButton()).right(), InspectorView::kWidth - 17);
  EXPECT_EQ(footer()->cancelButton()->height(), 24);
  EXPECT_EQ(placeOf(footer()->bytesLabel()).right(), InspectorView::kWidth - 17);
  EXPECT_GE(footer()->bytesLabel()->width(), footer()->bytesLabel()->sizeHint().width());
  exportState.setBytes(123'000'000);
  EXPECT_GE(footer()->bytesLabel()->width(), footer()->bytesLabel()->sizeHint().width());
  exportState.setProgress({});
  EXPECT_EQ(placeOf(footer()->helpButton()).right(), InspectorView::kWidth - 13);
  EXPECT_EQ(placeOf(footer()->exportButton()).width(), InspectorView::kWidth - 33);
}

TEST_F(CropExportFooterTest, IsRedOnlyWhileItMayExport) {
  show();
  const auto color = [this](QPalette::ColorRole role) {
    return footer()->exportButton()->palette().color(role);
  };
  EXPECT_EQ(color(QPalette::Button), QColor(225, 0, 0));
  EXPECT_EQ(color(QPalette::ButtonText), QColor(Qt::white));
  EXPECT_EQ(footer()->exportButton()->toolTip(),
            QStringLiteral("Encode and review the crop (Ctrl+Shift+E)"));
  source.canExport = false;
  view.setSource(source);
  EXPECT_EQ(color(QPalette::Button), view.palette().color(QPalette::Button));
  EXPECT_EQ(color(QPalette::ButtonText), view.palette().color(QPalette::PlaceholderText));
  QSignalSpy started(&view, &InspectorView::exportRequested);
  QTest::mouseClick(footer()->exportButton(), Qt::LeftButton);
  EXPECT_EQ(started.count(), 0);
}

TEST_F(CropExportFooterTest, ShowsHowFarItIs) {
  show();
  run(0);
  EXPECT_EQ(phase(), QStringLiteral("Exporting 0%"));
  EXPECT_EQ(footer()->bytesLabel()->text(), QStringLiteral("Zero kB"));
  EXPECT_EQ(fullness(), 0);
  run(0.985);
  exportState.setBytes(49'600'000);
  EXPECT_EQ(phase(), QStringLiteral("Exporting 98%"));
  EXPECT_EQ(footer()->bytesLabel()->text(), QStringLiteral("49.6 MB"));
  EXPECT_EQ(fullness(), 0.985);
  run(0.99);
  EXPECT_EQ(phase(), QStringLiteral("Finalizing…"));
  EXPECT_EQ(QAccessible::queryAccessibleInterface(footer()->progressBar())->text(QAccessible::Name),
            QStringLiteral("Export progress"));
}

TEST_F(CropExportFooterTest, KeepsTheBarWithinItsEnds) {
  show();
  run(-0.2);
  EXPECT_EQ(fullness(), 0);
  run(1.7);
  EXPECT_EQ(fullness(), 1);
}

TEST_F(CropExportFooterTest, HasNoPercentageWithoutOne) {
  show();
  run(0.995, true);
  EXPECT_EQ(phase(), QStringLiteral("Exporting…"));
  EXPECT_EQ(footer()->progressBar()->maximum(), 0);
  EXPECT_EQ(footer()->progressBar()->value(), 0);
  exportState.setIndeterminate(false);
  EXPECT_EQ(fullness(), 0.995);
}

TEST_F(CropExportFooterTest, OffersToCancelInThePlaceOfHelp) {
  show();
  EXPECT_TRUE(footer()->helpButton()->isVisible());
  EXPECT_FALSE(footer()->cancelButton()->isVisible());
  run(0.5);
  EXPECT_FALSE(footer()->helpButton()->isVisible());
  EXPECT_TRUE(footer()->cancelButton()->isVisible());
  EXPECT_FALSE(footer()->exportButton()->isVisible());
  EXPECT_EQ(footer()->cancelButton()->toolTip(), QStringLiteral("Cancel export"));
  exportState.setProgress({});
  EXPECT_TRUE(footer()->helpButton()->isVisible());
  EXPECT_TRUE(footer()->exportButton()->isVisible());
}

TEST_F(CropExportFooterTest, LeadsTheFocusToCancelAndBack) {
  show();
  runWhenPressed();
  footer()->exportButton()->setFocus(Qt::TabFocusReason);
  QTest::keyClick(footer()->exportButton(), Qt::Key_Space);
  EXPECT_EQ(QApplication::focusWidget(), footer()->cancelButton());
  run(0.5);
  EXPECT_EQ(QApplication::focusWidget(), footer()->cancelButton());
  exportState.setProgress({});
  EXPECT_EQ(QApplication::focusWidget(), footer()->exportButton());
}

TEST_F(CropExportFooterTest, LeadsTheFocusBackOnceItMayExportAgain) {
  show();
  footer()->exportButton()->setFocus(Qt::TabFocusReason);
  footer()->begin();
  // What is typed somewhere is ended before an export.
  footer()->exportButton()->clearFocus();
  run(0);
  setBusy(true);
  EXPECT_EQ(QApplication::focusWidget(), footer()->cancelButton());
  exportState.setProgress({});
  EXPECT_EQ(view.focusWidget(), nullptr);
  setBusy(false);
  EXPECT_EQ(QApplication::focusWidget(), footer()->exportButton());
}

TEST_F(CropExportFooterTest, LeavesTheFocusThatIsElsewhere) {
  show();
  auto* const field = view.findChild<QLineEdit*>();
  ASSERT_NE(field, nullptr);
  field->setFocus(Qt::TabFocusReason);
  footer()->begin();
  run(0);
  EXPECT_EQ(QApplication::focusWidget(), field);
  exportState.setProgress({});
  EXPECT_EQ(QApplication::focusWidget(), field);

  footer()->exportButton()->setFocus(Qt::TabFocusReason);
  footer()->begin();
  run(0);
  field->setFocus(Qt::TabFocusReason);
  exportState.setProgress({});
  EXPECT_EQ(QApplication::focusWidget(), field);
}

TEST_F(CropExportFooterTest, LeadsTheFocusNowhereAfterAClick) {
  show();
  runWhenPressed();
  footer()->exportButton()->setFocus(Qt::TabFocusReason);
  QTest::mouseClick(footer()->exportButton(), Qt::LeftButton);
  EXPECT_EQ(view.focusWidget(), nullptr);
  exportState.setProgress({});
  EXPECT_EQ(view.focusWidget(), nullptr);
}

TEST_F(CropExportFooterTest, KeepsTheTextOfAnExportToOneLineEach) {
  show();
  const int width = view.width(), lineHeight = footer()->statusLabel()->height();
  const QString longName(200, u'M');
  footer()->setOutput({true, true, 640, 480, longName});
  QCoreApplication::processEvents();
  QLabel* const status = footer()->statusLabel();
  EXPECT_EQ(view.width(), width);
  EXPECT_EQ(status->height(), lineHeight);
  EXPECT_LT(placeOf(status).right(), placeOf(footer()->helpButton()).x());
  const QImage shown = status->grab().toImage();
  status->setText(
      status->fontMetrics().elidedText(status->text(), Qt::ElideRight, status->width()));
  ASSERT_TRUE(status->text().endsWith(u'…'));
  EXPECT_EQ(status->grab().toImage(), shown);

  exportState.setBytes(9'200'000'000'000'000'000);
  run(0.42);
  QCoreApplication::processEvents();
  EXPECT_GE(placeOf(footer()->bytesLabel()).x(), placeOf(footer()->phaseLabel()).right() + 4);
  EXPECT_EQ(placeOf(footer()->bytesLabel()).right(), InspectorView::kWidth - 17);
  EXPECT_EQ(placeOf(footer()->progressBar()).y() - placeOf(footer()->phaseLabel()).bottom() - 1, 3);
}

TEST_F(CropExportFooterTest, TellsTheOutcomeBeforeTheOutput) {
  show();
  EXPECT_EQ(footer()->statusLabel()->text(), QStringLiteral("640 × 480 px · PNG"));
  exportState.setMessage(CropExportState::Message::failed);
  EXPECT_EQ(footer()->statusLabel()->text(), QStringLiteral("Export failed"));
  exportState.setMessage({});
  view.setSource({});
  EXPECT_EQ(footer()->statusLabel()->text(), QStringLiteral("Ready"));
}

TEST_F(CropExportFooterTest, OpensAndClosesHelp) {
  show();
  QToolButton* const help = footer()->helpButton();
  EXPECT_EQ(help->accessibleName(), QStringLiteral("Canvas Help"));
  EXPECT_EQ(help->toolTip(), QStringLiteral("Canvas shortcuts"));
  QTest::mouseClick(help, Qt::LeftButton);
  ASSERT_NE(footer()->helpPopover(), nullptr);
  EXPECT_TRUE(footer()->helpPopover()->isVisible());
  EXPECT_EQ(textsIn(footer()->helpPopover()).join(u'\n'), ExportFooterText::help());
  QTest::mouseClick(help, Qt::LeftButton);
  EXPECT_TRUE(QTest::qWaitFor([this] { return !footer()->helpPopover(); }));
  QTest::keyClick(help, Qt::Key_Space);
  ASSERT_NE(footer()->helpPopover(), nullptr);
  QTest::keyClick(help, Qt::Key_Escape);
  EXPECT_TRUE(QTest::qWaitFor([this] { return !footer()->helpPopover(); }));
}

TEST_F(CropExportFooterTest, KeepsHelpOpenThroughAnExport) {
  show();
  QTest::mouseClick(footer()->helpButton(), Qt::LeftButton);
  ASSERT_NE(footer()->helpPopover(), nullptr);
  run(0.5);
  EXPECT_FALSE(footer()->helpPopover()->isVisible());
  exportState.setProgress({});
  EXPECT_TRUE(footer()->helpPopover()->isVisible());
}

}  // namespace
}  // namespace vantrel
