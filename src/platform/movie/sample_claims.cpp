#include "platform/movie/sample_claims.h"

#include <optional>

#include "platform/movie/box_bytes.h"
#include "platform/movie/box_file.h"
#include "platform/movie/fragment_runs.h"

namespace vantrel {
namespace {

uint64_t samplesOfFragments(BoxFile& file) {
  uint64_t samples = 0;
  for (auto moof = file.find(fourCC("moof"), 0, file.size()); moof;
       moof = file.find(fourCC("moof"), moof->end, file.size())) {
    forEachRun(file, *moof, [&samples](const FragmentRun& run) { samples += run.sampleCount; });
  }
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
