#pragma once

#include <functional>

namespace vantrel {

/// Calls `then` once from the event loop, a moment after a widget of the program has been painted.
/// Needs the QApplication; main thread.
void afterFirstPaint(std::function<void()> then);

}  // namespace vantrel
