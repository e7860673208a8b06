#include "platform/movie/composition_delay.h"

#include <algorithm>
#include <array>
#include <limits>
#include <optional>

#include "platform/movie/box_bytes.h"
#include "platform/movie/box_file.h"
#include "platform/movie/fragment_runs.h"

namespace vantrel {
namespace {

/// A big-endian number of the file as libavformat takes it for a lift; 0 past the end of the file.
int64_t liftAt(BoxFile& file, uint64_t offset) {
  std::array<uint8_t, 4> bytes{};
  if (!file.read(offset, bytes)) return 0;
  const auto value = static_cast<int32_t>(ByteCursor(bytes).u32());
  return std::min<int64_t>(-int64_t{value}, std::numeric_limits<int32_t>::max());
}

/// Of the entries of `ctts` but for the last two, which libavformat leaves out.
int64_t liftOfTable(BoxFile& file, const FileBox& table) {
  constexpr uint64_t kStart = 8, kEntry = 8, kLeftOut = 2;
  const auto box = file.child(table, fourCC("ctts"));
  std::array<uint8_t, kStart> bytes{};
  if (!box || box->end - box->payload < kStart || !file.read(box->payload, bytes)) return 0;
  ByteCursor cursor(bytes);
  cursor.skip(4);  // version and flags
  const uint64_t entries =
      std::min<uint64_t>(cursor.u32(), (box->end - box->payload - kStart) / kEntry);
  int64_t lift = 0;
  for (uint64_t i = 0; i + kLeftOut < entries; ++i)
    lift = std::max(lift, liftAt(file, box->payload + kStart + i * kEntry + 4));
  return lift;
}

int64_t liftOfTrack(BoxFile& file, const FileBox& trak) {
  std::optional<FileBox> table = trak;
  for (const char* type : {"mdia", "minf", "stbl"}) {
    if (table) table = file.child(*table, fourCC(type));
  }
  return table ? liftOfTable(file, *table) : 0;
}

uint32_t trackIDOf(BoxFile& file, const FileBox& trak) {
  const auto header = file.child(trak, fourCC("tkhd"));
  std::array<uint8_t, 24> bytes{};
  if (!header || header->end - header->payload < bytes.size() ||
      !file.read(header->payload, bytes)) {
    return 0;
  }
  ByteCursor cursor(bytes);
  const bool wide = cursor.u32() >> 24 == 1;
  cursor.skip(wide ? 16 : 8);  // times of creation and modification
  return cursor.u32();
}

int64_t liftOfRun(BoxFile& file, const FragmentRun& run) {
  if (!run.hasOffsets || !run.isWhole()) return 0;
  int64_t lift = 0;
  const uint64_t first = run.box.payload + run.start + run.sampleSize - 4;
  for (uint64_t i = 0; i < run.sampleCount; ++i)
    lift = std::max(lift, liftAt(file, first + i * run.sampleSize));
  return lift;
}

/// What the fragments say of one track.
struct Lift {
  int64_t ticks = 0;
  std::optional<int64_t> timeOfLowest;

  void add(BoxFile& file, const FragmentRun& run) {
    const int64_t other = liftOfRun(file, run);
    if (m_hasFirst && other > ticks) {
      const uint64_t first = run.box.payload + run.start + run.sampleSize - 4;
      timeOfLowest =
          static_cast<int64_t>(std::min(run.decodingTime, kLatest)) - liftAt(file, first);
    }
    ticks = std::max(ticks, other);
    m_hasFirst = true;
  }

 private:
  /// Far enough from the limits of its type for sums.
  static constexpr uint64_t kLatest = uint64_t{1} << 62;
  bool m_hasFirst = false;
};

}  // namespace

FragmentTimes FragmentTimes::read(const std::filesystem::path& path) {
  BoxFile file(path);
  FragmentTimes times;
  std::map<uint32_t, Lift> lifts;
  for (auto moof = file.find(fourCC("moof"), 0, file.size()); moof;
       moof = file.find(fourCC("moof"), moof->end, file.size())) {
    if (times.firstFragment == 0) times.firstFragment = static_cast<int64_t>(moof->begin);
    forEachRun(file, *moof, [&](const FragmentRun& run) { lifts[run.trackID].add(file, run); });
  }
  const auto moov = file.find(fourCC("moov"), 0, file.size());
  if (!moov) return times;
  for (auto trak = file.child(*moov, fourCC("trak")); trak;
       trak = file.find(fourCC("trak"), trak->end, moov->end)) {
    const uint32_t trackID = trackIDOf(file, *trak);
    const int64_t ofTable = liftOfTrack(file, *trak);
    const Lift& ofFragments = lifts[trackID];
    const int64_t all = std::max(ofTable, ofFragments.ticks);
    if (all == 0) continue;
    times.delays[trackID] = {all - ofTable, all, ofFragments.timeOfLowest};
  }
  return times;
}

int64_t FragmentTimes::delay(uint32_t trackID, int64_t position) const {
  const auto found = delays.find(trackID);
  if (found == delays.end()) return 0;
  return position < firstFragment ? found->second.ofTables : found->second.ofFragments;
}

}  // namespace vantrel
