#pragma once

class QWidget;

namespace vantrel {

/// Whether a text field has the keyboard focus of the active window. Main thread.
[[nodiscard]] bool isEditingText();

/// Takes the focus of the active window from the field that has it, which commits what was typed
/// there and closes its transaction. Main thread.
void endTextEditing();
/// The same in one window, which need not be active yet when it is clicked.
void endTextEditing(const QWidget& window);

}  // namespace vantrel
