#include "platform/movie/sample_grid.h"

#include <cmath>

namespace vantrel {
namespace {

/// Samples closer than this, in samples, are the same.
constexpr double kTolerance = 1e-6;

SampleGrid chromaGrid(int shift, double position) {
  const double step = 1 << shift;
  return {step, 0.5 + position * (step - 1)};
}

}  // namespace

SampleGrid horizontalChromaGrid(ChromaSiting siting, int shift) {
  switch (siting) {
    case ChromaSiting::Left:
    case ChromaSiting::TopLeft:
    case ChromaSiting::BottomLeft:
      return chromaGrid(shift, 0);
    case ChromaSiting::Center:
    case ChromaSiting::Top:
    case ChromaSiting::Bottom:
      break;
  }
  return chromaGrid(shift, 0.5);
}

SampleGrid verticalChromaGrid(ChromaSiting siting, int shift) {
  switch (siting) {
    case ChromaSiting::TopLeft:
    case ChromaSiting::Top:
      return chromaGrid(shift, 0);
    case ChromaSiting::BottomLeft:
    case ChromaSiting::Bottom:
      return chromaGrid(shift, 1);
    case ChromaSiting::Left:
    case ChromaSiting::Center:
      break;
  }
  return chromaGrid(shift, 0.5);
}

AxisMapping mapAxis(const AxisCrop& crop, const SampleGrid& source, int sourceSize,
                    const SampleGrid& output) {
  // Against the source, the first sample is the output's last: as far from the start as the first
  // is from the end.
  const double offset = crop.isFlipped ? output.step - output.offset : output.offset;
  const double first = (crop.storedPerSquare * (crop.start + offset) - source.offset) / source.step;
  const double spacing = crop.storedPerSquare * output.step / source.step;

  AxisMapping mapping;
  mapping.count = static_cast<int>(std::lround(crop.length / output.step));
  mapping.start = first + 0.5 - spacing / 2;
  mapping.length = spacing * mapping.count;
  const double nearest = std::round(first);
  if (std::abs(spacing - 1) * mapping.count < kTolerance &&
      std::abs(first - nearest) < kTolerance && nearest >= 0 &&
      nearest + mapping.count <= sourceSize)
    mapping.firstSample = static_cast<int>(nearest);
  return mapping;
}

}  // namespace vantrel
