#pragma once

#include <string>

namespace vantrel {

/// "Vantrel-" and a new UUID.
[[nodiscard]] std::string uniqueName();

/// A new UUID in capitals, without braces.
[[nodiscard]] std::string uniqueId();

}  // namespace vantrel
