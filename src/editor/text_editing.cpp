#include "editor/text_editing.h"

#include <QApplication>
#include <QLineEdit>

namespace vantrel {

bool isEditingText() {
  const QWidget* const window = QApplication::activeWindow();
  return window && qobject_cast<QLineEdit*>(window->focusWidget());
}

void endTextEditing() {
  const QWidget* const window = QApplication::activeWindow();
  QWidget* const focused = window ? window->focusWidget() : nullptr;
  if (focused) focused->clearFocus();
}

}  // namespace vantrel
