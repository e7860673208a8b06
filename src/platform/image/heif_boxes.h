#pragma once

#include <cstdint>

#include "platform/image/read_only_file.h"

namespace vantrel {

/// Facts in the boxes of a HEIF file (ISO/IEC 14496-12) that libheif does not tell.
struct HeifBoxes {
  /// The file describes still images, however much of them there is.
  bool hasStills = false;
  /// An item is coded with HEVC.
  bool hasHevc = false;
  /// Every item that is coded with HEVC has luminance alone.
  bool isMonochrome = false;
  /// The items that are made of others, or have others for their alpha, end somewhere and ask for a
  /// sensible number of decodings. libheif follows references without looking.
  bool isSound = true;
  /// Frames of the longest track of pictures; 0 without tracks.
  uint32_t sequenceFrames = 0;

  /// Reads what can be read. A box that claims to be longer than what it lies in ends with that.
  [[nodiscard]] static HeifBoxes read(const ReadOnlyFile& file);
};

}  // namespace vantrel
