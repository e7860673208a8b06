#include "canvas/canvas_input.h"

#include <algorithm>
#include <cmath>

namespace vantrel::CanvasInput {
namespace {

constexpr double kSmallestPinchFactor = 0.1;
/// Of the exponent of a factor: for each point of a precise motion, for each notch of a wheel.
constexpr double kZoomPerPoint = 0.008, kZoomPerNotch = 0.12;
/// Far beyond the range of any zoom, and within that of exp().
constexpr double kLargestExponent = 100;
/// In eighths of a degree.
constexpr double kNotch = 120;
constexpr double kPointsPerLine = 20;
/// Command on macOS.
constexpr Qt::KeyboardModifier kZoomKey = Qt::ControlModifier;

}  // namespace

double pinchFactor(double magnification) {
  return std::isfinite(magnification) ? std::max(kSmallestPinchFactor, 1 + magnification) : 1;
}

double wheelFactor(const WheelMotion& motion) {
  const double exponent = motion.isPrecise() ? motion.pixelDelta.y() * kZoomPerPoint
                                             : motion.angleDelta.y() / kNotch * kZoomPerNotch;
  return std::exp(std::clamp(exponent, -kLargestExponent, kLargestExponent));
}

QPointF scrollDistance(const WheelMotion& motion, int linesPerNotch) {
  if (motion.isPrecise()) return -QPointF(motion.pixelDelta);
  return -QPointF(motion.angleDelta) / kNotch * linesPerNotch * kPointsPerLine;
}

KeyAction keyAction(const Key& key, bool isTyping, bool previewOnly) {
  const bool isCommand = key.modifiers.testFlag(kZoomKey);
  if (key.key == Qt::Key_Space && !isTyping && !isCommand) {
    return key.isPress ? KeyAction::armPan : KeyAction::disarmPan;
  }
  if (key.key == Qt::Key_Escape && key.isPress && previewOnly) return KeyAction::exitPreview;
  return KeyAction::pass;
}

}  // namespace vantrel::CanvasInput
