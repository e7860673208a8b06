#include <gtest/gtest.h>

#include <QApplication>
#include <QSignalSpy>

#include "canvas/overlay_window.h"

namespace vantrel {
namespace {

/// Presses a key in what has the focus.
void key(Qt::Key pressed, Qt::KeyboardModifiers modifiers = {}) {
  QTest::keyClick(QApplication::focusWidget(), pressed, modifiers);
}
void tab() {
  key(Qt::Key_Tab);
}
void backtab() {
  key(Qt::Key_Backtab, Qt::ShiftModifier);
}

/// What the arrows move, as long as the overlay has the focus: -1 for the whole crop.
int aim(const OverlayWindow& window) {
  EXPECT_TRUE(window.overlay.hasFocus());
  const auto& handle = window.overlay.focusedHandle();
  return handle ? static_cast<int>(*handle) : -1;
}

TEST(CropKeyboard, TabGoesThroughCropHandlesAndFields) {
  OverlayWindow window;
  ASSERT_TRUE(window.isReady());
  for (int stop = -1; stop < 8; ++stop) {
    tab();
    EXPECT_EQ(aim(window), stop);
  }
  for (const CropMargins::Edge edge : CropMargins::kEdges) {
    tab();
    EXPECT_TRUE(window.overlay.fields()->field(edge)->field()->hasFocus());
    EXPECT_FALSE(window.overlay.focusedHandle());
  }
  tab();
  EXPECT_TRUE(window.after.hasFocus());
}

TEST(CropKeyboard, BacktabGoesTheSameWayBack) {
  OverlayWindow window;
  ASSERT_TRUE(window.isReady());
  window.after.setFocus();
  for (auto edge = CropMargins::kEdges.rbegin(); edge != CropMargins::kEdges.rend(); ++edge) {
    backtab();
    EXPECT_TRUE(window.overlay.fields()->field(*edge)->field()->hasFocus());
  }
  for (int stop = 7; stop >= -1; --stop) {
    backtab();
    EXPECT_EQ(aim(window), stop);
  }
  backtab();
  EXPECT_TRUE(window.before.hasFocus());
}

TEST(CropKeyboard, CropIsOneStopWithoutASource) {
  OverlayWindow window{QSizeF(0, 0)};
  ASSERT_TRUE(window.isReady());
  tab();
  EXPECT_EQ(aim(window), -1);
  tab();
  EXPECT_TRUE(window.after.hasFocus());
  backtab();
  EXPECT_EQ(aim(window), -1);
}

TEST(CropKeyboard, ArrowsMoveTheFocusedHandle) {
  OverlayWindow window;
  ASSERT_TRUE(window.isReady());
  tab();
  tab();
  ASSERT_EQ(window.overlay.focusedHandle(), CropHandle::topLeft);
  key(Qt::Key_Right);
  EXPECT_EQ(window.history.crop(), (CropMargins{21, 20, 20, 20}));
  key(Qt::Key_Up, Qt::ShiftModifier);
  EXPECT_EQ(window.history.crop(), (CropMargins{21, 10, 20, 20}));
  tab();
  key(Qt::Key_Right);
  EXPECT_EQ(window.history.crop(), (CropMargins{21, 10, 20, 20}));
  key(Qt::Key_Down);
  EXPECT_EQ(window.history.crop(), (CropMargins{21, 11, 20, 20}));
  EXPECT_EQ(window.history.manager().count(), 3);
}

TEST(CropKeyboard, FocusedHandleMovesByThePixelStep) {
  OverlayWindow window;
  ASSERT_TRUE(window.isReady());
  window.history.setPixelStep(2);
  window.overlay.setFocus();
  window.overlay.focusHandle(CropHandle::right);
  key(Qt::Key_Left);
  EXPECT_EQ(window.history.crop().right, 22);
}

TEST(CropKeyboard, PressGoesBackToTheWholeCrop) {
  OverlayWindow window;
  ASSERT_TRUE(window.isReady());
  QSignalSpy changes(&window.overlay, &CropOverlayView::focusedHandleChanged);
  tab();
  tab();
  EXPECT_EQ(changes.count(), 1);
  EXPECT_EQ(window.overlay.focusRing().size(), 4U);
  window.click(window.middle());
  EXPECT_EQ(changes.count(), 2);
  EXPECT_EQ(aim(window), -1);
  EXPECT_TRUE(window.overlay.focusRing().empty());
  key(Qt::Key_Right);
  EXPECT_EQ(window.history.crop(), (CropMargins{21, 20, 19, 20}));
}

TEST(CropKeyboard, RingShowsForKeysAlone) {
  OverlayWindow window;
  ASSERT_TRUE(window.isReady());
  window.click(window.middle());
  EXPECT_TRUE(window.overlay.focusRing().empty());
  window.before.setFocus();
  tab();
  const auto whole = window.overlay.focusRing();
  // Around the crop there is an edge too.
  EXPECT_EQ(whole.size(), 8U);
  tab();
  const auto handle = window.overlay.focusRing();
  ASSERT_EQ(handle.size(), 4U);
  EXPECT_NE(handle, whole);
  EXPECT_EQ(handle.front().color, window.overlay.palette().color(QPalette::Highlight));
  window.after.setFocus();
  EXPECT_TRUE(window.overlay.focusRing().empty());
}

TEST(CropKeyboard, AppearanceChangesWithTheRing) {
  OverlayWindow window;
  ASSERT_TRUE(window.isReady());
  QSignalSpy changes(&window.overlay, &CropOverlayView::appearanceChanged);
  tab();
  EXPECT_GT(changes.count(), 0);
  changes.clear();
  tab();
  EXPECT_GT(changes.count(), 0);
  changes.clear();
  window.after.setFocus();
  EXPECT_GT(changes.count(), 0);
}

TEST(CropKeyboard, HandleKeepsTheFocusWhileAnotherWindowHasIt) {
  OverlayWindow window;
  ASSERT_TRUE(window.isReady());
  tab();
  tab();
  tab();
  QWidget other;
  other.show();
  other.activateWindow();
  ASSERT_TRUE(QTest::qWaitForWindowActive(&other));
  EXPECT_TRUE(window.overlay.focusRing().empty());
  window.window.activateWindow();
  ASSERT_TRUE(QTest::qWaitForWindowActive(&window.window));
  EXPECT_EQ(window.overlay.focusedHandle(), CropHandle::top);
  EXPECT_FALSE(window.overlay.focusRing().empty());
}

TEST(CropKeyboard, NoHandleIsReachedInPreview) {
  OverlayWindow window;
  ASSERT_TRUE(window.isReady());
  window.setPreviewOnly(true);
  window.overlay.setFocus();
  window.overlay.focusHandle(CropHandle::left);
  EXPECT_EQ(aim(window), -1);
  tab();
  EXPECT_TRUE(window.after.hasFocus());
}

}  // namespace
}  // namespace vantrel
