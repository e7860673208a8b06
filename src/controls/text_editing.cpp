#include "controls/text_editing.h"

#include <QApplication>
#include <QLineEdit>

#include "controls/selecting_number_field.h"

namespace vantrel {

bool isEditingText() {
  const QWidget* const window = QApplication::activeWindow();
  return window && qobject_cast<QLineEdit*>(window->focusWidget());
}

void endTextEditing() {
  if (const QWidget* const window = QApplication::activeWindow()) endTextEditing(*window);
}

void endTextEditing(const QWidget& window) {
  QWidget* const focused = window.focusWidget();
  if (!focused) return;
  // In a window that is not active, the field would not hear that the focus leaves it.
  if (auto* const field = qobject_cast<SelectingNumberField*>(focused)) field->endEditing();
  focused->clearFocus();
}

}  // namespace vantrel
