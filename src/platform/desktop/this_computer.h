#pragma once

#include <QtGlobal>

namespace vantrel {

/// What the running system's texts call the machine, for "on this computer"; in the
/// catalogue under "Failure". Not yet run on macOS.
[[nodiscard]] constexpr const char* thisComputer() {
#ifdef Q_OS_MACOS
  return QT_TRANSLATE_NOOP("Failure", "this Mac");
#else
  return QT_TRANSLATE_NOOP("Failure", "this computer");
#endif
}

}  // namespace vantrel
