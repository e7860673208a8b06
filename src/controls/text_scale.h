#pragma once

#include <functional>

class QWidget;

namespace vantrel {

/// How much larger than the design's 13 points the text of the application is; at least 1.
[[nodiscard]] double textScale();

/// A size of the design, in points: of a font, or of what has to hold text.
[[nodiscard]] int scaledForText(int points);

/// Calls `apply`, which sets what depends on the application's font, now and soon after each change
/// of that font, as long as `widget` lives. In order for one widget. Main thread.
void followText(QWidget& widget, const std::function<void()>& apply);

/// Gives `widget` its font in a size of the design, in points, and follows the text.
void scaleFont(QWidget& widget, int points);

}  // namespace vantrel
