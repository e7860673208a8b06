#include "platform/movie/sample_claims.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <optional>
#include <span>

#include "platform/movie/box_bytes.h"
#include "platform/movie/box_file.h"
#include "platform/movie/fragment_runs.h"

namespace vantrel {
namespace {

/// Calls `visit` for each box of this type between two offsets.
template <class Visit>
void forEach(BoxFile& file, const char (&type)[5], uint64_t begin, uint64_t end, Visit visit) {
  const uint32_t code = fourCC(type);
  for (auto box = file.find(code, begin, end); box; box = file.find(code, box->end, end))
    visit(*box);
}

uint64_t samplesOfFragments(BoxFile& file) {
  uint64_t samples = 0;
  forEach(file, "moof", 0, file.size(), [&](const FileBox& moof) {
    forEachRun(file, moof, [&samples](const FragmentRun& run) { samples += run.sampleCount; });
  });
  return samples;
}

/// Whether a track has headers, and each of them a number that libavformat takes for one.
bool hasNumber(BoxFile& file, const FileBox& trak) {
  bool isFound = false, isRight = true;
  forEach(file, "tkhd", trak.payload, trak.end, [&](const FileBox& header) {
    std::array<uint8_t, 24> bytes{};
    isFound = true;
    const uint64_t size = std::min<uint64_t>(bytes.size(), header.end - header.payload);
    const bool isRead = file.read(header.payload, std::span(bytes).first(size));
    ByteCursor cursor(bytes);
    cursor.skip(cursor.u32() >> 24 == 1 ? 16 : 8);  // creation and modification time
    isRight = isRight && isRead && cursor.u32() <= INT32_MAX;
  });
  return isFound && isRight;
}

bool hasNumberedTracks(BoxFile& file, const FileBox& moov) {
  uint64_t offset = moov.payload;
  // Fewer bytes are no box to libavformat either; of others it may make a track.
  while (moov.end - offset >= BoxHeader::kShortSize) {
    const std::optional<FileBox> box = file.boxAt(offset, moov.end);
    if (!box || box->end > moov.end) return false;
    if (box->type == fourCC("trak") && !hasNumber(file, *box)) return false;
    offset = box->end;
  }
  return true;
}

}  // namespace

bool fragmentsHaveNumberedTracks(const std::filesystem::path& path) {
  BoxFile file(path);
  if (!file.find(fourCC("moof"), 0, file.size())) return true;
  bool areNumbered = true;
  forEach(file, "moov", 0, file.size(),
          [&](const FileBox& moov) { areNumbered = areNumbered && hasNumberedTracks(file, moov); });
  return areNumbered;
}

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
