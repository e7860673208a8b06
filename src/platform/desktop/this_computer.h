#pragma once

#include <QtGlobal>

namespace vantrel {

/// What the running system's texts call the machine, for "on this computer". Not yet run on macOS.
[[nodiscard]] constexpr const char* thisComputer() {
#ifdef Q_OS_MACOS
  return "this Mac";
#else
  return "this computer";
#endif
}

}  // namespace vantrel
