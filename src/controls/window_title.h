#pragma once

#include <QString>

namespace vantrel {

/// `name` as the title of a window: what the toolkit would take for its mark of unsaved changes is
/// shown as it stands.
[[nodiscard]] QString windowTitleOf(QString name);

}  // namespace vantrel
