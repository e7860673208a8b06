#include "controls/crop_undo_routing.h"

#include <QApplication>
#include <QLineEdit>

#include "model/edit_history.h"

namespace vantrel {
namespace {

/// Whether the field took the command for its own text.
bool performInText(QWidget* focused, bool redo) {
  auto* const field = qobject_cast<QLineEdit*>(focused);
  if (!field || !(redo ? field->isRedoAvailable() : field->isUndoAvailable())) return false;
  if (redo) {
    field->redo();
  } else {
    field->undo();
  }
  return true;
}

}  // namespace

void CropUndoRouting::perform(EditHistory& history, bool redo) {
  const QWidget* const window = QApplication::activeWindow();
  QWidget* const focused = window ? window->focusWidget() : nullptr;
  if (performInText(focused, redo)) return;
  if (focused) focused->clearFocus();
  if (redo) {
    history.redo();
  } else {
    history.undo();
  }
}

}  // namespace vantrel
