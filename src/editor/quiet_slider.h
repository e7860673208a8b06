#pragma once

class QPainter;
class QRect;
class QStyleOptionSlider;

namespace vantrel::QuietSlider {

/// Of the knob, in points.
inline constexpr int kKnob = 16;

/// A horizontal slider whose knob lies in `knob`: a thin track, filled up to the knob, which is a
/// white disc. The track is Dark, what is filled Highlight.
void draw(const QStyleOptionSlider& option, const QRect& knob, QPainter& painter);

}  // namespace vantrel::QuietSlider
