#include <gtest/gtest.h>

#include <QDialog>
#include <QMenu>
#include <algorithm>
#include <array>
#include <functional>
#include <random>

#include "canvas/canvas_window.h"
#include "controls/floating_scroll_bar.h"

namespace vantrel {
namespace {

using Hand = CanvasPan::Hand;

constexpr CropMargins kTenFromTheLeft{30, 20, 20, 20};

/// What may come between the press of a button and its release.
class CanvasInterruptionTest : public ::testing::Test {
 protected:
  void SetUp() override { ASSERT_TRUE(canvas.isReady()); }

  /// Drags the left edge by ten source pixels, and keeps hold of it.
  void beginDrag() {
    start = canvas.middleOf(CropHandle::left);
    canvas.press(start);
    canvas.move(start + QPoint(20, 0));
    ASSERT_EQ(canvas.history.crop(), kTenFromTheLeft);
  }
  void expectDragEndedInOneStep() {
    EXPECT_FALSE(canvas.overlay.overlay().grip());
    EXPECT_EQ(canvas.history.crop(), kTenFromTheLeft);
    // Were the transaction still open, the next edit would belong to it.
    canvas.history.setCrop({});
    EXPECT_EQ(canvas.history.manager().count(), 2);
  }
  /// Opens a dialog, releases the left button behind it and closes it again.
  void releaseBehindADialog(const QPoint& point) {
    QDialog dialog(&canvas.window);
    dialog.open();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&dialog));
    canvas.release(point);
    dialog.close();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&canvas.window));
  }

  CanvasWindow canvas;
  QPoint start;
};

TEST_F(CanvasInterruptionTest, DisablingEndsADrag) {
  beginDrag();
  canvas.canvas.setEnabled(false);
  canvas.release(start);
  canvas.canvas.setEnabled(true);
  canvas.move(start);
  expectDragEndedInOneStep();
}

TEST_F(CanvasInterruptionTest, HidingEndsADrag) {
  beginDrag();
  canvas.canvas.hide();
  canvas.release(start);
  canvas.canvas.show();
  expectDragEndedInOneStep();
}

TEST_F(CanvasInterruptionTest, ADialogEndsADrag) {
  beginDrag();
  releaseBehindADialog(start);
  expectDragEndedInOneStep();
}

TEST_F(CanvasInterruptionTest, ADragWhoseReleaseIsLostEndsWithTheNextMovement) {
  beginDrag();
  canvas.send(QEvent::MouseMove, start, Qt::NoButton);
  expectDragEndedInOneStep();
}

TEST_F(CanvasInterruptionTest, ADragOutlivesALostWindow) {
  beginDrag();
  QWidget other;
  other.show();
  other.activateWindow();
  ASSERT_TRUE(QTest::qWaitForWindowActive(&other));
  canvas.move(start + QPoint(40, 0));
  canvas.move(start + QPoint(20, 0));
  EXPECT_TRUE(canvas.overlay.overlay().grip());
  canvas.release(start + QPoint(20, 0));
  expectDragEndedInOneStep();
}

TEST_F(CanvasInterruptionTest, AnotherPictureEndsADrag) {
  beginDrag();
  canvas.history.reset({});
  canvas.shown.image = scatteredPicture(200, 100);
  canvas.update();
  canvas.move(start + QPoint(40, 0));
  canvas.release(start + QPoint(40, 0));
  EXPECT_EQ(canvas.history.crop(), CropMargins());
  EXPECT_FALSE(canvas.history.canUndo());
}

TEST_F(CanvasInterruptionTest, ADragThatGoesOnAfterAnUndoIsOneStepAgain) {
  beginDrag();
  canvas.history.undo();
  EXPECT_EQ(canvas.history.crop(), OverlayWindow::kCrop);
  canvas.move(start + QPoint(4, 0));
  canvas.move(start + QPoint(20, 0));
  canvas.release(start + QPoint(20, 0));
  expectDragEndedInOneStep();
}

TEST_F(CanvasInterruptionTest, APanInMidDragDelaysIt) {
  beginDrag();
  const QPoint point = start + QPoint(20, 0);
  canvas.press(point, Qt::RightButton);
  canvas.move(point + QPoint(50, 30));
  EXPECT_EQ(canvas.history.crop(), kTenFromTheLeft);
  canvas.release(point + QPoint(50, 30), Qt::RightButton);
  canvas.move(point + QPoint(52, 30));
  EXPECT_EQ(canvas.history.crop().left, kTenFromTheLeft.left + 1);
  canvas.move(point + QPoint(50, 30));
  canvas.release(point + QPoint(50, 30));
  expectDragEndedInOneStep();
}

TEST_F(CanvasInterruptionTest, AReleaseInMidPanEndsTheDragToo) {
  beginDrag();
  canvas.press(start + QPoint(20, 0), Qt::MiddleButton);
  canvas.release(start + QPoint(20, 0));
  EXPECT_EQ(canvas.hand(), Hand::none);
  canvas.release(start + QPoint(20, 0), Qt::MiddleButton);
  expectDragEndedInOneStep();
}

TEST_F(CanvasInterruptionTest, TheEdgeStaysAtThePointerWhenAWheelScrollsOrZooms) {
  beginDrag();
  const QPoint pointer = start + QPoint(20, 0);
  const double held = canvas.selection().left() - pointer.x();
  canvas.turnWheel(pointer, {-120, 120});
  canvas.move(pointer + QPoint(0, 1));
  EXPECT_NEAR(canvas.selection().left() - pointer.x(), held, canvas.scale() / 2);
  const CropMargins scrolled = canvas.history.crop();
  EXPECT_NE(scrolled, kTenFromTheLeft);
  canvas.turnWheel(pointer, {0, 240}, Qt::ControlModifier);
  canvas.move(pointer + QPoint(0, 2));
  EXPECT_EQ(canvas.history.crop(), scrolled);
  canvas.release(pointer);
}

TEST_F(CanvasInterruptionTest, DisablingHidingAndADialogEndAPan) {
  const QPoint point = canvas.middle();
  const auto expectNoPan = [&](const std::function<void()>& interrupt) {
    canvas.press(point, Qt::MiddleButton);
    ASSERT_EQ(canvas.hand(), Hand::closed);
    interrupt();
    EXPECT_EQ(canvas.hand(), Hand::none);
    const QPointF offset = canvas.offset();
    canvas.move(point + QPoint(30, 10));
    EXPECT_EQ(canvas.offset(), offset);
    canvas.release(point, Qt::MiddleButton);
  };
  expectNoPan([&] {
    canvas.canvas.setEnabled(false);
    canvas.canvas.setEnabled(true);
  });
  expectNoPan([&] {
    canvas.canvas.hide();
    canvas.canvas.show();
  });
  expectNoPan([&] { releaseBehindADialog(point); });
}

TEST_F(CanvasInterruptionTest, APanWhoseReleaseIsLostEndsWithTheNextMovement) {
  const QPoint point = canvas.middle();
  canvas.press(point, Qt::MiddleButton);
  const QPointF offset = canvas.offset();
  canvas.send(QEvent::MouseMove, point + QPoint(30, 10), Qt::NoButton);
  EXPECT_EQ(canvas.hand(), Hand::none);
  EXPECT_EQ(canvas.offset(), offset);
  canvas.release(point, Qt::MiddleButton);
}

TEST_F(CanvasInterruptionTest, DisablingLetsGoOfAScrollBar) {
  FloatingScrollBar* const bar = canvas.canvas.floatingBar(Qt::Vertical);
  bar->wake();
  const QPoint grip = bar->mapTo(canvas.canvas.canvas(), bar->handle().center().toPoint());
  canvas.press(grip);
  canvas.canvas.setEnabled(false);
  canvas.release(grip);
  canvas.canvas.setEnabled(true);
  canvas.move({3, 3});
  bar->rest();
  EXPECT_NE(bar->fade().state(), QAbstractAnimation::Stopped);
}

TEST_F(CanvasInterruptionTest, SpaceThatComesUpInAMenuDisarmsTheHand) {
  canvas.button.setFocus();
  QTest::keyPress(canvas.window.windowHandle(), Qt::Key_Space);
  ASSERT_EQ(canvas.hand(), Hand::open);
  QMenu menu;
  menu.addAction(QStringLiteral("Action"));
  menu.popup(canvas.window.geometry().center());
  ASSERT_TRUE(QTest::qWaitForWindowExposed(&menu));
  QTest::keyRelease(&menu, Qt::Key_Space);
  menu.close();
  EXPECT_EQ(canvas.hand(), Hand::none);
}

TEST_F(CanvasInterruptionTest, AMoveThatIsHiddenHasLandedWhenItIsShown) {
  canvas.shown.fit = true;
  ++canvas.shown.cameraRequest;
  canvas.update();
  ASSERT_TRUE(canvas.canvas.camera().isMoving());
  canvas.canvas.hide();
  EXPECT_FALSE(canvas.canvas.camera().isMoving());
  canvas.canvas.show();
  const CanvasCamera& camera = canvas.canvas.camera();
  EXPECT_DOUBLE_EQ(camera.shownZoom(), camera.fittedScale() * camera.devicePixelRatio());
}

/// Does anything at any time, the same each time.
class CanvasSequenceTest : public CanvasInterruptionTest {
 protected:
  static constexpr std::array kButtons{Qt::LeftButton, Qt::MiddleButton, Qt::RightButton};

  int upTo(int count) { return static_cast<int>(m_random() % count); }
  int notch() { return 120 * (upTo(3) - 1); }
  void moveTo(const QPoint& to) {
    const QRect area = canvas.overlay.rect();
    m_point = {std::clamp(to.x(), area.left(), area.right()),
               std::clamp(to.y(), area.top(), area.bottom())};
    canvas.move(m_point);
  }
  void toggle(Qt::MouseButton button) {
    if (m_down.testFlag(button)) {
      canvas.release(m_point, button);
    } else {
      canvas.press(m_point, button);
    }
    m_down ^= button;
  }
  void key(int code, bool isPress) {
    const auto action = isPress ? QTest::Press : QTest::Release;
    QTest::sendKeyEvent(action, canvas.window.windowHandle(), Qt::Key(code), QString(), {});
  }
  void useMouse() {
    switch (upTo(6)) {
      case 0:
        return moveTo(m_point + QPoint(upTo(81) - 40, upTo(61) - 30));
      case 1:
        return moveTo(canvas.middleOf(kCropHandles.at(upTo(kCropHandles.size()))));
      case 2:
        return canvas.turnWheel(m_point, {notch(), notch()});
      case 3:
        return canvas.turnWheel(m_point, {0, notch()}, Qt::ControlModifier);
      default:
        return toggle(kButtons.at(upTo(kButtons.size())));
    }
  }
  void interrupt() {
    switch (upTo(7)) {
      case 0:
        return key(Qt::Key_Space, upTo(2) == 0);
      case 1:
        return key(Qt::Key_Left + upTo(4), true);
      case 2:
        return canvas.setPreviewOnly(upTo(2) == 0);
      case 3:
        return canvas.history.undo();
      case 4:
        return canvas.history.redo();
      case 5:
        canvas.canvas.setEnabled(false);
        return canvas.canvas.setEnabled(true);
      default:
        canvas.shown.fit = upTo(2) == 0;
        ++canvas.shown.cameraRequest;
        return canvas.update();
    }
  }
  void releaseAll() {
    for (const Qt::MouseButton button : kButtons) {
      if (m_down.testFlag(button)) toggle(button);
    }
    key(Qt::Key_Space, false);
  }
  [[nodiscard]] bool isDragging() const { return canvas.overlay.overlay().grip().has_value(); }
  [[nodiscard]] bool isLeftDown() const { return m_down.testFlag(Qt::LeftButton); }

 private:
  std::minstd_rand m_random{7};
  QPoint m_point = canvas.middle();
  Qt::MouseButtons m_down;
};

TEST_F(CanvasSequenceTest, HoldsNothingOnceEverythingIsReleased) {
  const QRectF source(QPointF(0, 0), OverlayWindow::kSource);
  for (int round = 0; round < 30; ++round) {
    for (int step = 0; step < 20; ++step) {
      upTo(3) == 0 ? interrupt() : useMouse();
      ASSERT_EQ(canvas.history.crop(), canvas.overlay.overlay().crop());
      ASSERT_TRUE(source.contains(canvas.history.crop().rectangle(source.size())));
      ASSERT_TRUE(isLeftDown() || !isDragging());
    }
    releaseAll();
    ASSERT_EQ(canvas.hand(), Hand::none);
    ASSERT_FALSE(isDragging());
    const int steps = canvas.history.manager().index();
    const int64_t other = canvas.history.crop().left == 1 ? 2 : 1;
    canvas.history.setCrop({other, 0, 0, 0});
    ASSERT_EQ(canvas.history.manager().index(), steps + 1);
  }
}

}  // namespace
}  // namespace vantrel
