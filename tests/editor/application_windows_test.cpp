#include "editor/application_windows.h"

#include <QFileOpenEvent>
#include <QMessageBox>
#include <QPushButton>

#include "editor/crop_menu_bar.h"
#include "editor/editor_ending.h"
#include "editor/tabbed_windows.h"
#include "editor/waiting_exports.h"
#include "support/film_folder.h"

namespace vantrel {
namespace {

class ApplicationWindowsTest : public testing::TabbedWindows {};

TEST_F(ApplicationWindowsTest, ANewWindowOpensALittleBesideTheActiveOne) {
  EditorWindow* const first = openTabs(1);
  first->resize(1000, 700);
  first->move(40, 30);
  ASSERT_TRUE(QTest::qWaitFor([&] { return first->frameGeometry().topLeft() == QPoint(40, 30); }));
  Q_EMIT first->commands()->newWindowRequested();
  ASSERT_EQ(editorWindows().size(), 2);
  for (EditorWindow* window : editorWindows()) {
    if (window == first) continue;
    EXPECT_EQ(window->size(), first->size());
    EXPECT_EQ(window->pos(), first->pos() + QPoint(28, 28));
  }
}

TEST_F(ApplicationWindowsTest, ATabForAWindowThatIsGoneGetsOneOfItsOwn) {
  EditorWindow* const window = openTabs(1);
  window->close();
  EditorWindow* const own = windows.openTab(window);
  EXPECT_NE(own, window);
  EXPECT_TRUE(own->isVisible());
}

TEST_F(ApplicationWindowsTest, EachFurtherFileOpensAWindow) {
  EditorWindow* const first = windows.openFile(folder / "photo.png");
  EditorWindow* const second = windows.openFile(folder / "other.png");
  EXPECT_NE(first, second);
  EXPECT_EQ(first->editors().size(), 1);
  EXPECT_EQ(second->editors().size(), 1);
}

TEST_F(ApplicationWindowsTest, LeavesThePlaceOfWindowsThatOpenTogetherToTheDesktop) {
  const EditorWindow* const first = windows.openFile(folder / "photo.png");
  const EditorWindow* const second = windows.openFile(folder / "other.png");
  EXPECT_FALSE(first->testAttribute(Qt::WA_Moved));
  EXPECT_FALSE(second->testAttribute(Qt::WA_Moved));
}

TEST_F(ApplicationWindowsTest, AnIdleTabTakesAFileAndComesToTheFront) {
  EditorWindow* const window = openTabs(2);
  EditorView* const idle = window->editors().last();
  ASSERT_TRUE(load(window->view(), folder / "photo.png"));
  EXPECT_EQ(windows.openFile(folder / "other.png"), window);
  EXPECT_EQ(window->view(), idle);
  ASSERT_TRUE(QTest::qWaitFor([&] { return idle->state().loaded(); }));
  EXPECT_EQ(idle->state().file()->path, folder / "other.png");
}

TEST_F(ApplicationWindowsTest, AMinimizedWindowComesBackAsLargeAsItWas) {
  EditorWindow* const window = openTabs(1);
  window->showMaximized();
  ASSERT_TRUE(QTest::qWaitFor([&] { return window->isMaximized(); }));
  window->showMinimized();
  ASSERT_TRUE(QTest::qWaitFor([&] { return window->isMinimized(); }));
  EXPECT_EQ(windows.openFile(folder / "photo.png"), window);
  EXPECT_TRUE(QTest::qWaitFor([&] { return !window->isMinimized() && window->isActiveWindow(); }));
  EXPECT_TRUE(window->isMaximized());
}

TEST_F(ApplicationWindowsTest, TheActiveWindowTakesAFileFirst) {
  EditorWindow* const first = openTabs(2);
  EditorWindow* const second = openTabs(1);
  EditorWindow* const third = openTabs(1);
  ASSERT_TRUE(activate(second));
  EXPECT_EQ(windows.openFile(folder / "photo.png"), second);
  ASSERT_TRUE(activate(first));
  first->selectEditor(first->editors().last());
  EXPECT_EQ(windows.openFile(folder / "photo.png"), first);
  EXPECT_EQ(first->view(), first->editors().last());
  EXPECT_TRUE(first->editors().last()->state().busy());
  EXPECT_EQ(windows.openFile(folder / "photo.png"), first);
  EXPECT_EQ(windows.openFile(folder / "photo.png"), third);
}

TEST_F(ApplicationWindowsTest, TakesAFileThatTheDesktopSends) {
  EditorWindow* const window = openTabs(1);
  QFileOpenEvent file(QString::fromStdString((folder / "photo.png").string()));
  QCoreApplication::sendEvent(qApp, &file);
  EXPECT_TRUE(window->view()->state().busy());
  QFileOpenEvent page(QUrl(QStringLiteral("https://example.org/photo.png")));
  QCoreApplication::sendEvent(qApp, &page);
  EXPECT_EQ(editorWindows().size(), 1);
}

TEST_F(ApplicationWindowsTest, ClosingATabInMidLoadLeavesNothing) {
  testing::savePng(folder / "large.png", 6000, 5000);
  EditorWindow* const window = openTabs(2);
  QPointer<EditorView> editor = window->view();
  editor->loader().loadMedia(folder / "large.png");
  window->closeEditor(editor);
  EXPECT_EQ(window->editors().size(), 1);
  ASSERT_TRUE(QTest::qWaitFor([&] { return editor.isNull(); }));
  EXPECT_EQ(window->findChild<QMessageBox*>(), nullptr);
}

TEST_F(ApplicationWindowsTest, ClosingAWindowInMidLoadLeavesNothing) {
  testing::savePng(folder / "large.png", 6000, 5000);
  QPointer<EditorWindow> window = openTabs(2);
  window->view()->loader().loadMedia(folder / "large.png");
  window->close();
  EXPECT_FALSE(window->isVisible());
  ASSERT_TRUE(QTest::qWaitFor([&] { return window.isNull(); }));
}

class ExportingWindowsTest : public ApplicationWindowsTest {
 protected:
  static void SetUpTestSuite() {
    s_films = std::make_unique<testing::FilmFolder>();
    s_films->make("film.mp4");
    s_films->makeRepeated("film.mp4", "long.mp4", 30);
  }
  static void TearDownTestSuite() { s_films.reset(); }

  EditorWindow* exportingInSecondTab() {
    EditorWindow* const window = openTabs(2);
    EXPECT_TRUE(load(window->view(), *s_films / "long.mp4"));
    before = testing::waitingExports();
    window->view()->exports().exportMedia();
    EXPECT_TRUE(window->view()->state().busy());
    return window;
  }
  bool nothingIsLeft() const { return testing::waitingExports() == before; }

  static inline std::unique_ptr<testing::FilmFolder> s_films;
  size_t before = 0;
};

TEST_F(ExportingWindowsTest, ClosingTheTabOfAnExportCancelsIt) {
  EditorWindow* const window = exportingInSecondTab();
  QPointer<EditorView> editor = window->view();
  ASSERT_TRUE(QTest::qWaitFor([&] { return editor->state().exportState().progress() > 0.0; }));
  window->closeEditor(editor);
  EXPECT_FALSE(editor->isVisible());
  ASSERT_TRUE(QTest::qWaitFor([&] { return editor.isNull(); }));
  EXPECT_TRUE(nothingIsLeft());
}

TEST_F(ExportingWindowsTest, ClosingTheWindowOfAnExportCancelsIt) {
  QPointer<EditorWindow> window = exportingInSecondTab();
  window->close();
  EXPECT_FALSE(window->isVisible());
  ASSERT_TRUE(QTest::qWaitFor([&] { return window.isNull(); }));
  EXPECT_TRUE(nothingIsLeft());
}

TEST_F(ExportingWindowsTest, ClosingOneOfTwoWindowsThatExportLeavesTheOtherAlone) {
  QPointer<EditorWindow> closing = exportingInSecondTab();
  EditorWindow* const other = openTabs(1);
  EditorView* const editor = other->view();
  ASSERT_TRUE(load(editor, *s_films / "film.mp4"));
  editor->exports().exportMedia();
  ASSERT_TRUE(editor->state().busy());
  closing->close();
  ASSERT_TRUE(QTest::qWaitFor([&] { return closing.isNull(); }));
  ASSERT_TRUE(QTest::qWaitFor([&] { return !editor->state().busy(); }, 60'000));
  EXPECT_FALSE(editor->state().exportError());
  EXPECT_FALSE(editor->state().exportState().message());
  EXPECT_EQ(testing::waitingExports(), before + 1);
}

TEST_F(ExportingWindowsTest, AnExportGoesOnInATabThatIsTornOff) {
  EditorWindow* const window = exportingInSecondTab();
  EditorView* const editor = window->view();
  windows.moveTab(editor, {});
  auto* const own = qobject_cast<EditorWindow*>(editor->window());
  ASSERT_NE(own, window);
  ASSERT_TRUE(editor->state().busy());
  ASSERT_TRUE(QTest::qWaitFor([&] { return !editor->state().busy(); }, 60'000));
  EXPECT_FALSE(editor->state().exportError());
  ASSERT_TRUE(QTest::qWaitFor([] {
    for (QWidget* widget : QApplication::topLevelWidgets())
      if (qobject_cast<ReviewWindow*>(widget)) return true;
    return false;
  }));
}

TEST_F(ExportingWindowsTest, APlayingVideoGoesOnPlayingWhereItsTabGoes) {
  EditorWindow* const window = openTabs(2);
  EditorView* const editor = window->view();
  ASSERT_TRUE(load(editor, *s_films / "long.mp4"));
  Player* const player = editor->state().player();
  ASSERT_TRUE(QTest::qWaitFor([&] { return player->picture() != nullptr; }));
  player->play();
  windows.moveTab(editor, {});
  EXPECT_EQ(editor->state().player(), player);
  EXPECT_EQ(player->rate(), 1);
  const double then = player->currentTime();
  EXPECT_TRUE(QTest::qWaitFor([&] { return player->currentTime() > then + 0.2; }));
}

TEST_F(ExportingWindowsTest, EndsEveryEditorAtOnce) {
  QPointer<EditorWindow> window = exportingInSecondTab();
  QPointer<EditorWindow> other = windows.openEditor();
  QPointer<EditorView> closing = window->view();
  window->closeEditor(closing);
  deleteAllWindows();
  EXPECT_TRUE(window.isNull());
  EXPECT_TRUE(other.isNull());
  EXPECT_TRUE(closing.isNull());
  EXPECT_TRUE(nothingIsLeft());
}

}  // namespace
}  // namespace vantrel
