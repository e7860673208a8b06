#include "platform/movie/sample_claims.h"

#include <algorithm>
#include <array>
#include <optional>

#include "platform/movie/box_bytes.h"
#include "platform/movie/box_file.h"

namespace vantrel {
namespace {

/// Calls `visit` for each box of this type between two offsets.
template <class Visit>
void forEach(BoxFile& file, const char (&type)[5], uint64_t begin, uint64_t end, Visit visit) {
  const uint32_t code = fourCC(type);
  auto box = file.find(code, begin, end);
  while (box) {
    visit(*box);
    box = file.find(code, box->end, end);
  }
}

uint64_t samplesOfRun(BoxFile& file, const FileBox& run) {
  std::array<uint8_t, 8> bytes{};
  if (!file.read(run.payload, bytes)) return 0;
  ByteCursor cursor(bytes);
  cursor.skip(4);
  return cursor.u32();
}

uint64_t samplesOfFragments(BoxFile& file) {
  uint64_t samples = 0;
  forEach(file, "moof", 0, file.size(), [&](const FileBox& moof) {
    forEach(file, "traf", moof.payload, moof.end, [&](const FileBox& traf) {
      forEach(file, "trun", traf.payload, traf.end,
              [&](const FileBox& run) { samples += samplesOfRun(file, run); });
    });
  });
  return samples;
}

}  // namespace

uint64_t claimedSamples(const std::filesystem::path& path,
                        const std::optional<QuickTimeMovie>& movie) {
  BoxFile file(path);
  // A damaged movie header does not keep libavformat from reading the fragments.
  uint64_t samples = samplesOfFragments(file);
  if (!movie) return samples;
  for (const QuickTimeTrack& track : movie->tracks)
    samples += track.sampleCount;
  return samples;
}

}  // namespace vantrel
