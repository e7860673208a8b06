#include <QFileDialog>
#include <QLineEdit>
#include <QMessageBox>

#include "canvas/canvas_scroll_view.h"
#include "controls/crop_number_field.h"
#include "editor/crop_menu_bar.h"
#include "editor/tab_drag_image.h"
#include "editor/tabbed_windows.h"
#include "inspector/crop_section.h"
#include "inspector/inspector_view.h"

namespace vantrel {
namespace {

using Edge = CropMargins::Edge;

/// What comes between the beginning and the end of a gesture with a tab.
class InterruptedTabsTest : public testing::TabbedWindows {
 protected:
  static int dragImages() {
    int count = 0;
    for (QWidget* widget : QApplication::topLevelWidgets()) {
      if (qobject_cast<TabDragImage*>(widget)) ++count;
    }
    return count;
  }
  template <class Widget>
  static Widget* shown() {
    for (QWidget* widget : QApplication::topLevelWidgets()) {
      auto* const match = qobject_cast<Widget*>(widget);
      if (match && match->isVisible()) return match;
    }
    return nullptr;
  }
};

TEST_F(InterruptedTabsTest, AHeldTabThatIsClosedTakesNoOtherOff) {
  EditorWindow* const window = openTabs(4);
  const QPoint start = tabCenter(window, 1);
  press(window, start);
  window->closeEditor(window->view());
  move(window, start + QPoint(0, 20));
  move(window, start + QPoint(0, 90));
  EXPECT_FALSE(tabs(window)->isTabOff());
  release(window, start + QPoint(0, 90));
  EXPECT_EQ(window->editors().size(), 3);
  EXPECT_EQ(editorWindows().size(), 1);
}

TEST_F(InterruptedTabsTest, AHeldTabIsLetGoWhenAnotherComesOrGoes) {
  EditorWindow* const window = openTabs(3);
  const QPoint start = tabCenter(window, 2);
  press(window, start);
  window->closeEditor(window->editors().first());
  move(window, start + QPoint(0, 90));
  EXPECT_FALSE(tabs(window)->isTabOff());
  release(window, start + QPoint(0, 90));
  press(window, tabCenter(window, 1));
  windows.openTab(window);
  move(window, start + QPoint(0, 90));
  EXPECT_FALSE(tabs(window)->isTabOff());
  release(window, start + QPoint(0, 90));
  EXPECT_EQ(window->editors().size(), 3);
  EXPECT_EQ(editorWindows().size(), 1);
}

TEST_F(InterruptedTabsTest, ATabThatClosesWhileItIsOffLeavesNothing) {
  EditorWindow* const window = openTabs(4);
  const QPoint point = pullOff(window, 3);
  ASSERT_TRUE(tabs(window)->isTabOff());
  QTest::keyClick(window->windowHandle(), Qt::Key_W, Qt::ControlModifier);
  EXPECT_FALSE(tabs(window)->isTabOff());
  EXPECT_EQ(QWidget::keyboardGrabber(), nullptr);
  release(window, point);
  EXPECT_EQ(window->editors().size(), 3);
  EXPECT_EQ(editorWindows().size(), 1);
  EXPECT_EQ(dragImages(), 0);
}

TEST_F(InterruptedTabsTest, AnAlertEndsADragOfATab) {
  EditorWindow* const window = openTabs(3);
  const QPoint point = pullOff(window, 1);
  ASSERT_TRUE(tabs(window)->isTabOff());
  window->editors().last()->state().setOpenError(QStringLiteral("No."));
  ASSERT_TRUE(QTest::qWaitFor([] { return shown<QMessageBox>() != nullptr; }));
  EXPECT_FALSE(tabs(window)->isTabOff());
  EXPECT_EQ(QWidget::keyboardGrabber(), nullptr);
  EXPECT_EQ(dragImages(), 0);
  release(window, point);
  EXPECT_EQ(window->editors().size(), 3);
  EXPECT_EQ(editorWindows().size(), 1);
  ASSERT_TRUE(QTest::qWaitForWindowActive(shown<QMessageBox>()));
  QTest::keyClick(shown<QMessageBox>()->windowHandle(), Qt::Key_Return);
  EXPECT_TRUE(QTest::qWaitFor([] { return shown<QMessageBox>() == nullptr; }));
  // The bar works as before.
  const QPoint again = pullOff(window, 1);
  EXPECT_TRUE(tabs(window)->isTabOff());
  release(window, again);
  EXPECT_EQ(editorWindows().size(), 2);
}

TEST_F(InterruptedTabsTest, AnAlertEndsAMoveOfATab) {
  EditorWindow* const window = openTabs(3);
  const QPoint start = tabCenter(window, 0);
  press(window, start);
  move(window, start + QPoint(30, 0));
  move(window, start + QPoint(100, 0));
  window->editors().last()->state().setOpenError(QStringLiteral("No."));
  ASSERT_TRUE(QTest::qWaitFor([] { return shown<QMessageBox>() != nullptr; }));
  release(window, start + QPoint(100, 0));
  shown<QMessageBox>()->accept();
  ASSERT_TRUE(QTest::qWaitFor([] { return shown<QMessageBox>() == nullptr; }));
  move(window, start + QPoint(10, 0));
  move(window, start + QPoint(0, 300));
  EXPECT_FALSE(tabs(window)->isTabOff());
  QList<QRect> rects;
  for (int index = 0; index < 3; ++index)
    rects << tabs(window)->tabRect(index);
  EXPECT_LT(rects.at(0).left(), rects.at(1).left());
  EXPECT_EQ(editorWindows().size(), 1);
}

TEST_F(InterruptedTabsTest, AnAlertOfAnotherTabEndsADragOfTheCrop) {
  EditorWindow* const window = openTabs(2);
  EditorView* const editor = window->view();
  ASSERT_TRUE(load(editor, folder / "photo.png"));
  EditHistory& history = editor->state().history();
  history.setCrop({10, 10, 10, 10});
  QCoreApplication::processEvents();
  const QPoint center = editor->canvas()->mapTo(window, editor->canvas()->rect().center());
  press(window, center);
  move(window, center + QPoint(10, 10));
  move(window, center + QPoint(60, 40));
  ASSERT_NE(history.crop(), (CropMargins{10, 10, 10, 10}));
  window->editors().last()->state().setOpenError(QStringLiteral("No."));
  ASSERT_TRUE(QTest::qWaitFor([] { return shown<QMessageBox>() != nullptr; }));
  release(window, center + QPoint(60, 40));
  shown<QMessageBox>()->accept();
  ASSERT_TRUE(QTest::qWaitFor([] { return shown<QMessageBox>() == nullptr; }));
  window->selectEditor(editor);
  QCoreApplication::processEvents();
  const CropMargins before = history.crop();
  move(window, center + QPoint(80, 60));
  move(window, center + QPoint(120, 80));
  EXPECT_EQ(history.crop(), before);
  // The drag is one edit.
  history.setCrop({1, 1, 1, 1});
  history.undo();
  EXPECT_EQ(history.crop(), before);
}

TEST_F(InterruptedTabsTest, AStoppedEditorSaysNothing) {
  EditorWindow* const window = openTabs(2);
  EditorView* const editor = window->view();
  editor->loader().loadMedia(folder / "photo.png");
  window->closeEditor(editor);
  editor->state().setOpenError(QStringLiteral("No."));
  EXPECT_EQ(shown<QMessageBox>(), nullptr);
}

TEST_F(InterruptedTabsTest, WhatIsTypedIsCommittedWhenItsTabIsTornOff) {
  EditorWindow* const window = openTabs(2);
  EditorView* const editor = window->view();
  ASSERT_TRUE(load(editor, folder / "photo.png"));
  CropNumberField* const field = editor->inspector()->cropSection()->marginField(Edge::left);
  field->setFocus();
  ASSERT_TRUE(field->hasFocus());
  field->selectAll();
  QTest::keyClicks(field, QStringLiteral("7"));
  windows.moveTab(editor, {});
  EXPECT_EQ(editor->state().history().crop().left, 7);
  auto* const own = qobject_cast<EditorWindow*>(editor->window());
  ASSERT_NE(own, window);
  ASSERT_TRUE(activate(own));
  EXPECT_TRUE(own->commands()->action(CropCommand::undo)->isEnabled());
  QTest::keyClick(own->windowHandle(), Qt::Key_Z, Qt::ControlModifier);
  EXPECT_EQ(editor->state().history().crop().left, 0);
}

TEST_F(InterruptedTabsTest, ClosingAWindowTakesItsDialogsAlong) {
  EditorWindow* const window = openTabs(2);
  windows.openEditor();
  window->view()->openMedia();
  ASSERT_TRUE(QTest::qWaitFor([] { return shown<QFileDialog>() != nullptr; }));
  QPointer<EditorWindow> closing = window;
  window->close();
  ASSERT_TRUE(QTest::qWaitFor([&] { return closing.isNull(); }));
  EXPECT_EQ(shown<QFileDialog>(), nullptr);
}

}  // namespace
}  // namespace vantrel
