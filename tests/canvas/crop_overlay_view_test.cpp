#include <gmock/gmock.h>

#include <QApplication>
#include <QSignalSpy>

#include "canvas/overlay_window.h"

namespace vantrel {
namespace {

using ::testing::ElementsAre;

/// As few words as the matchers can print.
std::vector<std::string> words(const QStringList& log) {
  std::vector<std::string> result;
  for (const QString& word : log)
    result.push_back(word.toStdString());
  return result;
}

CropMargins margins(int64_t left, int64_t top, int64_t right, int64_t bottom) {
  return {left, top, right, bottom};
}

TEST(CropOverlayView, DragTellsBeginThenEachCropThenEnd) {
  OverlayWindow window;
  ASSERT_TRUE(window.isReady());
  const QPoint start = window.middleOf(CropHandle::left);
  window.press(start);
  EXPECT_THAT(words(window.log), ElementsAre("began"));
  window.move(start + QPoint(8, 0));
  // Told although the crop stays as it was.
  window.move(start + QPoint(8, 30));
  window.release(start + QPoint(8, 30));
  EXPECT_THAT(words(window.log), ElementsAre("began", "crop", "crop", "ended"));
  EXPECT_EQ(window.history.crop(), margins(24, 20, 20, 20));
  EXPECT_EQ(window.history.manager().count(), 1);
  EXPECT_FALSE(window.overlay.overlay().grip());
}

TEST(CropOverlayView, DragCountsFromThePress) {
  OverlayWindow window;
  ASSERT_TRUE(window.isReady());
  const QPoint start = window.middleOf(CropHandle::right);
  window.press(start);
  for (int step = 1; step <= 10; ++step)
    window.move(start + QPoint(step, 0));
  window.release(start + QPoint(10, 0));
  EXPECT_EQ(window.history.crop().right, 15);
}

TEST(CropOverlayView, DragKeepsToThePixelStepOfTheHistory) {
  OverlayWindow window;
  ASSERT_TRUE(window.isReady());
  window.history.setPixelStep(2);
  window.drag(window.middleOf(CropHandle::left), QPoint(6, 0));
  EXPECT_EQ(window.history.crop().left % 2, 0);
  EXPECT_NE(window.history.crop().left, 20);
}

TEST(CropOverlayView, MovedCropIgnoresThePixelStep) {
  OverlayWindow window;
  ASSERT_TRUE(window.isReady());
  window.history.setPixelStep(2);
  window.drag(window.middle(), QPoint(6, -10), Qt::ShiftModifier);
  EXPECT_EQ(window.history.crop(), margins(23, 15, 17, 25));
}

TEST(CropOverlayView, ShiftKeepsTheRatioAtACorner) {
  OverlayWindow window;
  ASSERT_TRUE(window.isReady());
  window.drag(window.middleOf(CropHandle::topLeft), QPoint(32, 0), Qt::ShiftModifier);
  const QSizeF size = window.history.crop().rectangle(OverlayWindow::kSource).size();
  EXPECT_LT(size.width(), 160);
  EXPECT_NEAR(size.width() / size.height(), 160.0 / 60, 0.05);
}

TEST(CropOverlayView, ShiftMeansNothingAtAnEdge) {
  OverlayWindow window;
  ASSERT_TRUE(window.isReady());
  window.drag(window.middleOf(CropHandle::top), QPoint(32, 20), Qt::ShiftModifier);
  EXPECT_EQ(window.history.crop(), margins(20, 30, 20, 20));
}

TEST(CropOverlayView, DoubleClickOnAHandleFitsOnceBetweenTwoEnds) {
  OverlayWindow window;
  ASSERT_TRUE(window.isReady());
  QSignalSpy fits(&window.canvas, &CanvasScrollView::fitRequested);
  window.doubleClick(window.middleOf(CropHandle::topRight));
  EXPECT_THAT(words(window.log), ElementsAre("began", "ended", "fit", "ended"));
  EXPECT_EQ(fits.count(), 1);
  EXPECT_EQ(window.history.crop(), OverlayWindow::kCrop);
}

TEST(CropOverlayView, DoubleClickBesideTheCropFitsToo) {
  OverlayWindow window;
  ASSERT_TRUE(window.isReady());
  window.doubleClick(QPoint(3, 3));
  EXPECT_THAT(words(window.log), ElementsAre("ended", "fit", "ended"));
}

TEST(CropOverlayView, MovementAfterADoubleClickChangesNothing) {
  OverlayWindow window;
  ASSERT_TRUE(window.isReady());
  const QPointF point = window.middleOf(CropHandle::top);
  window.send(QEvent::MouseButtonPress, point, Qt::LeftButton);
  window.send(QEvent::MouseButtonRelease, point, Qt::NoButton);
  window.send(QEvent::MouseButtonDblClick, point, Qt::LeftButton);
  window.send(QEvent::MouseMove, point + QPointF(0, 20), Qt::LeftButton);
  EXPECT_EQ(window.history.crop(), OverlayWindow::kCrop);
}

TEST(CropOverlayView, PressOnNothingBeginsNothing) {
  OverlayWindow window;
  ASSERT_TRUE(window.isReady());
  window.drag(QPoint(3, 3), QPoint(20, 20));
  EXPECT_THAT(words(window.log), ElementsAre("ended"));
  EXPECT_TRUE(window.overlay.hasFocus());
}

TEST(CropOverlayView, PressWithoutASourceDoesNothing) {
  OverlayWindow window{QSizeF(0, 0)};
  ASSERT_TRUE(window.isReady());
  window.drag(window.overlay.rect().center(), QPoint(20, 20));
  window.doubleClick(window.overlay.rect().center());
  // Only the releases are told.
  EXPECT_EQ(window.log.removeAll(QStringLiteral("ended")), 3);
  EXPECT_TRUE(window.log.isEmpty());
  EXPECT_FALSE(window.overlay.hasFocus());
  EXPECT_TRUE(window.overlay.focusRing().empty());
}

TEST(CropOverlayView, PressJustBeyondTheCursorOfAHandleTakesHoldOfIt) {
  OverlayWindow window;
  ASSERT_TRUE(window.isReady());
  const QRectF handle = CropOverlayGeometry::handleRect(CropHandle::topLeft, window.selection());
  const QPointF point = handle.topLeft() - QPointF(3.5, 3.5);
  window.send(QEvent::MouseMove, point, Qt::NoButton);
  EXPECT_EQ(window.overlay.cursor().shape(), Qt::ArrowCursor);
  window.send(QEvent::MouseButtonPress, point, Qt::LeftButton);
  EXPECT_EQ(window.overlay.overlay().grip(), CropOverlay::Grip{CropHandle::topLeft});
  window.send(QEvent::MouseButtonRelease, point, Qt::NoButton);
  EXPECT_THAT(words(window.log), ElementsAre("began", "ended"));
}

TEST(CropOverlayView, HalfASourcePixelRoundsAwayFromZero) {
  OverlayWindow window;
  ASSERT_TRUE(window.isReady());
  for (const double by : {0.5, -0.5}) {
    window.history.setCrop(OverlayWindow::kCrop);
    const QPointF point = window.middle();
    const QPointF moved = point + QPointF(by * window.scale(), 0);
    window.send(QEvent::MouseButtonPress, point, Qt::LeftButton);
    window.send(QEvent::MouseMove, moved, Qt::LeftButton);
    window.send(QEvent::MouseButtonRelease, moved, Qt::NoButton);
    EXPECT_EQ(window.history.crop().left, by > 0 ? 21 : 19);
  }
}

TEST(CropOverlayView, ArrowsMoveTheCropByOneOrTenAndEachIsAnUndoStep) {
  OverlayWindow window;
  ASSERT_TRUE(window.isReady());
  window.history.setPixelStep(2);
  window.overlay.setFocus();
  QTest::keyClick(&window.overlay, Qt::Key_Right);
  EXPECT_EQ(window.history.crop(), margins(21, 20, 19, 20));
  QTest::keyClick(&window.overlay, Qt::Key_Down, Qt::ShiftModifier);
  EXPECT_EQ(window.history.crop(), margins(21, 30, 19, 10));
  QTest::keyClick(&window.overlay, Qt::Key_Left);
  QTest::keyClick(&window.overlay, Qt::Key_Up);
  EXPECT_EQ(window.history.crop(), margins(20, 29, 20, 11));
  EXPECT_THAT(words(window.log), ElementsAre("crop", "crop", "crop", "crop"));
  EXPECT_EQ(window.history.manager().count(), 4);
}

TEST(CropOverlayView, OtherKeysAreForOthers) {
  OverlayWindow window;
  ASSERT_TRUE(window.isReady());
  window.overlay.setFocus();
  for (const Qt::Key key : {Qt::Key_Escape, Qt::Key_Return, Qt::Key_Delete, Qt::Key_A}) {
    QKeyEvent event(QEvent::KeyPress, key, Qt::NoModifier);
    QCoreApplication::sendEvent(&window.overlay, &event);
    EXPECT_FALSE(event.isAccepted());
  }
  EXPECT_TRUE(window.log.isEmpty());
}

TEST(CropOverlayView, SpaceBarPansWhateverIsUnderThePointer) {
  OverlayWindow window;
  ASSERT_TRUE(window.isReady());
  window.overlay.setFocus();
  const QPoint start = window.middleOf(CropHandle::bottom);
  QTest::keyPress(window.window.windowHandle(), Qt::Key_Space);
  EXPECT_EQ(window.overlay.cursor().shape(), Qt::OpenHandCursor);
  window.press(start);
  EXPECT_TRUE(window.canvas.pan().isPanning());
  EXPECT_EQ(window.overlay.cursor().shape(), Qt::ClosedHandCursor);
  window.move(start + QPoint(20, 20));
  window.release(start + QPoint(20, 20));
  EXPECT_FALSE(window.canvas.pan().isPanning());
  QTest::keyRelease(window.window.windowHandle(), Qt::Key_Space);
  EXPECT_TRUE(window.log.isEmpty());
  EXPECT_EQ(window.history.crop(), OverlayWindow::kCrop);
}

TEST(CropOverlayView, SpaceBarBeatsTheDoubleClick) {
  OverlayWindow window;
  ASSERT_TRUE(window.isReady());
  window.overlay.setFocus();
  QTest::keyPress(window.window.windowHandle(), Qt::Key_Space);
  window.doubleClick(window.middle());
  QTest::keyRelease(window.window.windowHandle(), Qt::Key_Space);
  EXPECT_TRUE(window.log.isEmpty());
}

TEST(CropOverlayView, DragGoesOnWhenTheSpaceBarComesLate) {
  OverlayWindow window;
  ASSERT_TRUE(window.isReady());
  const QPoint start = window.middleOf(CropHandle::left);
  window.press(start);
  QTest::keyPress(window.window.windowHandle(), Qt::Key_Space);
  window.move(start + QPoint(8, 0));
  EXPECT_EQ(window.history.crop().left, 24);
  QTest::keyRelease(window.window.windowHandle(), Qt::Key_Space);
  window.release(start + QPoint(8, 0));
  EXPECT_THAT(words(window.log), ElementsAre("began", "crop", "ended"));
}

TEST(CropOverlayView, OtherButtonsPanTheCanvas) {
  OverlayWindow window;
  ASSERT_TRUE(window.isReady());
  for (const Qt::MouseButton button : {Qt::RightButton, Qt::MiddleButton}) {
    const QPoint start = window.middleOf(CropHandle::left);
    window.press(start, button);
    EXPECT_TRUE(window.canvas.pan().isPanning());
    window.move(start + QPoint(8, 0));
    window.release(start + QPoint(8, 0), button);
    EXPECT_FALSE(window.canvas.pan().isPanning());
  }
  EXPECT_TRUE(window.log.isEmpty());
  EXPECT_EQ(window.history.crop(), OverlayWindow::kCrop);
}

TEST(CropOverlayView, ClicksFallThroughInPreview) {
  OverlayWindow window;
  ASSERT_TRUE(window.isReady());
  QSignalSpy fits(&window.canvas, &CanvasScrollView::fitRequested);
  window.setPreviewOnly(true);
  window.drag(window.middleOf(CropHandle::left), QPoint(8, 0));
  EXPECT_TRUE(window.log.isEmpty());
  EXPECT_EQ(window.history.crop(), OverlayWindow::kCrop);
  EXPECT_TRUE(window.canvas.hasFocus());
  window.doubleClick(window.middle());
  EXPECT_TRUE(window.log.isEmpty());
  EXPECT_EQ(fits.count(), 1);
  window.setPreviewOnly(false);
  window.drag(window.middleOf(CropHandle::left), QPoint(8, 0));
  EXPECT_EQ(window.history.crop().left, 24);
}

TEST(CropOverlayView, FieldsAreOutOfReachInPreview) {
  OverlayWindow window;
  ASSERT_TRUE(window.isReady());
  CropCanvasField* const panel = window.overlay.fields()->field(CropMargins::Edge::left);
  const QPoint point = panel->field()->mapTo(&window.overlay, panel->field()->rect().center());
  window.setPreviewOnly(true);
  window.click(point);
  EXPECT_FALSE(panel->field()->hasFocus());
  window.before.setFocus();
  QTest::keyClick(&window.before, Qt::Key_Tab);
  EXPECT_TRUE(window.after.hasFocus());
  window.setPreviewOnly(false);
  window.click(point);
  EXPECT_TRUE(panel->field()->hasFocus());
}

TEST(CropOverlayView, ArrowsStillMoveTheCropWhenPreviewBegins) {
  OverlayWindow window;
  ASSERT_TRUE(window.isReady());
  window.overlay.setFocus();
  window.overlay.focusHandle(CropHandle::left);
  window.setPreviewOnly(true);
  EXPECT_TRUE(window.overlay.hasFocus());
  QTest::keyClick(&window.overlay, Qt::Key_Right);
  EXPECT_EQ(window.history.crop(), margins(21, 20, 19, 20));
}

TEST(CropOverlayView, DragGoesOnWhenPreviewBegins) {
  OverlayWindow window;
  ASSERT_TRUE(window.isReady());
  const QPoint start = window.middleOf(CropHandle::left);
  window.press(start);
  window.setPreviewOnly(true);
  window.release(start);
  EXPECT_THAT(words(window.log), ElementsAre("began", "ended"));
}

TEST(CropOverlayView, CursorFollowsPointerAndCrop) {
  OverlayWindow window;
  ASSERT_TRUE(window.isReady());
  const auto shape = [&] { return window.overlay.cursor().shape(); };
  const QPoint point = window.middle();
  window.move(point);
  EXPECT_EQ(shape(), Qt::BitmapCursor);
  window.move(window.selection().topLeft().toPoint() + QPoint(40, -2));
  EXPECT_EQ(shape(), Qt::SizeVerCursor);
  window.move(window.selection().topLeft().toPoint() + QPoint(-2, 24));
  EXPECT_EQ(shape(), Qt::SizeHorCursor);
  window.move(QPoint(3, 3));
  EXPECT_EQ(shape(), Qt::ArrowCursor);
  window.move(point);
  window.history.setCrop({0, 0, 180, 80});
  EXPECT_EQ(shape(), Qt::ArrowCursor);
  window.history.setCrop(OverlayWindow::kCrop);
  EXPECT_EQ(shape(), Qt::BitmapCursor);
  window.setPreviewOnly(true);
  EXPECT_EQ(shape(), Qt::ArrowCursor);
}

TEST(CropOverlayView, CursorStaysThatOfTheDrag) {
  OverlayWindow window;
  ASSERT_TRUE(window.isReady());
  const QPoint start = window.selection().topLeft().toPoint() + QPoint(-2, 24);
  window.move(start);
  window.press(start);
  window.move(start + QPoint(0, 30));
  window.move(start - QPoint(200, 0));
  EXPECT_EQ(window.overlay.cursor().shape(), Qt::SizeHorCursor);
  window.release(start - QPoint(200, 0));
  EXPECT_EQ(window.overlay.cursor().shape(), Qt::ArrowCursor);
}

TEST(CropOverlayView, FieldSetsItsMargin) {
  OverlayWindow window;
  ASSERT_TRUE(window.isReady());
  CropNumberField* const field = window.overlay.fields()->field(CropMargins::Edge::top)->field();
  field->setFocus(Qt::TabFocusReason);
  QTest::keyClicks(field, QStringLiteral("500"));
  QTest::keyClick(field, Qt::Key_Return);
  EXPECT_EQ(window.history.crop(), margins(20, 79, 20, 20));
  EXPECT_EQ(field->text(), QStringLiteral("79"));
  EXPECT_FALSE(window.log.contains(QStringLiteral("began")));
  EXPECT_FALSE(window.log.contains(QStringLiteral("ended")));
}

}  // namespace
}  // namespace vantrel
