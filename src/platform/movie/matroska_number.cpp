#include "platform/movie/matroska_number.h"

#include <array>
#include <bit>
#include <span>

namespace vantrel {

std::optional<MatroskaNumber> MatroskaNumber::read(BoxFile& file, uint64_t offset) {
  std::array<uint8_t, 8> bytes{};
  if (!file.read(offset, std::span(bytes).first(1)) || bytes[0] == 0) return {};
  const int length = std::countl_zero(bytes[0]) + 1;
  const std::span<uint8_t> number = std::span(bytes).first(static_cast<size_t>(length));
  if (!file.read(offset, number)) return {};
  MatroskaNumber result{length, 0, 0};
  for (const uint8_t byte : number)
    result.marked = result.marked << 8 | byte;
  result.value = result.marked & ((uint64_t{1} << 7 * length) - 1);
  return result;
}

}  // namespace vantrel
