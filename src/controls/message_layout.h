#pragma once

#include <QString>

class QMessageBox;

namespace vantrel {

/// Lays a message box out to be read at a glance: the text in semibold over its explanation, both
/// on lines of a comfortable length. Neither is read as markup, since names of files stand in them.
/// Call it when both texts are set.
void layOutMessage(QMessageBox& box);

/// `text` with places for a line to end, which are not seen, within words of more than 40
/// characters, as names of files can be. It looks and reads the same.
[[nodiscard]] QString withBreaksInLongWords(const QString& text);

}  // namespace vantrel
