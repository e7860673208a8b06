#pragma once

class QMessageBox;

namespace vantrel {

/// Lays a message box out to be read at a glance: the text in semibold over its explanation, both
/// on lines of a comfortable length. Neither is read as markup, since names of files stand in them.
/// Call it when both texts are set.
void layOutMessage(QMessageBox& box);

}  // namespace vantrel
