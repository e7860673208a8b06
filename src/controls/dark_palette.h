#pragma once

class QPalette;

namespace vantrel {

/// A palette is dark when its windows are darker than the text on them.
[[nodiscard]] bool isDark(const QPalette& palette);

}  // namespace vantrel
