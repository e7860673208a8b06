#pragma once

namespace vantrel {

class EditHistory;

/// Whether Undo and Redo belong to the text that is being typed or to the edit history.
struct CropUndoRouting {
  /// Undoes (or redoes) typing in the focused text field of the active window while there is any;
  /// otherwise takes the focus away, which commits the field, and undoes in `history`.
  static void perform(EditHistory& history, bool redo);
};

}  // namespace vantrel
