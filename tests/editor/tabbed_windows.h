#pragma once

#include <gtest/gtest.h>

#include <QApplication>
#include <QCoreApplication>
#include <QPointer>
#include <QTest>
#include <QWindow>
#include <memory>

#include "editor/application_windows.h"
#include "editor/editor_tab_bar.h"
#include "editor/editor_tab_row.h"
#include "editor/editor_view.h"
#include "editor/editor_window.h"
#include "review/review_window.h"
#include "support/picture_files.h"
#include "support/temporary_folder.h"

namespace vantrel::testing {

/// The windows of the program, with real tabs, and a mouse and a keyboard for them.
class TabbedWindows : public ::testing::Test {
 protected:
  void SetUp() override {
    QApplication::setAttribute(Qt::AA_DontUseNativeDialogs);
    savePng(folder / "photo.png", 40, 30);
    savePng(folder / "other.png", 30, 20);
  }
  void TearDown() override {
    QList<QPointer<QWidget>> left;
    for (QWidget* widget : QApplication::topLevelWidgets()) {
      if (qobject_cast<EditorWindow*>(widget) || qobject_cast<ReviewWindow*>(widget))
        left << widget;
    }
    // One may take others with it.
    for (const QPointer<QWidget>& widget : left)
      delete widget.data();
    settle();
  }

  /// What was deleted is gone.
  static void settle() {
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QCoreApplication::processEvents();
  }
  static bool activate(QWidget* window) {
    window->raise();
    window->activateWindow();
    return QTest::qWaitForWindowActive(window) &&
           QTest::qWaitFor([window] { return QApplication::activeWindow() == window; });
  }
  static QList<EditorWindow*> editorWindows() {
    QList<EditorWindow*> found;
    for (QWidget* widget : QApplication::topLevelWidgets()) {
      auto* const window = qobject_cast<EditorWindow*>(widget);
      if (window && window->isVisible()) found << window;
    }
    return found;
  }
  static EditorTabBar* tabs(EditorWindow* window) { return window->tabRow()->tabs(); }

  /// A shown, active window with this many empty tabs, the first of which is the current one.
  EditorWindow* openTabs(int count) {
    EditorWindow* const window = windows.openEditor();
    for (int tab = 1; tab < count; ++tab)
      windows.openTab(window);
    window->selectEditor(window->editors().first());
    EXPECT_TRUE(activate(window));
    QCoreApplication::processEvents();
    return window;
  }
  static bool load(EditorView* editor, const std::filesystem::path& path) {
    editor->loader().loadMedia(path);
    const bool loaded = QTest::qWaitFor([editor] { return !editor->state().busy(); });
    QCoreApplication::processEvents();
    return loaded && editor->state().loaded();
  }
  std::unique_ptr<ExportReviewDocument> finishedExport() {
    const std::string name = "Vantrel-" + std::to_string(++m_exports) + ".png";
    savePng(folder / name, 8, 8);
    return std::make_unique<ExportReviewDocument>(FinishedExport{
        TemporaryExport(folder / name), {}, ContentType::png(), QStringLiteral("photo-framed")});
  }
  ReviewWindow* openReview() {
    auto* const review = new ReviewWindow(finishedExport());
    review->show();
    return review;
  }

  // Through the window, as the system delivers them.
  static void press(EditorWindow* window, const QPoint& point) {
    QTest::mousePress(window->windowHandle(), Qt::LeftButton, {}, point);
  }
  static void move(EditorWindow* window, const QPoint& point) {
    QTest::mouseMove(window->windowHandle(), point);
    QCoreApplication::processEvents();
  }
  static void release(EditorWindow* window, const QPoint& point) {
    QTest::mouseRelease(window->windowHandle(), Qt::LeftButton, {}, point);
    QCoreApplication::processEvents();
  }
  /// The middle of a tab, in the window.
  static QPoint tabCenter(EditorWindow* window, int index) {
    return tabs(window)->mapTo(window, tabs(window)->tabRect(index).center());
  }
  /// Drags a tab straight down, so far that it comes off, and holds it there.
  static QPoint pullOff(EditorWindow* window, int index) {
    const QPoint start = tabCenter(window, index);
    press(window, start);
    move(window, start + QPoint(0, 20));
    move(window, start + QPoint(0, 90));
    return start + QPoint(0, 90);
  }

  TemporaryFolder folder;
  ApplicationWindows windows;

 private:
  int m_exports = 0;
};

}  // namespace vantrel::testing
