#pragma once

#include <QCursor>
#include <QKeyEvent>
#include <QLineEdit>
#include <QMouseEvent>
#include <QScreen>
#include <QStringList>
#include <QTest>
#include <QVBoxLayout>
#include <QWidget>
#include <QWindow>

#include "canvas/canvas_scroll_view.h"
#include "canvas/crop_canvas_field.h"
#include "canvas/crop_canvas_fields.h"
#include "canvas/crop_overlay_geometry.h"
#include "canvas/crop_overlay_view.h"
#include "controls/crop_number_field.h"
#include "model/edit_history.h"

namespace vantrel {

/// A window with a canvas between two text fields, the first of which has the focus. The canvas
/// shows a source of 200 × 100 pixels at two points for each, cut by 20 on each side, and
/// its crop is kept by a history, as an editor does it.
class OverlayWindow {
 public:
  static constexpr QSizeF kSource{200, 100};
  static constexpr CropMargins kCrop{20, 20, 20, 20};

  explicit OverlayWindow(const QSizeF& source = kSource)
      : canvas(history), overlay(*canvas.overlay()), m_layout(&window) {
    history.setPixelStep(1);
    history.reset({source.isEmpty() ? CropMargins{} : kCrop, {}, {}});
    shown.sourceSize = source;
    shown.zoom = 2 * window.devicePixelRatioF();
    shown.fit = false;
    m_layout.addWidget(&before);
    m_layout.addWidget(&canvas, 1);
    m_layout.addWidget(&after);
    window.resize(700, 560);
    QObject::connect(&canvas, &CanvasScrollView::cropChanged, &window,
                     [this](const CropMargins& crop) { history.setCrop(crop); });
    QObject::connect(&history, &EditHistory::cropChanged, &window, [this] { update(); });
    keepLog();
    // Wherever it happens to be, what lies there would be under it.
    QCursor::setPos(window.screen()->geometry().bottomRight());
    window.show();
    window.activateWindow();
    update();
  }

  /// Whether the window has the keyboard; without it, no test of focus means anything.
  [[nodiscard]] bool isReady() {
    if (!QTest::qWaitForWindowActive(&window)) return false;
    before.setFocus();
    return true;
  }
  void update() {
    shown.crop = history.crop();
    canvas.update(shown);
  }
  void setPreviewOnly(bool preview) {
    shown.previewOnly = preview;
    update();
  }

  [[nodiscard]] QRectF selection() const { return overlay.overlay().selection(); }
  [[nodiscard]] double scale() const { return overlay.overlay().projection().scale(); }
  /// The middle of a handle, in points of the overlay.
  [[nodiscard]] QPoint middleOf(CropHandle handle) const {
    return CropOverlayGeometry::handleRect(handle, selection()).center().toPoint();
  }
  [[nodiscard]] QPoint middle() const { return selection().center().toPoint(); }

  // What a mouse does in the window, at points of the overlay.

  void press(const QPoint& point, Qt::MouseButton button = Qt::LeftButton) {
    QTest::mousePress(window.windowHandle(), button, {}, inWindow(point));
  }
  void move(const QPoint& point, Qt::KeyboardModifiers modifiers = {}) {
    // Of the buttons that are down, Qt knows from the presses.
    QTest::mouseEvent(QTest::MouseMove, window.windowHandle(), Qt::NoButton, modifiers,
                      inWindow(point));
    QCoreApplication::processEvents();
  }
  void release(const QPoint& point, Qt::MouseButton button = Qt::LeftButton) {
    QTest::mouseRelease(window.windowHandle(), button, {}, inWindow(point));
  }
  void click(const QPoint& point) {
    press(point);
    release(point);
  }
  void doubleClick(const QPoint& point) {
    QTest::mouseDClick(window.windowHandle(), Qt::LeftButton, {}, inWindow(point));
  }
  void drag(const QPoint& from, const QPoint& by, Qt::KeyboardModifiers modifiers = {}) {
    press(from);
    move(from + by, modifiers);
    release(from + by);
  }
  /// An event of the overlay alone, between whole points.
  void send(QEvent::Type type, const QPointF& point, Qt::MouseButtons buttons) {
    const Qt::MouseButton button =
        type == QEvent::MouseMove ? Qt::NoButton : Qt::MouseButton::LeftButton;
    QMouseEvent event(type, point, overlay.mapToGlobal(point), button, buttons, {});
    QCoreApplication::sendEvent(&overlay, &event);
  }

  EditHistory history;
  QWidget window;
  QLineEdit before;
  CanvasScrollView canvas;
  QLineEdit after;
  CropOverlayView& overlay;
  CropCanvas shown;
  /// What the overlay has told, in order: "began", "crop", "ended", "fit".
  QStringList log;

 protected:
  [[nodiscard]] QPoint inWindow(const QPoint& point) const { return overlay.mapTo(&window, point); }

 private:
  void keepLog() {
    QObject::connect(&overlay, &CropOverlayView::editBegan, &window,
                     [this] { log << QStringLiteral("began"); });
    QObject::connect(&overlay, &CropOverlayView::cropChanged, &window,
                     [this] { log << QStringLiteral("crop"); });
    QObject::connect(&overlay, &CropOverlayView::editEnded, &window,
                     [this] { log << QStringLiteral("ended"); });
    QObject::connect(&overlay, &CropOverlayView::fitRequested, &window,
                     [this] { log << QStringLiteral("fit"); });
  }

  QVBoxLayout m_layout;
};

}  // namespace vantrel
