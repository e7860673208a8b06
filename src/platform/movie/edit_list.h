#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "platform/movie/quicktime_atoms.h"

namespace vantrel {

/// The entries of an `elst` payload, as many as fit into it, whatever their number is said to be.
/// None if one makes no sense.
[[nodiscard]] std::vector<QuickTimeEdit> parseEditList(std::span<const uint8_t> payload);

/// The payload of an `elst`, of version 1 if an entry needs it.
[[nodiscard]] std::vector<uint8_t> editListPayload(const std::vector<QuickTimeEdit>& edits);

/// `ticks` of `from` per second in ticks of `to` per second, to the nearest, halves up. Both
/// timescales at least 1, `ticks` not negative; INT64_MAX for what is beyond it.
[[nodiscard]] int64_t rescaledTicks(int64_t ticks, uint32_t from, uint32_t to);

}  // namespace vantrel
