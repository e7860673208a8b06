#pragma once

#include <QStringView>
#include <cstdint>
#include <optional>

namespace vantrel {

/// The number that a whole text writes as an optional sign and ASCII digits; absent for any other
/// text, blanks included, and for a number beyond 64 bits.
[[nodiscard]] std::optional<int64_t> integerFromText(QStringView text);

}  // namespace vantrel
