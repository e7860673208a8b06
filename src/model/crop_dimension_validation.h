#pragma once

#include <QString>
#include <cstdint>

namespace vantrel {

/// Which number a typed width or height means.
struct CropDimensionValidation {
  /// A legal dimension in source pixels.
  int64_t value = 0;
  /// Whether the text is not a number or out of range, which the field shows by a flash.
  bool rejected = false;

  /// Resolves any text. `current` is the dimension as it stands, `maximum` the source's extent on
  /// this axis, `multiple` the pixel step, 1 or 2. A number off the grid is rounded down; one out
  /// of range, or too long for 64 bits, takes the nearest legal value; any other text keeps
  /// `current`. A `multiple` of 0 is a programming error.
  [[nodiscard]] static CropDimensionValidation resolve(const QString& text, int64_t current,
                                                       int64_t maximum, int64_t multiple);

  friend bool operator==(const CropDimensionValidation&, const CropDimensionValidation&) = default;
};

}  // namespace vantrel
