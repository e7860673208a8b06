#pragma once

class QTabBar;
class QWidget;

namespace vantrel {

/// The keys of `window` that show the next tab or the one before, from the last the first, and
/// those that move the current tab. `tabs` outlives them. Main thread.
void addTabKeys(QWidget& window, QTabBar& tabs);

}  // namespace vantrel
