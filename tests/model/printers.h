#pragma once

#include <ostream>

#include "model/crop_margins.h"

namespace vantrel {

/// How a failed expectation shows a crop.
inline void PrintTo(const CropMargins& crop, std::ostream* out) {
  *out << "{left " << crop.left << ", top " << crop.top << ", right " << crop.right << ", bottom "
       << crop.bottom << "}";
}

}  // namespace vantrel
