#pragma once

#include <gtest/gtest.h>

#include <QDialogButtonBox>
#include <QFileDialog>
#include <QLineEdit>
#include <QMessageBox>
#include <QPointer>
#include <QPushButton>
#include <QTest>
#include <QWindow>
#include <filesystem>

#include "canvas/canvas_scroll_view.h"
#include "canvas/crop_overlay_geometry.h"
#include "canvas/crop_overlay_view.h"
#include "canvas/video_canvas_view.h"
#include "controls/crop_number_field.h"
#include "editor/application_windows.h"
#include "editor/editor_view.h"
#include "editor/editor_window.h"
#include "inspector/crop_export_footer.h"
#include "inspector/crop_section.h"
#include "inspector/inspector_view.h"
#include "journey/open_windows.h"
#include "review/review_window.h"
#include "support/temporary_folder.h"

namespace vantrel::testing {

/// The way of a user through the windows of the program, from a file to the saved file.
class Journey : public ::testing::Test {
 protected:
  using Edge = CropMargins::Edge;

  void SetUp() override { QApplication::setAttribute(Qt::AA_DontUseNativeDialogs); }
  void TearDown() override {
    qDeleteAll(visible<EditorWindow>());
    qDeleteAll(visible<ReviewWindow>());
  }

  EditorState& state() { return editor->view()->state(); }
  CropMargins crop() { return state().history().crop(); }
  InspectorView* inspector() { return editor->view()->inspector(); }
  CropExportFooter* footer() { return inspector()->footer(); }
  CropNumberField* field(Edge edge) { return inspector()->cropSection()->marginField(edge); }
  CropOverlayView* overlay() { return editor->view()->canvas()->overlay(); }

  /// Opens the file from outside, and waits for its picture.
  void open(const std::filesystem::path& path) {
    editor = windows.openFile(path);
    ASSERT_NO_FATAL_FAILURE(waitOpened());
  }
  /// Opens the file from an empty window, by its dialog.
  void openByDialog(const std::filesystem::path& path) {
    editor = windows.openEditor();
    ASSERT_TRUE(activate(editor));
    QTest::keyClick(editor->windowHandle(), Qt::Key_O, Qt::ControlModifier);
    ASSERT_NO_FATAL_FAILURE(answerFileDialog(path));
    ASSERT_NO_FATAL_FAILURE(waitOpened());
  }
  void waitOpened() {
    ASSERT_TRUE(activate(editor));
    ASSERT_TRUE(QTest::qWaitFor([this] { return state().loaded() && !state().busy(); }));
    ASSERT_TRUE(QTest::qWaitFor([this] { return inspector()->isVisible(); }));
    VideoCanvasView* const surface = editor->view()->canvas()->canvas();
    ASSERT_TRUE(QTest::qWaitFor([surface] { return surface->isPictureShown(); }));
  }

  // What mouse and keyboard do in a window: the system's events find their own way from it.

  static QPoint inWindow(const QWidget* widget, const QPoint& point) {
    return widget->mapTo(widget->window(), point);
  }
  static void click(const QWidget* widget) {
    QTest::mouseClick(widget->window()->windowHandle(), Qt::LeftButton, {},
                      inWindow(widget, widget->rect().center()));
  }
  /// Drags over the canvas, from and to points of the overlay.
  void drag(const QPoint& from, const QPoint& to) {
    QWindow* const window = editor->windowHandle();
    QTest::mousePress(window, Qt::LeftButton, {}, inWindow(overlay(), from));
    for (int step = 1; step <= 4; ++step) {
      QTest::mouseEvent(QTest::MouseMove, window, Qt::NoButton, {},
                        inWindow(overlay(), from + (to - from) * step / 4));
      QCoreApplication::processEvents();
    }
    QTest::mouseRelease(window, Qt::LeftButton, {}, inWindow(overlay(), to));
    QCoreApplication::processEvents();  // The panel follows.
  }
  QPoint middleOf(CropHandle handle) {
    const QRectF selection = overlay()->overlay().selection();
    return CropOverlayGeometry::handleRect(handle, selection).center().toPoint();
  }
  void press(Qt::Key key, Qt::KeyboardModifiers modifiers = {}) {
    QTest::keyClick(editor->windowHandle(), key, modifiers);
    QCoreApplication::processEvents();  // The menus follow.
  }
  void type(Edge edge, const QString& text) {
    click(field(edge));
    for (const QChar digit : text)
      QTest::keyClick(editor->windowHandle(), digit.toLatin1());
  }

  ReviewWindow* exportCrop() {
    click(footer()->exportButton());
    auto* review = waitFor<ReviewWindow>();
    if (review && !activate(review)) return nullptr;
    return review;
  }
  /// Saves what the review shows, by its dialog.
  static void save(ReviewWindow* review, const std::filesystem::path& path) {
    ASSERT_TRUE(activate(review));
    QTest::keyClick(review->windowHandle(), Qt::Key_S, Qt::ControlModifier);
    ASSERT_NO_FATAL_FAILURE(answerFileDialog(path));
    ASSERT_TRUE(QTest::qWaitFor([review] { return !review->document().isUnsaved(); }));
  }
  /// Answers the file dialog that is open, as by pasting a path.
  static void answerFileDialog(const std::filesystem::path& path) {
    auto* dialog = waitFor<QFileDialog>();
    ASSERT_NE(dialog, nullptr);
    ASSERT_TRUE(activate(dialog));
    auto* name = dialog->findChild<QLineEdit*>(QStringLiteral("fileNameEdit"));
    ASSERT_NE(name, nullptr);
    // Without the focus the dialog would write into it whatever it finds selected.
    name->setFocus();
    name->setText(QString::fromStdString(path.string()));
    auto* buttons = dialog->findChild<QDialogButtonBox*>();
    const bool saves = dialog->acceptMode() == QFileDialog::AcceptSave;
    click(buttons->button(saves ? QDialogButtonBox::Save : QDialogButtonBox::Open));
    ASSERT_TRUE(waitUntilGone<QFileDialog>());
  }
  static void answer(QMessageBox::StandardButton button) {
    const QPointer<QMessageBox> box = waitFor<QMessageBox>();
    ASSERT_NE(box, nullptr);
    ASSERT_TRUE(activate(box));
    click(box->button(button));
    ASSERT_TRUE(QTest::qWaitFor([&] { return !box || !box->isVisible(); }));
  }

  TemporaryFolder folder;
  ApplicationWindows windows;
  EditorWindow* editor = nullptr;
};

}  // namespace vantrel::testing
