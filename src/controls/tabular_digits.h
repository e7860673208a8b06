#pragma once

#include <QFont>

namespace vantrel {

/// The font with digits of one width, where Qt can ask it for them.
[[nodiscard]] QFont withTabularDigits(QFont font);

}  // namespace vantrel
