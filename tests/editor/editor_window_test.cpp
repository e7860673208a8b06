#include "editor/editor_window.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QFileDialog>
#include <QLabel>
#include <QMessageBox>
#include <QPushButton>
#include <QSignalSpy>
#include <QTest>

#include "canvas/canvas_scroll_view.h"
#include "canvas/crop_appearance.h"
#include "canvas/crop_overlay_view.h"
#include "controls/color_well.h"
#include "controls/crop_number_field.h"
#include "controls/crop_reset_button.h"
#include "editor/application_look.h"
#include "editor/editor_view.h"
#include "export/export_temporary_storage.h"
#include "inspector/crop_canvas_section.h"
#include "inspector/crop_export_footer.h"
#include "inspector/crop_section.h"
#include "inspector/inspector_view.h"
#include "review/review_window.h"
#include "support/picture_files.h"
#include "support/temporary_folder.h"
#include "support/write_failures.h"

namespace vantrel {
namespace {

class EditorWindowTest : public ::testing::Test {
 protected:
  void SetUp() override {
    QApplication::setAttribute(Qt::AA_DontUseNativeDialogs);
    testing::savePng(folder / "photo.png", 40, 30);
  }
  void load(const std::filesystem::path& path) {
    window.view()->loader().loadMedia(path);
    ASSERT_TRUE(QTest::qWaitFor([this] { return !state().busy(); }));
    QCoreApplication::processEvents();
  }
  void show() {
    window.show();
    window.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
  }
  EditorState& state() { return window.view()->state(); }
  CropExportFooter* footer() { return window.view()->inspector()->footer(); }
  std::unique_ptr<ExportReviewDocument> finished(const QString& title) {
    testing::savePng(folder / "Vantrel-1.png", 8, 8);
    return std::make_unique<ExportReviewDocument>(
        FinishedExport{TemporaryExport(folder / "Vantrel-1.png"), {}, ContentType::png(), title});
  }

  testing::TemporaryFolder folder;
  EditorWindow window{[](const FinishedExport&) {}};
};

// The title as the toolkit shows it, without its mark of unsaved changes.
QString shownTitle(const QWidget& window) {
  return window.windowHandle()->title();
}

TEST_F(EditorWindowTest, ShowsTheWholeNameOfTheFile) {
  testing::savePng(folder / "a[*]b[*].png", 4, 4);
  load(folder / "a[*]b[*].png");
  show();
  EXPECT_EQ(shownTitle(window), QStringLiteral("a[*]b[*].png"));
  ReviewWindow review(finished(QStringLiteral("a[*]")));
  review.setAttribute(Qt::WA_DeleteOnClose, false);
  review.show();
  EXPECT_EQ(shownTitle(review), QStringLiteral("a[*]*"));
}

TEST_F(EditorWindowTest, TakesTheColorOfTheCanvasFromThePanel) {
  show();
  load(folder / "photo.png");
  CropCanvasSection* const section = window.view()->inspector()->canvasSection();
  EXPECT_EQ(section->colorWell()->color(), CropAppearance::canvas(window.palette()));
  Q_EMIT section->colorWell()->colorChosen(QColor(1, 2, 3));
  EXPECT_EQ(state().canvasColor(), QColor(1, 2, 3));
  QCoreApplication::processEvents();
  EXPECT_EQ(section->colorWell()->color(), QColor(1, 2, 3));
  QTest::mouseClick(section->resetButton(), Qt::LeftButton);
  EXPECT_FALSE(state().canvasColor());
  EXPECT_FALSE(state().history().canUndo());
}

TEST_F(EditorWindowTest, ClosingTheFileInMidDragLeavesNoEdit) {
  show();
  load(folder / "photo.png");
  CropOverlayView* const overlay = window.view()->canvas()->overlay();
  const auto send = [&](QEvent::Type type, const QPointF& point, Qt::MouseButton button,
                        Qt::MouseButtons buttons) {
    QMouseEvent event(type, point, overlay->mapToGlobal(point), button, buttons, {});
    QCoreApplication::sendEvent(overlay, &event);
  };
  const QPointF corner = overlay->overlay().selection().topLeft() - QPointF(5, 5);
  send(QEvent::MouseButtonPress, corner, Qt::LeftButton, Qt::LeftButton);
  send(QEvent::MouseMove, corner + QPointF(200, 150), Qt::NoButton, Qt::LeftButton);
  ASSERT_NE(state().history().crop(), CropMargins());
  window.view()->loader().closeMedia();
  // What the system had waiting comes before the canvas hears of it.
  send(QEvent::MouseMove, corner + QPointF(100, 90), Qt::NoButton, Qt::LeftButton);
  QCoreApplication::processEvents();
  send(QEvent::MouseButtonRelease, corner, Qt::LeftButton, Qt::NoButton);
  EXPECT_EQ(state().history().crop(), CropMargins());
  EXPECT_FALSE(state().history().canUndo());
}

TEST_F(EditorWindowTest, LoadingInMidDragEndsIt) {
  show();
  load(folder / "photo.png");
  CropOverlayView* const overlay = window.view()->canvas()->overlay();
  const QPoint middle = overlay->overlay().selection().center().toPoint();
  QTest::mousePress(overlay, Qt::LeftButton, {}, middle);
  EXPECT_TRUE(overlay->overlay().grip());
  load(folder / "missing.png");
  EXPECT_FALSE(overlay->overlay().grip());
  QTest::mouseRelease(overlay, Qt::LeftButton, {}, middle);
  state().history().setCrop({1, 0, 0, 0});
  EXPECT_EQ(state().history().manager().count(), 1);
}

TEST_F(EditorWindowTest, ReadsNoMarkupInTheNameOfAFile) {
  show();
  load(folder / "<h1>missing.png");
  const auto* alert = window.findChild<QMessageBox*>();
  ASSERT_NE(alert, nullptr);
  EXPECT_TRUE(alert->informativeText().contains(QStringLiteral("<h1>missing.png")));
  for (const QLabel* label : alert->findChildren<QLabel*>()) {
    if (label->text().isEmpty()) continue;
    EXPECT_EQ(label->textFormat(), Qt::PlainText) << label->text().toStdString();
  }
}

TEST_F(EditorWindowTest, ActivatedWithoutTheFocusGivesItToNoField) {
  load(folder / "photo.png");
  show();
  EXPECT_EQ(QApplication::focusWidget(), &window);
  for (const auto* field : window.findChildren<SelectingNumberField*>())
    EXPECT_FALSE(field->isEditing());
}

TEST_F(EditorWindowTest, ReportsAnExportThatFailsAndKeepsTheEdit) {
  load(folder / "photo.png");
  show();
  state().history().setCrop({1, 2, 3, 4});
  {
    const testing::FileSizeLimit fullDisk(100);
    QTest::mouseClick(footer()->exportButton(), Qt::LeftButton);
    ASSERT_TRUE(QTest::qWaitFor([this] { return !state().busy(); }));
  }
  EXPECT_EQ(testing::namesIn(ExportTemporaryStorage::shared().directory()),
            std::vector<std::string>{"session.lock"});

  auto* alert = window.findChild<QMessageBox*>();
  ASSERT_NE(alert, nullptr);
  EXPECT_EQ(alert->text(), QStringLiteral("Could Not Export File"));
  EXPECT_EQ(alert->informativeText(), state().exportError());
  EXPECT_EQ(footer()->statusLabel()->text(), QStringLiteral("Export failed"));
  alert->button(QMessageBox::Ok)->click();
  EXPECT_FALSE(state().exportError());
  EXPECT_EQ(footer()->statusLabel()->text(), QStringLiteral("Export failed"));
  EXPECT_EQ(state().history().crop(), (CropMargins{1, 2, 3, 4}));
}

TEST_F(EditorWindowTest, ExportsAlsoAfterTheSessionFolderWasDeleted) {
  load(folder / "photo.png");
  show();
  std::filesystem::remove_all(ExportTemporaryStorage::shared().directory());
  QTest::mouseClick(footer()->exportButton(), Qt::LeftButton);
  ASSERT_TRUE(QTest::qWaitFor([this] { return !state().busy(); }));
  EXPECT_FALSE(state().exportError());
  EXPECT_EQ(testing::namesIn(ExportTemporaryStorage::shared().directory()),
            std::vector<std::string>{"session.lock"})
      << "nobody has taken the export";
}

TEST_F(EditorWindowTest, ClosingAReviewThatAsksForAPlaceAsksNothingElse) {
  ReviewWindow review(finished(QStringLiteral("photo-framed")));
  review.setAttribute(Qt::WA_DeleteOnClose, false);
  review.show();
  review.save();
  review.save();
  review.close();
  EXPECT_TRUE(review.isVisible());
  EXPECT_EQ(review.findChild<QMessageBox*>(), nullptr);
  ASSERT_EQ(review.findChildren<QFileDialog*>().size(), 1);

  QSignalSpy refused(&review, &ReviewWindow::closeRefused);
  review.findChild<QFileDialog*>()->reject();
  EXPECT_EQ(refused.count(), 1);
  review.close();
  EXPECT_NE(review.findChild<QMessageBox*>(), nullptr);
}

TEST(ReviewWindow, OpensInTheMiddleAndInsideTheScreen) {
  EXPECT_EQ(ReviewWindow::placeIn({100, 0, 1400, 900}, {800, 600}), QRect(400, 150, 800, 600));
  EXPECT_EQ(ReviewWindow::placeIn({0, 20, 700, 430}, {800, 600}), QRect(0, 20, 700, 430));
}

TEST(ApplicationLook, GivesTheWindowsAnIcon) {
  ApplicationLook::installIcon();
  EXPECT_FALSE(QApplication::windowIcon().pixmap(64, 64).isNull());
}

}  // namespace
}  // namespace vantrel
