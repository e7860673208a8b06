#include "canvas/canvas_scroll_view.h"

#include <gtest/gtest.h>

#include <QAction>
#include <QProxyStyle>
#include <QSignalSpy>
#include <cmath>
#include <memory>

#include "canvas/canvas_window.h"
#include "controls/floating_scroll_bar.h"

namespace vantrel {
namespace {

using Hand = CanvasPan::Hand;

/// Counts the keys that a widget sees.
class KeyCounter final : public QObject {
 public:
  explicit KeyCounter(QWidget* widget) : QObject(widget) { widget->installEventFilter(this); }
  int count = 0;

 protected:
  bool eventFilter(QObject* /*watched*/, QEvent* event) override {
    if (event->type() == QEvent::KeyPress || event->type() == QEvent::KeyRelease) ++count;
    return false;
  }
};

/// A desktop that asks for less motion.
class StillStyle final : public QProxyStyle {
 public:
  int styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                QStyleHintReturn* result) const override {
    return hint == SH_Widget_Animation_Duration
               ? 0
               : QProxyStyle::styleHint(hint, option, widget, result);
  }
};

class CanvasScrollViewTest : public ::testing::Test {
 protected:
  void SetUp() override {
    ASSERT_TRUE(canvas.isReady());
    canvas.button.setFocus();
    zoom = canvas.shown.zoom;
  }
  void pressSpace(Qt::KeyboardModifiers modifiers = {}) {
    QTest::keyPress(canvas.window.windowHandle(), Qt::Key_Space, modifiers);
  }
  void releaseSpace() { QTest::keyRelease(canvas.window.windowHandle(), Qt::Key_Space); }
  const CanvasCamera& camera() { return canvas.canvas.camera(); }
  /// The source's middle in points of the viewport.
  QPointF shownMiddle() { return camera().projection().imageFrame().center(); }

  CanvasWindow canvas;
  /// At the start.
  double zoom = 0;
};

void expectNear(const QPointF& actual, const QPointF& expected, double tolerance = 1e-9) {
  EXPECT_NEAR(actual.x(), expected.x(), tolerance);
  EXPECT_NEAR(actual.y(), expected.y(), tolerance);
}

TEST_F(CanvasScrollViewTest, PansWithTheMiddleAndTheRightButtonOverTheCrop) {
  for (const Qt::MouseButton button : {Qt::MiddleButton, Qt::RightButton}) {
    const QPointF before = canvas.offset();
    canvas.press(canvas.middle(), button);
    EXPECT_EQ(canvas.hand(), Hand::closed);
    EXPECT_EQ(canvas.overlay.cursor().shape(), Qt::ClosedHandCursor);
    canvas.move(canvas.middle() + QPoint(30, -20));
    expectNear(canvas.offset(), before + QPointF(-30, 20));
    canvas.release(canvas.middle(), button);
    EXPECT_EQ(canvas.hand(), Hand::none);
    canvas.move(canvas.middle());
    expectNear(canvas.offset(), before + QPointF(-30, 20));
  }
  EXPECT_TRUE(canvas.canvas.hasFocus());
  EXPECT_EQ(canvas.history.crop(), OverlayWindow::kCrop);
  EXPECT_TRUE(canvas.log.isEmpty());
}

TEST_F(CanvasScrollViewTest, PansWithTheLeftButtonWhileSpaceIsHeld) {
  pressSpace();
  EXPECT_EQ(canvas.hand(), Hand::open);
  EXPECT_EQ(canvas.canvas.canvas()->cursor().shape(), Qt::OpenHandCursor);
  EXPECT_EQ(canvas.overlay.cursor().shape(), Qt::OpenHandCursor);
  const QPointF before = canvas.offset();
  canvas.drag(canvas.middle(), {12, 7});
  expectNear(canvas.offset(), before - QPointF(12, 7));
  EXPECT_EQ(canvas.history.crop(), OverlayWindow::kCrop);
  releaseSpace();
  EXPECT_EQ(canvas.hand(), Hand::none);
  EXPECT_EQ(canvas.canvas.canvas()->cursor().shape(), Qt::ArrowCursor);
}

TEST_F(CanvasScrollViewTest, PansThePreviewWhileSpaceIsHeldOnly) {
  canvas.setPreviewOnly(true);
  const QPointF before = canvas.offset();
  canvas.drag(canvas.middle(), {12, 7});
  expectNear(canvas.offset(), before);
  EXPECT_TRUE(canvas.canvas.hasFocus());
  pressSpace();
  canvas.drag(canvas.middle(), {12, 7});
  expectNear(canvas.offset(), before - QPointF(12, 7));
  releaseSpace();
}

TEST_F(CanvasScrollViewTest, ADragOfTheCropIsOneStepOfTheHistory) {
  canvas.press(canvas.middle());
  canvas.move(canvas.middle() + QPoint(4, 0));
  canvas.move(canvas.middle() + QPoint(8, 0));
  canvas.release(canvas.middle() + QPoint(8, 0));
  EXPECT_NE(canvas.history.crop(), OverlayWindow::kCrop);
  EXPECT_EQ(canvas.canvas.canvas()->crop(), canvas.history.crop());
  canvas.history.undo();
  EXPECT_EQ(canvas.history.crop(), OverlayWindow::kCrop);
  EXPECT_FALSE(canvas.history.canUndo());
}

TEST_F(CanvasScrollViewTest, ZoomsAtThePointerWithControlAndTheWheel) {
  QSignalSpy zoomed(&canvas.canvas, &CanvasScrollView::zoomChanged);
  const QPoint pointer = canvas.middle() + QPoint(37, -21);
  const QPointF pixel = canvas.sourceAt(pointer);
  for (const int turn : {120, 120, 120, -120}) {
    canvas.turnWheel(pointer, {0, turn}, Qt::ControlModifier);
    // Before and after, the picture is moved onto whole device pixels.
    expectNear(canvas.sourceAt(pointer), pixel, 1 / zoom);
  }
  ASSERT_EQ(zoomed.count(), 4);
  EXPECT_NEAR(camera().wish().zoom, zoom * std::exp(0.12 * 2), 1e-9);
  EXPECT_EQ(zoomed.last().at(0).toDouble(), camera().wish().zoom);
  EXPECT_FALSE(zoomed.last().at(1).toBool());
}

TEST_F(CanvasScrollViewTest, ZoomsFromAllOfItsWindow) {
  canvas.turnWheel(canvas.overlay.mapFrom(&canvas.window, canvas.button.geometry().center()),
                   {0, 120}, Qt::ControlModifier);
  EXPECT_GT(camera().wish().zoom, zoom);
}

TEST_F(CanvasScrollViewTest, ZoomsWithAPinchAndFitsWithASmartZoom) {
  QSignalSpy fit(&canvas.canvas, &CanvasScrollView::fitRequested);
  const QPoint pointer = canvas.middle() - QPoint(40, 30);
  const QPointF pixel = canvas.sourceAt(pointer);
  canvas.gesture(Qt::BeginNativeGesture, pointer, 0);
  canvas.gesture(Qt::ZoomNativeGesture, pointer, 0.25);
  canvas.gesture(Qt::EndNativeGesture, pointer, 0);
  EXPECT_DOUBLE_EQ(camera().wish().zoom, zoom * 1.25);
  expectNear(canvas.sourceAt(pointer), pixel, 1 / zoom);
  canvas.gesture(Qt::ZoomNativeGesture, pointer, -0.95);
  EXPECT_DOUBLE_EQ(camera().wish().zoom, zoom * 0.125);
  EXPECT_EQ(fit.count(), 0);
  canvas.gesture(Qt::SmartZoomNativeGesture, pointer, 1);
  EXPECT_EQ(fit.count(), 1);
}

TEST_F(CanvasScrollViewTest, ScrollsWithAWheelAndLeavesTheCursorAlone) {
  const QPointF before = canvas.offset();
  canvas.turnWheel(canvas.middle(), {0, -120});
  EXPECT_GT(canvas.offset().y(), before.y());
  EXPECT_EQ(canvas.offset().x(), before.x());
  EXPECT_EQ(canvas.hand(), Hand::none);
}

TEST_F(CanvasScrollViewTest, ClosesTheHandWhileTwoFingersScroll) {
  const QPointF before = canvas.offset();
  canvas.slide(canvas.middle(), {-9, 4});
  expectNear(canvas.offset(), before + QPointF(9, -4));
  EXPECT_EQ(canvas.overlay.cursor().shape(), Qt::ClosedHandCursor);
  EXPECT_TRUE(QTest::qWaitFor([this] { return canvas.hand() == Hand::none; }));
  EXPECT_NE(canvas.overlay.cursor().shape(), Qt::ClosedHandCursor);
}

TEST_F(CanvasScrollViewTest, SpaceInATextFieldIsText) {
  canvas.before.setFocus();
  QTest::keyClick(canvas.window.windowHandle(), Qt::Key_Space);
  EXPECT_EQ(canvas.before.text(), QStringLiteral(" "));
  EXPECT_EQ(canvas.hand(), Hand::none);
}

TEST_F(CanvasScrollViewTest, SpaceThatArmsTheHandPressesNoButtonAndNoShortcut) {
  const KeyCounter keys(&canvas.button);
  QSignalSpy clicked(&canvas.button, &QPushButton::clicked);
  QAction action;
  action.setShortcut(Qt::Key_Space);
  canvas.window.addAction(&action);
  QSignalSpy triggered(&action, &QAction::triggered);
  pressSpace();
  pressSpace();
  releaseSpace();
  EXPECT_EQ(keys.count, 0);
  EXPECT_EQ(clicked.count(), 0);
  EXPECT_EQ(triggered.count(), 0);
}

TEST_F(CanvasScrollViewTest, SpaceWithControlIsAShortcut) {
  QAction action;
  action.setShortcut(Qt::CTRL | Qt::Key_Space);
  canvas.window.addAction(&action);
  QSignalSpy triggered(&action, &QAction::triggered);
  pressSpace(Qt::ControlModifier);
  releaseSpace();
  EXPECT_EQ(triggered.count(), 1);
  EXPECT_EQ(canvas.hand(), Hand::none);
}

TEST_F(CanvasScrollViewTest, SpaceThatCameUpInATextFieldDisarmsTheHand) {
  pressSpace();
  canvas.before.setFocus();
  releaseSpace();
  EXPECT_EQ(canvas.hand(), Hand::none);
}

TEST_F(CanvasScrollViewTest, ALostWindowDisarmsTheHand) {
  pressSpace();
  QWidget other;
  other.show();
  other.activateWindow();
  ASSERT_TRUE(QTest::qWaitForWindowActive(&other));
  EXPECT_EQ(canvas.hand(), Hand::none);
}

TEST_F(CanvasScrollViewTest, OnlyTheCanvasOfTheActiveWindowTakesKeysAndZooms) {
  CanvasWindow other;
  ASSERT_TRUE(other.isReady());
  other.button.setFocus();
  QTest::keyPress(other.window.windowHandle(), Qt::Key_Space);
  EXPECT_EQ(other.hand(), Hand::open);
  EXPECT_EQ(canvas.hand(), Hand::none);
  QTest::keyRelease(other.window.windowHandle(), Qt::Key_Space);

  other.turnWheel(other.middle(), {0, 120}, Qt::ControlModifier);
  EXPECT_GT(other.canvas.camera().wish().zoom, zoom);
  EXPECT_EQ(camera().wish().zoom, zoom);
  // In a window behind, the wheel still zooms the canvas that is under the pointer.
  canvas.turnWheel(canvas.middle(), {0, 120}, Qt::ControlModifier);
  EXPECT_GT(camera().wish().zoom, zoom);
}

TEST_F(CanvasScrollViewTest, EscapeLeavesThePreviewAndNoViewSeesIt) {
  const KeyCounter keys(&canvas.button);
  QSignalSpy left(&canvas.canvas, &CanvasScrollView::exitPreviewRequested);
  QTest::keyPress(canvas.window.windowHandle(), Qt::Key_Escape);
  EXPECT_EQ(left.count(), 0);
  EXPECT_EQ(keys.count, 1);
  canvas.setPreviewOnly(true);
  QTest::keyPress(canvas.window.windowHandle(), Qt::Key_Escape);
  EXPECT_EQ(left.count(), 1);
  EXPECT_EQ(keys.count, 1);
}

TEST_F(CanvasScrollViewTest, ADoubleClickFits) {
  QSignalSpy fit(&canvas.canvas, &CanvasScrollView::fitRequested);
  canvas.doubleClick(canvas.middle());
  EXPECT_EQ(fit.count(), 1);
  canvas.setPreviewOnly(true);
  canvas.doubleClick(canvas.middle());
  EXPECT_EQ(fit.count(), 2);
}

TEST_F(CanvasScrollViewTest, ACanvasThatIsDisabledLeavesTheKeysToOthers) {
  QSignalSpy clicked(&canvas.button, &QPushButton::clicked);
  pressSpace();
  canvas.canvas.setEnabled(false);
  EXPECT_EQ(canvas.hand(), Hand::none);
  QTest::keyClick(canvas.window.windowHandle(), Qt::Key_Space);
  EXPECT_EQ(clicked.count(), 1);
}

TEST_F(CanvasScrollViewTest, AHiddenCanvasLeavesTheKeysToOthers) {
  QSignalSpy clicked(&canvas.button, &QPushButton::clicked);
  canvas.canvas.hide();
  QTest::keyClick(canvas.window.windowHandle(), Qt::Key_Space);
  EXPECT_EQ(clicked.count(), 1);
  canvas.canvas.show();
  pressSpace();
  EXPECT_EQ(canvas.hand(), Hand::open);
  releaseSpace();
}

TEST_F(CanvasScrollViewTest, CanGoWhileItsWindowStays) {
  auto second = std::make_unique<CanvasScrollView>(canvas.history, &canvas.window);
  second->show();
  second.reset();
  pressSpace();
  EXPECT_EQ(canvas.hand(), Hand::open);
  releaseSpace();
}

TEST_F(CanvasScrollViewTest, CentresAnotherPicture) {
  canvas.turnWheel(canvas.middle(), {0, -240});
  canvas.shown.image = scatteredPicture(60, 90);
  canvas.shown.sourceSize = {60, 90};
  canvas.history.reset({});
  canvas.update();
  expectNear(shownMiddle(), QRectF(canvas.overlay.rect()).center(), 1);
}

TEST_F(CanvasScrollViewTest, KeepsItsPlaceWhenNothingHasChanged) {
  canvas.turnWheel(canvas.middle(), {0, -240});
  const QPointF before = canvas.offset();
  canvas.update();
  EXPECT_EQ(canvas.offset(), before);
}

TEST_F(CanvasScrollViewTest, PublishesTheFittedZoomFromTheEventLoopOnce) {
  QSignalSpy zoomed(&canvas.canvas, &CanvasScrollView::zoomChanged);
  canvas.shown.fit = true;
  canvas.update();
  EXPECT_EQ(zoomed.count(), 0);
  QCoreApplication::processEvents();
  ASSERT_EQ(zoomed.count(), 1);
  EXPECT_EQ(zoomed.last().at(0).toDouble(), camera().shownZoom());
  EXPECT_TRUE(zoomed.last().at(1).toBool());
  canvas.shown.zoom = camera().shownZoom();
  canvas.update();
  QCoreApplication::processEvents();
  EXPECT_EQ(zoomed.count(), 1);

  canvas.window.resize(canvas.window.width() + 90, canvas.window.height());
  ASSERT_TRUE(QTest::qWaitFor([&] { return zoomed.count() == 2; }));
  expectNear(shownMiddle(), QRectF(canvas.overlay.rect()).center(), 1);
}

TEST_F(CanvasScrollViewTest, MovesToARequestedZoomAndLandsOnIt) {
  canvas.shown.zoom = 4;
  ++canvas.shown.cameraRequest;
  canvas.update();
  EXPECT_TRUE(camera().isMoving());
  EXPECT_DOUBLE_EQ(camera().shownZoom(), zoom);
  ASSERT_TRUE(QTest::qWaitFor([this] { return !camera().isMoving(); }));
  EXPECT_DOUBLE_EQ(camera().shownZoom(), 4);
}

TEST_F(CanvasScrollViewTest, ChangesAtOnceWhereTheDesktopAsksForLessMotion) {
  StillStyle still;
  FloatingScrollBar* const bar = canvas.canvas.floatingBar(Qt::Horizontal);
  canvas.canvas.setStyle(&still);
  canvas.canvas.canvas()->setStyle(&still);
  bar->setStyle(&still);
  canvas.shown.zoom = 4;
  ++canvas.shown.cameraRequest;
  canvas.update();
  EXPECT_FALSE(camera().isMoving());
  EXPECT_DOUBLE_EQ(camera().shownZoom(), 4);
  canvas.setPreviewOnly(true);
  EXPECT_EQ(canvas.canvas.canvas()->editingOpacity(), 0);
  bar->wake();
  bar->rest();
  EXPECT_FALSE(bar->isVisible());
  canvas.canvas.setStyle(nullptr);
  canvas.canvas.canvas()->setStyle(nullptr);
  bar->setStyle(nullptr);
}

TEST_F(CanvasScrollViewTest, AMoveEndsWhenTheCanvasHides) {
  canvas.shown.zoom = 4;
  ++canvas.shown.cameraRequest;
  canvas.update();
  canvas.canvas.hide();
  EXPECT_FALSE(camera().isMoving());
}

TEST_F(CanvasScrollViewTest, ScrollBarsMirrorTheDocumentAndScrollIt) {
  FloatingScrollBar* const bar = canvas.canvas.floatingBar(Qt::Vertical);
  EXPECT_FALSE(bar->isVisible());
  canvas.turnWheel(canvas.middle(), {0, -120});
  EXPECT_TRUE(bar->isVisible());
  EXPECT_EQ(bar->value(), std::lround(canvas.offset().y()));
  EXPECT_EQ(bar->maximum(),
            std::lround(camera().documentSize().height() - camera().viewport().height()));

  const QPoint grip = bar->mapTo(canvas.canvas.canvas(), bar->handle().center().toPoint());
  const QPointF before = canvas.offset();
  canvas.drag(grip, {0, -20});
  EXPECT_LT(canvas.offset().y(), before.y() - 20);
  EXPECT_EQ(canvas.offset().x(), before.x());
  EXPECT_EQ(canvas.history.crop(), OverlayWindow::kCrop);
}

TEST_F(CanvasScrollViewTest, ScrollBarsFadeWhenIdle) {
  FloatingScrollBar* const bar = canvas.canvas.floatingBar(Qt::Horizontal);
  bar->wake();
  EXPECT_EQ(bar->opacity(), 1);
  bar->rest();
  bar->fade().setCurrentTime(FloatingScrollBar::kFadeMilliseconds / 2);
  EXPECT_GT(bar->opacity(), 0);
  EXPECT_LT(bar->opacity(), 1);
  bar->fade().setCurrentTime(FloatingScrollBar::kFadeMilliseconds);
  EXPECT_FALSE(bar->isVisible());
}

TEST_F(CanvasScrollViewTest, BearsViewportsWithoutASize) {
  for (const QSize& size : {QSize(0, 0), QSize(0, 300), QSize(300, 0), QSize(1, 1)}) {
    canvas.canvas.setMinimumSize(0, 0);
    canvas.canvas.resize(size);
    canvas.turnWheel({}, {0, 120}, Qt::ControlModifier);
    canvas.turnWheel({}, {0, 120});
    canvas.canvas.canvas()->repaint();
    const QRectF frame = camera().projection().imageFrame();
    EXPECT_TRUE(std::isfinite(frame.x() + frame.y() + frame.width() + frame.height()));
  }
}

TEST_F(CanvasScrollViewTest, ZoomsAndScrollsNothingWithoutAPicture) {
  QSignalSpy zoomed(&canvas.canvas, &CanvasScrollView::zoomChanged);
  canvas.shown.image = {};
  canvas.shown.sourceSize = {0, 0};
  canvas.shown.fit = true;
  canvas.history.reset({});
  canvas.update();
  canvas.turnWheel({100, 100}, {0, 120}, Qt::ControlModifier);
  canvas.turnWheel({100, 100}, {0, -120});
  QCoreApplication::processEvents();
  EXPECT_EQ(zoomed.count(), 0);
  EXPECT_EQ(canvas.offset(), QPointF());
  EXPECT_FALSE(canvas.canvas.floatingBar(Qt::Vertical)->isVisible());
}

}  // namespace
}  // namespace vantrel
