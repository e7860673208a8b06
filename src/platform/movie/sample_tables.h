#pragma once

#include <cstdint>

#include "platform/movie/box_file.h"

namespace vantrel {

/// How far the media reach that a sample table (`stbl`) points to.
struct SampleTableExtent {
  /// False when a table is missing or too short for what it claims.
  bool isSound = false;
  /// Samples that have a chunk.
  uint64_t sampleCount = 0;
  /// Offset in the file behind the last byte of the chunk that reaches furthest. Where samples
  /// count single bytes or sound frames, the tables do not tell how long a chunk is; its start then
  /// stands for its end.
  uint64_t end = 0;
};

/// Reads the tables in pieces, whatever their length. Throws std::system_error.
[[nodiscard]] SampleTableExtent sampleTableExtent(BoxFile& file, const FileBox& table);

}  // namespace vantrel
