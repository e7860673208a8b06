#pragma once

#include <QPoint>
#include <QPointF>
#include <Qt>

/// What events of the application mean to a canvas. The functions know no event type, so that a
/// test needs none.
namespace vantrel::CanvasInput {

/// How far a wheel or a trackpad was turned.
struct WheelMotion {
  /// In points; zero for a wheel with notches.
  QPoint pixelDelta;
  /// In eighths of a degree, 120 for a usual notch.
  QPoint angleDelta;

  [[nodiscard]] bool isPrecise() const { return !pixelDelta.isNull(); }
};

/// The factor by which a pinch changes the zoom, at least 0.1. `magnification` is the change of the
/// scale by one event, 0 for none.
[[nodiscard]] double pinchFactor(double magnification);
/// The factor by which a wheel that is turned with the zoom key held changes the zoom; exponential
/// in the distance, upwards enlarges.
[[nodiscard]] double wheelFactor(const WheelMotion& motion);
/// What a wheel adds to the scroll offset, in points: a precise motion its own distance, a notch
/// that many lines. Turned upwards it shows what lies above.
[[nodiscard]] QPointF scrollDistance(const WheelMotion& motion, int linesPerNotch = 3);

/// What a canvas does with a key that goes down or up anywhere in its window.
enum class KeyAction { pass, armPan, disarmPan, exitPreview };

struct Key {
  int key = 0;
  Qt::KeyboardModifiers modifiers;
  bool isPress = true;
};

/// `isTyping`: a text field has the focus. Any action other than `pass` swallows the key.
[[nodiscard]] KeyAction keyAction(const Key& key, bool isTyping, bool previewOnly);

}  // namespace vantrel::CanvasInput
