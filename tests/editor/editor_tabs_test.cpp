#include <QAbstractButton>
#include <QLabel>
#include <QMenu>
#include <QMessageBox>
#include <QToolButton>

#include "canvas/canvas_scroll_view.h"
#include "canvas/video_canvas_view.h"
#include "controls/crop_number_field.h"
#include "editor/crop_menu_bar.h"
#include "editor/editor_tool_bar.h"
#include "editor/tabbed_windows.h"
#include "inspector/crop_section.h"
#include "inspector/inspector_view.h"

namespace vantrel {
namespace {

using Edge = CropMargins::Edge;

class EditorTabsTest : public testing::TabbedWindows {
 protected:
  static CropNumberField* field(EditorView* editor, Edge edge) {
    return editor->inspector()->cropSection()->marginField(edge);
  }
  static QAction* previewAction(EditorWindow* window) {
    for (auto* action : window->commands()->findChildren<QAction*>()) {
      if (action->text() == QStringLiteral("Preview Crop")) return action;
    }
    return nullptr;
  }
  static QAbstractButton* closeButton(EditorWindow* window, int index) {
    for (const auto side : {QTabBar::LeftSide, QTabBar::RightSide}) {
      if (auto* button = qobject_cast<QAbstractButton*>(tabs(window)->tabButton(index, side)))
        return button;
    }
    return nullptr;
  }
  static void chooseFromMenu(EditorWindow* window, int index, const QString& text) {
    QContextMenuEvent event(QContextMenuEvent::Mouse, tabs(window)->tabRect(index).center(),
                            tabs(window)->mapToGlobal(tabs(window)->tabRect(index).center()));
    QCoreApplication::sendEvent(tabs(window), &event);
    auto* const menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
    ASSERT_NE(menu, nullptr);
    for (QAction* action : menu->actions()) {
      if (action->text() == text) {
        menu->setActiveAction(action);
        QTest::keyClick(menu, Qt::Key_Return);
        return;
      }
    }
    FAIL() << "no " << text.toStdString();
  }
};

TEST_F(EditorTabsTest, ShowsTheRowOnlyForSeveralTabs) {
  EditorWindow* const window = openTabs(1);
  EXPECT_FALSE(window->tabRow()->isVisible());
  windows.openTab(window);
  EXPECT_TRUE(window->tabRow()->isVisible());
  EXPECT_LT(window->tabRow()->geometry().bottom(), window->toolBar()->geometry().top());
  window->closeEditor(window->view());
  EXPECT_FALSE(window->tabRow()->isVisible());
}

TEST_F(EditorTabsTest, ANewTabStandsAfterTheCurrentOneAndIsShown) {
  EditorWindow* const window = openTabs(3);
  const QList<EditorView*> before = window->editors();
  EXPECT_EQ(windows.openTab(window), window);
  ASSERT_EQ(window->editors().size(), 4);
  EXPECT_EQ(window->editors().at(1), window->view());
  EXPECT_EQ(tabs(window)->currentIndex(), 1);
  EXPECT_TRUE(window->view()->isVisible());
  EXPECT_EQ(window->editors().first(), before.first());
}

TEST_F(EditorTabsTest, EachTabHasAnIdentityAndAStateOfItsOwn) {
  EditorWindow* const window = openTabs(2);
  EditorView* const one = window->editors().first();
  EditorView* const other = window->editors().last();
  EXPECT_NE(one->windowIdentity(), other->windowIdentity());
  ASSERT_TRUE(load(one, folder / "photo.png"));
  one->state().history().setCrop({1, 1, 1, 1});
  EXPECT_FALSE(other->state().loaded());
  EXPECT_EQ(other->state().history().crop(), CropMargins());
  EXPECT_FALSE(other->state().history().canUndo());
}

TEST_F(EditorTabsTest, TheButtonAtTheEndOfTheRowOpensATab) {
  EditorWindow* const window = openTabs(2);
  QToolButton* const button = window->tabRow()->newTabButton();
  EXPECT_TRUE(button->toolTip().startsWith(QStringLiteral("New Tab (")));
  QTest::mouseClick(button, Qt::LeftButton);
  EXPECT_EQ(window->editors().size(), 3);
  EXPECT_EQ(window->view(), window->editors().at(1));
}

TEST_F(EditorTabsTest, TheMenuOpensATabInItsWindow) {
  EditorWindow* const window = openTabs(1);
  EditorWindow* const other = windows.openEditor();
  Q_EMIT window->commands()->newTabRequested();
  EXPECT_EQ(window->editors().size(), 2);
  EXPECT_EQ(other->editors().size(), 1);
}

TEST_F(EditorTabsTest, WritesTheWholeNameOnTheTabAndItsToolTip) {
  testing::savePng(folder / "Q&A <b>.png", 4, 4);
  EditorWindow* const window = openTabs(2);
  EXPECT_EQ(tabs(window)->tabText(0), QCoreApplication::applicationName());
  ASSERT_TRUE(load(window->view(), folder / "Q&A <b>.png"));
  EXPECT_EQ(tabs(window)->tabText(0), QStringLiteral("Q&&A <b>.png"));
  EXPECT_EQ(tabs(window)->tabToolTip(0), QStringLiteral("<p>Q&amp;A &lt;b&gt;.png</p>"));
  EXPECT_EQ(tabs(window)->elideMode(), Qt::ElideMiddle);
  EXPECT_EQ(window->windowTitle(), QStringLiteral("Q&A <b>.png"));
}

TEST_F(EditorTabsTest, TitleMenusAndToolBarFollowTheCurrentTab) {
  EditorWindow* const window = openTabs(2);
  ASSERT_TRUE(load(window->view(), folder / "photo.png"));
  EXPECT_TRUE(previewAction(window)->isEnabled());
  QTest::mouseClick(tabs(window), Qt::LeftButton, {}, tabs(window)->tabRect(1).center());
  EXPECT_EQ(window->view(), window->editors().last());
  EXPECT_EQ(window->windowTitle(), QCoreApplication::applicationName());
  EXPECT_FALSE(previewAction(window)->isEnabled());
  // What happens behind it changes nothing in front.
  window->editors().first()->state().setPreviewOnly(true);
  QCoreApplication::processEvents();
  EXPECT_EQ(window->windowTitle(), QCoreApplication::applicationName());
  EXPECT_FALSE(previewAction(window)->isEnabled());
}

TEST_F(EditorTabsTest, TheKeyboardGoesRoundTheTabs) {
  EditorWindow* const window = openTabs(3);
  const auto expectAfter = [&](Qt::Key key, Qt::KeyboardModifiers modifiers, int index) {
    QTest::keyClick(window->windowHandle(), key, modifiers);
    QCoreApplication::processEvents();
    EXPECT_EQ(tabs(window)->currentIndex(), index) << key;
    EXPECT_TRUE(window->editors().at(index)->isVisible());
  };
  expectAfter(Qt::Key_PageDown, Qt::ControlModifier, 1);
  expectAfter(Qt::Key_PageDown, Qt::ControlModifier, 2);
  expectAfter(Qt::Key_PageDown, Qt::ControlModifier, 0);
  expectAfter(Qt::Key_PageUp, Qt::ControlModifier, 2);
#ifndef Q_OS_MACOS
  expectAfter(Qt::Key_Tab, Qt::ControlModifier, 0);
  expectAfter(Qt::Key_Tab, Qt::ControlModifier | Qt::ShiftModifier, 2);
  expectAfter(Qt::Key_Backtab, Qt::ControlModifier | Qt::ShiftModifier, 1);
#endif
}

TEST_F(EditorTabsTest, TheBarItselfIsReachedAndMovedByKeys) {
  EditorWindow* const window = openTabs(2);
  tabs(window)->setFocus(Qt::TabFocusReason);
  QTest::keyClick(tabs(window), Qt::Key_Right);
  EXPECT_EQ(window->view(), window->editors().last());
  EXPECT_TRUE(tabs(window)->hasFocus());
}

TEST_F(EditorTabsTest, LeavingATabCommitsWhatIsTypedAndComingBackRestoresTheFocus) {
  EditorWindow* const window = openTabs(2);
  EditorView* const editor = window->view();
  ASSERT_TRUE(load(editor, folder / "photo.png"));
  QTest::mouseClick(field(editor, Edge::left), Qt::LeftButton);
  QTest::keyClicks(field(editor, Edge::left), QStringLiteral("7"));
  ASSERT_TRUE(field(editor, Edge::left)->isEditing());

  tabs(window)->setCurrentIndex(1);
  EXPECT_FALSE(field(editor, Edge::left)->isEditing());
  EXPECT_EQ(editor->state().history().crop().left, 7);
  EXPECT_EQ(editor->state().history().manager().count(), 1);
  EXPECT_FALSE(qobject_cast<QLineEdit*>(QApplication::focusWidget()));

  tabs(window)->setCurrentIndex(0);
  EXPECT_TRUE(field(editor, Edge::left)->hasFocus());
}

TEST_F(EditorTabsTest, AFreshTabGivesTheFocusToNoField) {
  EditorWindow* const window = openTabs(2);
  ASSERT_TRUE(load(window->editors().last(), folder / "photo.png"));
  tabs(window)->setCurrentIndex(1);
  EXPECT_EQ(QApplication::focusWidget(), window);
  QTest::keyClick(window, Qt::Key_Tab);
  EXPECT_TRUE(window->view()->isAncestorOf(QApplication::focusWidget()));
}

TEST_F(EditorTabsTest, TabsAreMovedByDragging) {
  EditorWindow* const window = openTabs(3);
  const QList<EditorView*> before = window->editors();
  const QPoint start = tabCenter(window, 0);
  press(window, start);
  for (int step = 1; step <= 5; ++step)
    move(window, start + QPoint(step * (tabCenter(window, 2).x() - start.x()) / 5, 0));
  release(window, tabCenter(window, 2));
  ASSERT_TRUE(QTest::qWaitFor([&] { return window->editors().last() == before.first(); }));
  EXPECT_EQ(window->editors(), (QList{before[1], before[2], before[0]}));
  EXPECT_EQ(tabs(window)->currentIndex(), 2);
  EXPECT_EQ(window->view(), before.first());
  EXPECT_EQ(editorWindows().size(), 1);
}

TEST_F(EditorTabsTest, ATabLetGoAwayFromTheBarBecomesAWindowAtThePointer) {
  EditorWindow* const window = openTabs(3);
  EditorView* const editor = window->editors().at(1);
  const QPoint point = pullOff(window, 1);
  EXPECT_TRUE(tabs(window)->isTabOff());
  EXPECT_EQ(window->editors().size(), 3);
  release(window, point);
  EXPECT_FALSE(tabs(window)->isTabOff());
  EXPECT_EQ(window->editors().size(), 2);
  auto* const torn = qobject_cast<EditorWindow*>(editor->window());
  ASSERT_NE(torn, nullptr);
  ASSERT_NE(torn, window);
  EXPECT_EQ(torn->editors(), QList{editor});
  EXPECT_EQ(torn->size(), window->size());
  ASSERT_TRUE(QTest::qWaitForWindowActive(torn));
  EXPECT_TRUE(editor->isVisible());
}

TEST_F(EditorTabsTest, ATabThatComesBackToTheBarStays) {
  EditorWindow* const window = openTabs(3);
  const QList<EditorView*> before = window->editors();
  pullOff(window, 0);
  ASSERT_TRUE(tabs(window)->isTabOff());
  move(window, tabCenter(window, 1) + QPoint(4, 2));
  EXPECT_FALSE(tabs(window)->isTabOff());
  release(window, tabCenter(window, 0));
  EXPECT_EQ(window->editors().size(), 3);
  EXPECT_EQ(editorWindows().size(), 1);
  EXPECT_EQ(window->view(), before.first());
}

TEST_F(EditorTabsTest, EscapeKeepsATabThatIsOff) {
  EditorWindow* const window = openTabs(2);
  const QPoint point = pullOff(window, 1);
  ASSERT_TRUE(tabs(window)->isTabOff());
  QTest::keyClick(tabs(window), Qt::Key_Escape);
  EXPECT_FALSE(tabs(window)->isTabOff());
  release(window, point);
  EXPECT_EQ(window->editors().size(), 2);
  EXPECT_EQ(editorWindows().size(), 1);
}

TEST_F(EditorTabsTest, ATabLetGoOverAnotherWindowsTabsJoinsThere) {
  EditorWindow* const target = openTabs(2);
  EditorWindow* const source = openTabs(2);
  target->move(0, 0);
  ASSERT_TRUE(QTest::qWaitFor([&] { return target->frameGeometry().topLeft() == QPoint(0, 0); }));
  EditorView* const editor = source->editors().last();
  const QPoint place = tabs(target)->mapToGlobal(tabs(target)->tabRect(1).center() - QPoint(10, 0));
  source->move(place.x() - source->width() / 2, place.y() + 40);
  ASSERT_TRUE(QTest::qWaitFor([&] { return source->frameGeometry().top() > place.y(); }));
  pullOff(source, 1);
  const QPoint end = source->mapFromGlobal(place);
  move(source, end);
  release(source, end);
  EXPECT_EQ(editor->window(), target);
  EXPECT_EQ(target->editors().indexOf(editor), 1);
  EXPECT_EQ(target->view(), editor);
  EXPECT_EQ(source->editors().size(), 1);
  EXPECT_EQ(editorWindows().size(), 2);
}

TEST_F(EditorTabsTest, FromRightToLeftATabJoinsWhereItIsLetGoToo) {
  EditorWindow* const window = openTabs(3);
  window->setLayoutDirection(Qt::RightToLeft);
  QCoreApplication::processEvents();
  const EditorTabBar* const bar = tabs(window);
  ASSERT_GT(bar->tabRect(0).left(), bar->tabRect(2).left());
  for (int index = 0; index < 3; ++index) {
    const QPoint center = bar->tabRect(index).center();
    EXPECT_EQ(bar->insertionIndex(center + QPoint(10, 0)), index);
    EXPECT_EQ(bar->insertionIndex(center - QPoint(10, 0)), index + 1);
  }
}

TEST_F(EditorTabsTest, AWindowWhoseLastTabLeavesCloses) {
  EditorWindow* const target = openTabs(1);
  QPointer<EditorWindow> source = openTabs(1);
  EditorView* const editor = source->view();
  target->addEditor(editor);
  EXPECT_FALSE(source->isVisible());
  settle();
  EXPECT_TRUE(source.isNull());
  EXPECT_EQ(target->editors().size(), 2);
  EXPECT_TRUE(editor->isVisible());
}

TEST_F(EditorTabsTest, AMovedEditorKeepsItsFileItsEditsAndItsPicture) {
  EditorWindow* const window = openTabs(2);
  EditorView* const editor = window->view();
  ASSERT_TRUE(load(editor, folder / "photo.png"));
  VideoCanvasView* const surface = editor->canvas()->canvas();
  ASSERT_TRUE(QTest::qWaitFor([&] { return surface->isPictureShown(); }));
  const QImage before = surface->grabFrame();
  editor->state().history().setCrop({5, 0, 0, 0});
  for (int round = 0; round < 3; ++round) {
    windows.moveTab(editor, {});
    auto* const own = qobject_cast<EditorWindow*>(editor->window());
    ASSERT_NE(own, window);
    ASSERT_TRUE(QTest::qWaitForWindowExposed(own));
    EXPECT_EQ(own->windowTitle(), QStringLiteral("photo.png"));
    EXPECT_EQ(editor->state().history().crop().left, 5);
    editor->state().history().setCrop({});
    QCoreApplication::processEvents();
    ASSERT_TRUE(QTest::qWaitFor([&] {
      return surface->isPictureShown() && surface->grabFrame().size() == surface->size();
    }));
    const QPoint middle(surface->width() / 2, surface->height() / 2);
    EXPECT_EQ(surface->grabFrame().pixelColor(middle),
              before.pixelColor(before.width() / 2, before.height() / 2));
    editor->state().history().setCrop({5, 0, 0, 0});
    window->addEditor(editor);
    QCoreApplication::processEvents();
    settle();
  }
}

TEST_F(EditorTabsTest, AMiddleClickClosesATab) {
  EditorWindow* const window = openTabs(3);
  QPointer<EditorView> editor = window->editors().at(1);
  QTest::mouseClick(tabs(window), Qt::MiddleButton, {}, tabs(window)->tabRect(1).center());
  EXPECT_EQ(window->editors().size(), 2);
  settle();
  EXPECT_TRUE(editor.isNull());
  // Pressed on one tab and let go on another: neither.
  QTest::mousePress(tabs(window), Qt::MiddleButton, {}, tabs(window)->tabRect(0).center());
  QTest::mouseRelease(tabs(window), Qt::MiddleButton, {}, tabs(window)->tabRect(1).center());
  EXPECT_EQ(window->editors().size(), 2);
}

TEST_F(EditorTabsTest, OnlyTheCurrentAndTheHoveredTabOfferToClose) {
  EditorWindow* const window = openTabs(3);
  EXPECT_TRUE(closeButton(window, 0)->isVisible());
  EXPECT_FALSE(closeButton(window, 1)->isVisible());
  EXPECT_EQ(closeButton(window, 0)->accessibleName(), QStringLiteral("Close Tab"));
  move(window, tabCenter(window, 2));
  EXPECT_TRUE(closeButton(window, 2)->isVisible());
  QTest::mouseClick(closeButton(window, 2), Qt::LeftButton);
  EXPECT_EQ(window->editors().size(), 2);
  EXPECT_EQ(tabs(window)->currentIndex(), 0);
}

TEST_F(EditorTabsTest, TheMenuOfATabClosesItTheOthersOrSendsItAway) {
  EditorWindow* const window = openTabs(4);
  EditorView* const kept = window->editors().at(2);
  chooseFromMenu(window, 0, QStringLiteral("Close Tab"));
  EXPECT_EQ(window->editors().size(), 3);
  chooseFromMenu(window, 0, QStringLiteral("Move Tab to New Window"));
  EXPECT_EQ(window->editors().size(), 2);
  EXPECT_EQ(editorWindows().size(), 2);
  chooseFromMenu(window, static_cast<int>(window->editors().indexOf(kept)),
                 QStringLiteral("Close Other Tabs"));
  EXPECT_EQ(window->editors(), QList{kept});
}

TEST_F(EditorTabsTest, CloseInTheMenuClosesTheTabAndAtLastTheWindow) {
  QPointer<EditorWindow> window = openTabs(2);
  Q_EMIT window->commands()->closeRequested();
  ASSERT_EQ(window->editors().size(), 1);
  EXPECT_TRUE(window->isVisible());
  Q_EMIT window->commands()->closeRequested();
  EXPECT_FALSE(window->isVisible());
  settle();
  EXPECT_TRUE(window.isNull());
}

TEST_F(EditorTabsTest, AnAlertBringsItsTabToTheFront) {
  EditorWindow* const window = openTabs(2);
  EditorView* const behind = window->editors().last();
  behind->loader().loadMedia(folder / "missing.png");
  ASSERT_TRUE(QTest::qWaitFor([&] { return behind->state().openError().has_value(); }));
  EXPECT_EQ(window->view(), behind);
  auto* const alert = behind->findChild<QMessageBox*>();
  ASSERT_NE(alert, nullptr);
  alert->accept();
}

TEST_F(EditorTabsTest, ATabTellsHowFarItsExportIs) {
  EditorWindow* const window = openTabs(2);
  EXPECT_FALSE(tabs(window)->tabProgress(1));
  window->editors().last()->state().exportState().setProgress(0.4);
  EXPECT_EQ(tabs(window)->tabProgress(1), 0.4);
  EXPECT_FALSE(tabs(window)->tabProgress(0));
  window->editors().last()->state().exportState().setProgress({});
  EXPECT_FALSE(tabs(window)->tabProgress(1));
}

TEST_F(EditorTabsTest, ManyTabsFitOrScroll) {
  EditorWindow* const window = openTabs(12);
  const int wide = tabs(window)->tabRect(0).width();
  EXPECT_LE(tabs(window)->tabRect(11).right(), tabs(window)->width());
  EXPECT_LE(tabs(window)->geometry().right(), window->tabRow()->newTabButton()->x());
  for (int more = 0; more < 10; ++more)
    windows.openTab(window);
  EXPECT_LT(tabs(window)->tabRect(0).width(), wide);
  tabs(window)->setCurrentIndex(21);
  QCoreApplication::processEvents();
  EXPECT_TRUE(tabs(window)->rect().contains(tabs(window)->tabRect(21).center()));
}

TEST_F(EditorTabsTest, NothingIsLeftOfTwentyTabs) {
  QPointer<EditorWindow> window = openTabs(20);
  QList<QPointer<QObject>> alive{window.data()};
  for (EditorView* editor : window->editors())
    alive << editor << editor->canvas() << editor->canvas()->canvas() << &editor->state();
  for (int torn = 0; torn < 5; ++torn) {
    windows.moveTab(window->editors().at(torn), {});
    QCoreApplication::processEvents();
  }
  EXPECT_EQ(editorWindows().size(), 6);
  for (EditorWindow* open : editorWindows()) {
    alive << open;
    open->close();
  }
  settle();
  for (const QPointer<QObject>& object : alive)
    EXPECT_TRUE(object.isNull()) << object->metaObject()->className();
  EXPECT_TRUE(QApplication::topLevelWidgets().isEmpty());
}

}  // namespace
}  // namespace vantrel
