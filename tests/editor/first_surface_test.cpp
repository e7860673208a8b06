#include <gtest/gtest.h>

#include <QApplication>
#include <QTest>
#include <initializer_list>
#include <iostream>
#include <memory>
#include <tuple>

#include "canvas/canvas_scroll_view.h"
#include "canvas/video_canvas_view.h"
#include "editor/application_windows.h"
#include "editor/crop_menu_bar.h"
#include "editor/editor_tool_bar.h"
#include "editor/editor_view.h"
#include "editor/editor_window.h"
#include "editor/empty_canvas_view.h"
#include "inspector/inspector_view.h"
#include "platform/gl/picture_surface.h"
#include "playback/playback_controls.h"
#include "support/picture_files.h"
#include "support/temporary_folder.h"
#include "support/turn_watch.h"

namespace vantrel {
namespace {

VideoCanvasView& surfaceOf(EditorWindow& window) {
  return *window.view()->canvas()->canvas();
}

bool waitForPicture(EditorWindow& window) {
  return QTest::qWaitFor([&] { return surfaceOf(window).isPictureShown(); });
}

/// Where the parts of an editors' window are when it is first painted, from above; empty for one
/// that is not to be seen.
class FirstPaint final : public QObject {
 public:
  FirstPaint() { qApp->installEventFilter(this); }

  [[nodiscard]] const QList<QRect>& parts() const { return m_parts; }

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override {
    auto* const window = qobject_cast<EditorWindow*>(watched);
    if (!window || event->type() != QEvent::Paint || !m_parts.isEmpty()) return false;
    for (const QWidget* part : std::initializer_list<const QWidget*>{
             window->commands(), window->toolBar(), window->view(), window->view()->emptyView()}) {
      m_parts << (part->isVisible() ? QRect(part->mapTo(window, QPoint()), part->size()) : QRect());
    }
    return false;
  }

 private:
  QList<QRect> m_parts;
};

// The order matters: OpenGL is loaded once in a process.
TEST(FirstSurface, IsNotMadeAndNeitherIsThePanelForAWindowWithoutAFile) {
  ApplicationWindows windows;
  const std::unique_ptr<EditorWindow> window(windows.openEditor());
  window->activateWindow();
  ASSERT_TRUE(QTest::qWaitForWindowActive(window.get()));
  windows.openTab(window.get());
  ASSERT_EQ(window->editors().size(), 2);
  window->resize(1000, 640);
  QTest::keyClick(window->windowHandle(), Qt::Key_Tab);
  QCoreApplication::processEvents();
  EXPECT_FALSE(window->findChild<InspectorView*>());
  EXPECT_FALSE(window->findChild<CanvasScrollView*>());
  EXPECT_FALSE(window->findChild<PlaybackControls*>());
  EXPECT_FALSE(PictureSurface::isSupportKnown());
}

TEST(FirstSurface, IsNotYetInAWindowThatIsWholeWhenItIsFirstPainted) {
  const FirstPaint paint;
  ApplicationWindows windows;
  const std::unique_ptr<EditorWindow> window(windows.openEditor());
  ASSERT_FALSE(PictureSurface::isSupportKnown());
  ASSERT_TRUE(QTest::qWaitFor([&] { return !paint.parts().isEmpty(); }));
  const QRect menus = paint.parts()[0], tools = paint.parts()[1], view = paint.parts()[2];
  EXPECT_EQ(menus.topLeft(), QPoint(0, 0));
  EXPECT_EQ(tools, QRect(0, menus.height(), menus.width(), window->toolBar()->height()));
  EXPECT_EQ(view.topLeft(), QPoint(0, tools.y() + tools.height()));
  EXPECT_EQ(view.bottomRight(), window->rect().bottomRight());
  EXPECT_EQ(paint.parts()[3], view);
}

TEST(FirstSurface, ComesWithThePictureToAnEmptyWindowThatStaysInItsPlace) {
  const testing::TemporaryFolder folder;
  testing::savePng(folder / "photo.png", 120, 90);
  ApplicationWindows windows;
  const std::unique_ptr<EditorWindow> window(windows.openEditor());
  window->activateWindow();
  ASSERT_TRUE(QTest::qWaitForWindowActive(window.get()));
  EXPECT_FALSE(PictureSurface::isSupportKnown());
  EXPECT_FALSE(surfaceOf(*window).isVisible());
  const QRect place = window->geometry();

  // As the program does once its window is painted.
  std::ignore = PictureSurface::isSupported();
  testing::TurnWatch watch;
  watch.run([&] { EXPECT_EQ(windows.openFile(folder / "photo.png"), window.get()); });
  ASSERT_TRUE(watch.waitFor([&] { return surfaceOf(*window).isPictureShown(); }));
  const double painting = testing::TurnWatch::paintingOf(*window);
  std::cout << "longest turn: " << watch.longest().processor << " ms of the main thread or "
            << watch.longest().processor / painting << " paintings of the window\n";
  // There is no second attempt for a moment in which another machine has the processor.
  EXPECT_LE(watch.longest().processor, 2 * testing::TurnWatch::limitFor(painting));
  EXPECT_TRUE(surfaceOf(*window).isVisible());
  EXPECT_EQ(window->geometry(), place);
  EXPECT_TRUE(QTest::qWaitForWindowActive(window.get()));
}

TEST(FirstSurface, IsThereBeforeAWindowThatOpensForAFile) {
  const testing::TemporaryFolder folder;
  testing::savePng(folder / "photo.png", 120, 90);
  ApplicationWindows windows;
  const std::unique_ptr<EditorWindow> window(windows.openFile(folder / "photo.png"));
  EXPECT_TRUE(surfaceOf(*window).isVisible());
  const WId native = window->winId();
  ASSERT_TRUE(waitForPicture(*window));
  EXPECT_EQ(window->winId(), native);
}

TEST(FirstSurface, IsThereFromTheStartOnceOpenGLIsLoaded) {
  const testing::TemporaryFolder folder;
  testing::savePng(folder / "photo.png", 120, 90);
  ApplicationWindows windows;
  const std::unique_ptr<EditorWindow> window(windows.openEditor());
  ASSERT_TRUE(QTest::qWaitForWindowExposed(window.get()));
  const WId native = window->winId();
  windows.openFile(folder / "photo.png");
  ASSERT_TRUE(waitForPicture(*window));
  EXPECT_EQ(window->winId(), native);
}

}  // namespace
}  // namespace vantrel
