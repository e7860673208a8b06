#include "platform/movie/edit_list.h"

#include <algorithm>
#include <limits>

#include "platform/movie/box_bytes.h"

namespace vantrel {
namespace {

constexpr size_t kShortEntry = 12, kLongEntry = 20;

bool needsLongEntry(const QuickTimeEdit& edit) {
  return edit.segmentDuration > int64_t{std::numeric_limits<uint32_t>::max()} ||
         edit.mediaTime > std::numeric_limits<int32_t>::max();
}

}  // namespace

std::vector<QuickTimeEdit> parseEditList(std::span<const uint8_t> payload) {
  ByteCursor cursor(payload);
  const bool wide = cursor.u32() >> 24 == 1;
  const uint64_t count = cursor.u32();
  const uint64_t room = cursor.rest().size() / (wide ? kLongEntry : kShortEntry);
  std::vector<QuickTimeEdit> edits(static_cast<size_t>(std::min(count, room)));
  for (QuickTimeEdit& edit : edits) {
    edit.segmentDuration = static_cast<int64_t>(cursor.word(wide));
    const uint64_t time = cursor.word(wide);
    edit.mediaTime = wide ? static_cast<int64_t>(time) : static_cast<int32_t>(time);
    edit.mediaRate = static_cast<int32_t>(cursor.u32());
    if (edit.segmentDuration < 0 || edit.mediaTime < -1) return {};
  }
  return edits;
}

std::vector<uint8_t> editListPayload(const std::vector<QuickTimeEdit>& edits) {
  const bool wide = std::any_of(edits.begin(), edits.end(), needsLongEntry);
  BoxWriter writer;
  writer.u32(wide ? 1u << 24 : 0);
  writer.u32(static_cast<uint32_t>(edits.size()));
  for (const QuickTimeEdit& edit : edits) {
    writer.word(static_cast<uint64_t>(edit.segmentDuration), wide);
    writer.word(static_cast<uint64_t>(edit.mediaTime), wide);
    writer.u32(static_cast<uint32_t>(edit.mediaRate));
  }
  return writer.release();
}

int64_t rescaledTicks(int64_t ticks, uint32_t from, uint32_t to) {
  // Seconds apart from the rest, so that no product is beyond 64 bits.
  const auto value = static_cast<uint64_t>(ticks);
  const uint64_t seconds = value / from, rest = value % from;
  constexpr auto kMost = static_cast<uint64_t>(std::numeric_limits<int64_t>::max());
  const uint64_t fraction = (rest * to + from / 2) / from;
  if (seconds > (kMost - fraction) / to) return static_cast<int64_t>(kMost);
  return static_cast<int64_t>(seconds * to + fraction);
}

}  // namespace vantrel
