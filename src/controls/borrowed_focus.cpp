#include "controls/borrowed_focus.h"

namespace vantrel {

bool isBorrowedFocus(Qt::FocusReason reason) {
  return reason == Qt::PopupFocusReason || reason == Qt::ActiveWindowFocusReason ||
         reason == Qt::MenuBarFocusReason;
}

}  // namespace vantrel
