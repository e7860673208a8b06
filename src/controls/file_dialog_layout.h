#pragma once

class QFileDialog;

namespace vantrel {

/// Gives the toolkit's own dialog room for places and names, and its kinds of files without the
/// long lists of their endings. The desktop's dialog stays as it is.
void layOutFileDialog(QFileDialog& dialog);

}  // namespace vantrel
