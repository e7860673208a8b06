#pragma once

#include <cstdint>
#include <optional>

#include "platform/movie/box_file.h"

namespace vantrel {

/// A number of EBML's variable length (RFC 8794, 4): the zeros in front tell how many bytes it has.
struct MatroskaNumber {
  int length = 0;
  /// Without the marker bit, and with it, as element IDs have it.
  uint64_t value = 0, marked = 0;

  /// As the size of an element: that its writer could not tell.
  [[nodiscard]] bool isUnknown() const { return value == (uint64_t{1} << 7 * length) - 1; }

  /// Absent where there is none. Throws std::system_error.
  [[nodiscard]] static std::optional<MatroskaNumber> read(BoxFile& file, uint64_t offset);
};

}  // namespace vantrel
