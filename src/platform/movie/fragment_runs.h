#pragma once

#include <cstdint>
#include <functional>

#include "platform/movie/box_file.h"

namespace vantrel {

/// A run of samples of one track in a fragment of a movie (`trun`; ISO/IEC 14496-12, 8.8.8).
struct FragmentRun {
  FileBox box;
  /// 0 if the fragment does not tell.
  uint32_t trackID = 0;
  uint32_t sampleCount = 0;
  /// Of the fragment's first sample, in ticks of the track; 0 if the fragment does not tell.
  uint64_t decodingTime = 0;
  /// Bytes in front of the samples' fields, and of the fields of one sample.
  uint64_t start = 0, sampleSize = 0;
  /// Whether the last field of each sample is its composition offset.
  bool hasOffsets = false;

  /// Whether the box has room for all samples.
  [[nodiscard]] bool isWhole() const {
    return box.end - box.payload >= start + sampleSize * sampleCount;
  }
};

/// Calls `visit` for each run of a fragment (`moof`). Throws std::system_error when the file cannot
/// be read.
void forEachRun(BoxFile& file, const FileBox& fragment,
                const std::function<void(const FragmentRun&)>& visit);

}  // namespace vantrel
