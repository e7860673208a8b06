#include <gtest/gtest.h>

#include <QApplication>
#include <QFileDialog>
#include <QTest>
#include <QWindow>
#include <memory>
#include <tuple>

#include "canvas/canvas_scroll_view.h"
#include "canvas/video_canvas_view.h"
#include "editor/editor_view.h"
#include "editor/editor_window.h"
#include "platform/gl/picture_surface.h"
#include "support/picture_files.h"
#include "support/temporary_folder.h"

namespace vantrel {
namespace {

std::unique_ptr<EditorWindow> openWindow() {
  auto window = std::make_unique<EditorWindow>([](const FinishedExport&) {});
  window->setAttribute(Qt::WA_DeleteOnClose, false);
  return window;
}

bool activate(QWidget& window) {
  window.raise();
  window.activateWindow();
  return QTest::qWaitForWindowActive(&window);
}

/// Windows that are on the screen before OpenGL is loaded, and get their first file after it: the
/// toolkit then makes each anew.
class LateSurfaceTest : public ::testing::Test {
 protected:
  static void SetUpTestSuite() {
    QApplication::setAttribute(Qt::AA_DontUseNativeDialogs);
    s_windows = std::make_unique<Windows>();
    s_windows->maximized->showMaximized();
    s_windows->fullScreen->showFullScreen();
    for (EditorWindow* const window : {s_windows->plain.get(), s_windows->asking.get()}) {
      window->show();
      ASSERT_TRUE(QTest::qWaitForWindowExposed(window));
    }
    ASSERT_TRUE(QTest::qWaitFor([] { return s_windows->fullScreen->isFullScreen(); }));
    ASSERT_FALSE(PictureSurface::isSupportKnown());
    // As the program does once its window is painted.
    std::ignore = PictureSurface::isSupported();
  }
  static void TearDownTestSuite() { s_windows.reset(); }

  void SetUp() override { testing::savePng(folder / "photo.png", 120, 90); }

  bool load(EditorWindow& window) {
    window.view()->loader().loadMedia(folder / "photo.png");
    return QTest::qWaitFor([&] { return window.view()->canvas()->canvas()->isPictureShown(); });
  }

  struct Windows {
    std::unique_ptr<EditorWindow> plain = openWindow(), maximized = openWindow(),
                                  fullScreen = openWindow(), asking = openWindow();
  };
  static inline std::unique_ptr<Windows> s_windows;
  testing::TemporaryFolder folder;
};

TEST_F(LateSurfaceTest, LeavesAWindowWhereItIsWithTheKeyboard) {
  EditorWindow& window = *s_windows->plain;
  ASSERT_TRUE(activate(window));
  window.setGeometry(140, 120, 1000, 640);
  ASSERT_TRUE(QTest::qWaitFor([&] { return window.size() == QSize(1000, 640); }));
  const QRect frame = window.frameGeometry();
  ASSERT_TRUE(load(window));
  EXPECT_TRUE(QTest::qWaitFor([&] { return window.frameGeometry() == frame; }));
  EXPECT_TRUE(QTest::qWaitForWindowActive(&window));
  EXPECT_EQ(QGuiApplication::focusWindow(), window.windowHandle());
}

TEST_F(LateSurfaceTest, LeavesAWindowMaximized) {
  EditorWindow& window = *s_windows->maximized;
  ASSERT_TRUE(activate(window));
  const QRect place = window.geometry(), before = window.normalGeometry();
  ASSERT_TRUE(load(window));
  EXPECT_TRUE(QTest::qWaitFor([&] { return window.isMaximized() && window.geometry() == place; }));
  EXPECT_TRUE(QTest::qWaitForWindowActive(&window));
  window.showNormal();
  EXPECT_TRUE(QTest::qWaitFor([&] { return window.size() == before.size(); }));
}

TEST_F(LateSurfaceTest, LeavesAWindowInFullScreen) {
  EditorWindow& window = *s_windows->fullScreen;
  ASSERT_TRUE(activate(window));
  const QRect place = window.geometry();
  ASSERT_TRUE(load(window));
  EXPECT_TRUE(QTest::qWaitFor([&] { return window.isFullScreen() && window.geometry() == place; }));
  EXPECT_TRUE(QTest::qWaitForWindowActive(&window));
}

TEST_F(LateSurfaceTest, LeavesTheOpenDialogOverItsWindow) {
  EditorWindow& window = *s_windows->asking;
  ASSERT_TRUE(activate(window));
  window.view()->openMedia();
  auto* const dialog = window.findChild<QFileDialog*>();
  ASSERT_NE(dialog, nullptr);
  ASSERT_TRUE(QTest::qWaitForWindowActive(dialog));
  ASSERT_TRUE(load(window));
  EXPECT_TRUE(dialog->isVisible());
  EXPECT_EQ(dialog->windowHandle()->transientParent(), window.windowHandle());
  EXPECT_TRUE(QTest::qWaitForWindowActive(dialog));
  dialog->reject();
}

}  // namespace
}  // namespace vantrel
