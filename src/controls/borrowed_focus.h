#pragma once

#include <Qt>

namespace vantrel {

/// Whether a menu or another window holds the focus for a while, or gives it back: what had the
/// focus goes on.
[[nodiscard]] bool isBorrowedFocus(Qt::FocusReason reason);

}  // namespace vantrel
