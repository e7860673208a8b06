#include "platform/movie/fragment_runs.h"

#include <algorithm>
#include <array>
#include <bit>

#include "platform/movie/box_bytes.h"

namespace vantrel {
namespace {

/// Flags of fields in front of the samples, of the fields of each, and of the last among those.
constexpr uint32_t kRunFields = 0x005, kSampleFields = 0xf00, kHasOffsets = 0x800;

/// The two numbers that a box starts with; zeros if it is too short.
std::array<uint32_t, 2> startOf(BoxFile& file, const FileBox& box) {
  std::array<uint8_t, 8> bytes{};
  if (box.end - box.payload < bytes.size() || !file.read(box.payload, bytes)) return {};
  ByteCursor cursor(bytes);
  const uint32_t first = cursor.u32();
  return {first, cursor.u32()};
}

uint64_t decodingTimeOf(BoxFile& file, const FileBox& traf) {
  const auto box = file.child(traf, fourCC("tfdt"));
  std::array<uint8_t, 12> bytes{};
  if (!box || box->end - box->payload < 8) return 0;
  const auto size = static_cast<size_t>(std::min<uint64_t>(box->end - box->payload, bytes.size()));
  if (!file.read(box->payload, std::span(bytes).first(size))) return 0;
  ByteCursor cursor(bytes);
  const bool wide = cursor.u32() >> 24 == 1;
  return cursor.word(wide);
}

FragmentRun runOf(BoxFile& file, const FileBox& box, uint32_t trackID, uint64_t decodingTime) {
  const auto [flags, samples] = startOf(file, box);
  FragmentRun run{box, trackID, samples, decodingTime};
  run.start = 8 + 4 * static_cast<uint64_t>(std::popcount(flags & kRunFields));
  run.sampleSize = 4 * static_cast<uint64_t>(std::popcount(flags & kSampleFields));
  run.hasOffsets = (flags & kHasOffsets) != 0;
  return run;
}

}  // namespace

void forEachRun(BoxFile& file, const FileBox& fragment,
                const std::function<void(const FragmentRun&)>& visit) {
  for (auto traf = file.child(fragment, fourCC("traf")); traf;
       traf = file.find(fourCC("traf"), traf->end, fragment.end)) {
    const auto header = file.child(*traf, fourCC("tfhd"));
    const uint32_t trackID = header ? startOf(file, *header)[1] : 0;
    const uint64_t decodingTime = decodingTimeOf(file, *traf);
    for (auto run = file.child(*traf, fourCC("trun")); run;
         run = file.find(fourCC("trun"), run->end, traf->end)) {
      visit(runOf(file, *run, trackID, decodingTime));
    }
  }
}

}  // namespace vantrel
