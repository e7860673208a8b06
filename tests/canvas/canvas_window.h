#pragma once

#include <QtTest/qtestspontaneevent.h>
#include <QNativeGestureEvent>
#include <QPushButton>
#include <QWheelEvent>

#include "canvas/overlay_window.h"
#include "canvas/video_canvas_view.h"
#include "support/bitmap_maker.h"

namespace vantrel {

/// No two of its pixels beside each other are alike, and none has the colour of the crop's border.
inline Bitmap scatteredPicture(int64_t width, int64_t height) {
  return testing::makeBitmap(
      width, height, {ColorModel::Rgb, SampleFormat::UInt8, false},
      [](int64_t x, int64_t y, int channel) { return 16 + testing::scatter(x, y, channel) % 200; });
}

/// An OverlayWindow with a picture, a button beside the canvas, and what moves the canvas.
class CanvasWindow : public OverlayWindow {
 public:
  static constexpr QColor kCanvasColor{40, 80, 120};

  CanvasWindow() {
    button.setText(QStringLiteral("Button"));
    button.setGeometry(0, 0, 80, 20);
    button.show();
    shown.image = scatteredPicture(200, 100);
    shown.canvasColor = kCanvasColor;
    OverlayWindow::update();
  }

  /// The pixel of the source that is seen at a point of the viewport.
  [[nodiscard]] QPointF sourceAt(const QPointF& point) const {
    return canvas.camera().projection().toSource(point);
  }
  [[nodiscard]] QPointF offset() const { return canvas.camera().scrollOffset(); }
  [[nodiscard]] CanvasPan::Hand hand() const { return canvas.pan().hand(); }
  [[nodiscard]] bool waitForPicture() {
    return QTest::qWaitFor([this] { return canvas.canvas()->isPictureShown(); });
  }

  /// A wheel with notches of 120, seen by the whole window.
  void turnWheel(const QPoint& point, const QPoint& angle, Qt::KeyboardModifiers modifiers = {}) {
    sendWheel(point, {}, angle, modifiers, Qt::NoScrollPhase);
  }
  /// Two fingers that move by points.
  void slide(const QPoint& point, const QPoint& pixels, Qt::KeyboardModifiers modifiers = {}) {
    sendWheel(point, {}, {}, modifiers, Qt::ScrollBegin);
    sendWheel(point, pixels, pixels, modifiers, Qt::ScrollUpdate);
    sendWheel(point, {}, {}, modifiers, Qt::ScrollEnd);
  }
  void gesture(Qt::NativeGestureType type, const QPoint& point, double value) {
    const QPointF local = inWindow(point);
    QNativeGestureEvent event(type, QPointingDevice::primaryPointingDevice(), 2, local, local,
                              window.mapToGlobal(local), value, {});
    QCoreApplication::sendEvent(window.windowHandle(), &event);
  }

  QPushButton button{&window};

 private:
  void sendWheel(const QPoint& point, const QPoint& pixels, const QPoint& angle,
                 Qt::KeyboardModifiers modifiers, Qt::ScrollPhase phase) {
    const QPointF local = inWindow(point);
    QWheelEvent event(local, window.mapToGlobal(local), pixels, angle, {}, modifiers, phase, false);
    // Only what comes from the system is handed on from child to parent.
    QSpontaneKeyEvent::setSpontaneous(&event);
    qApp->notify(window.windowHandle(), &event);
  }
};

}  // namespace vantrel
