#pragma once

#include <QString>
#include <QStyle>

namespace vantrel {

/// The name of the drawing that stands for one of the toolkit: in dialogs of files, and in bars
/// that are too short. Empty where the toolkit's own stays.
[[nodiscard]] QString quietSymbol(QStyle::StandardPixmap which);

}  // namespace vantrel
