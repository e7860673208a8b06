#pragma once

class QMessageBox;

namespace vantrel {

/// Lays a message box out to be read at a glance: the text in semibold over its explanation, both
/// on lines of a comfortable length. Call it when both texts are set.
void layOutMessage(QMessageBox& box);

}  // namespace vantrel
