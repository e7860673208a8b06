#pragma once

#include <optional>

#include "platform/movie/video_color.h"

namespace vantrel {

/// Where the samples of a plane lie along one axis, in pixels of their picture: the centre of
/// sample j is at offset + j · step.
struct SampleGrid {
  double step = 1, offset = 0.5;
};

/// The grids of chroma planes with one sample for each 2^shift pixels. Along an axis with a sample
/// for each pixel, the siting means nothing.
[[nodiscard]] SampleGrid horizontalChromaGrid(ChromaSiting siting, int shift);
[[nodiscard]] SampleGrid verticalChromaGrid(ChromaSiting siting, int shift);

/// A stretch of the source along one axis, shown by an output.
struct AxisCrop {
  /// In pixels of the source with square pixels.
  int start = 0, length = 0;
  /// The output runs against the source.
  bool isFlipped = false;
  /// Stored pixels for each square one.
  double storedPerSquare = 1;
};

/// How the samples of an output lie on those of a source plane, along one axis, in the direction
/// of the source.
struct AxisMapping {
  /// Number of output samples.
  int count = 0;
  /// The stretch that the output samples share evenly, in source samples: sample j covers j to
  /// j + 1.
  double start = 0, length = 0;
  /// The first source sample, if each output sample falls on one.
  std::optional<int> firstSample;
};

/// `source` is the grid in stored pixels of a plane with `sourceSize` samples; `output` the one in
/// pixels of the output, in the direction of the output.
[[nodiscard]] AxisMapping mapAxis(const AxisCrop& crop, const SampleGrid& source, int sourceSize,
                                  const SampleGrid& output);

}  // namespace vantrel
