#pragma once

class QWidget;

namespace vantrel {

/// Shows the window that `target` is or is in, with its tab if it is an editor, in front of all
/// others and active; one that was minimised is as it was before that. Main thread.
void bringToFront(QWidget& target);

}  // namespace vantrel
