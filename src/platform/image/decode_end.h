#pragma once

#include <new>

#include "base/cancelled.h"
#include "platform/image/image_reader.h"

namespace vantrel {

/// Why a decoder that jumps out of its calls did so.
enum class DecodeEnd { Damaged, Cancelled, OutOfMemory };

/// Throws what stands for it: ImageDamaged, Cancelled or std::bad_alloc.
[[noreturn]] inline void throwFor(DecodeEnd end) {
  switch (end) {
    case DecodeEnd::OutOfMemory:
      throw std::bad_alloc();
    case DecodeEnd::Cancelled:
      throw Cancelled();
    case DecodeEnd::Damaged:
      break;
  }
  throw ImageDamaged();
}

}  // namespace vantrel
