#include "platform/gl/video_signal_matrix.h"

namespace vantrel {
namespace {

// Code points of ITU-T H.273.
constexpr int kYCgCo = 8;
constexpr int kBt2020Primaries = 9;

/// Weights of red and blue in luma.
struct LumaWeights {
  double red = 0, blue = 0;
};

LumaWeights weightsOf(const ColorTags& color) {
  switch (color.matrix) {
    case 1:
      return {0.2126, 0.0722};
    case 4:
      return {0.30, 0.11};
    case 5:
    case 6:
      return {0.299, 0.114};
    case 7:
      return {0.212, 0.087};
    case 9:
    case 10:
      return {0.2627, 0.0593};
    default:
      if (color.primaries == kBt2020Primaries) return {0.2627, 0.0593};
      return {0.2126, 0.0722};
  }
}

/// From luma and the two differences, which are 0 for gray, to red, green and blue.
ColorMatrix fromDifferences(const VideoColorKind& kind) {
  if (kind.model == VideoPicture::Model::Rgb) return {1, 0, 0, 0, 1, 0, 0, 0, 1};
  if (kind.model == VideoPicture::Model::Gray) return {1, 0, 0, 1, 0, 0, 1, 0, 0};
  if (kind.color.matrix == kYCgCo) return {1, -1, 1, 1, 1, 0, 1, -1, -1};
  const auto [red, blue] = weightsOf(kind.color);
  const double green = 1 - red - blue;
  const double fromRed = 2 * (1 - red), fromBlue = 2 * (1 - blue);
  return {1, 0, fromRed, 1, -fromBlue * blue / green, -fromRed * red / green, 1, fromBlue, 0};
}

/// Of the codes of one plane: the one that stands for 0, and how many for a range of 1.
struct CodeRange {
  double zero = 0, length = 1;
};

CodeRange codeRange(const VideoColorKind& kind, bool isDifference) {
  const double unit = 1 << (kind.depth - 8);
  const double highest = (1 << kind.depth) - 1;
  if (isDifference) return {128 * unit, kind.isFullRange ? highest : 224 * unit};
  return kind.isFullRange ? CodeRange{0, highest} : CodeRange{16 * unit, 219 * unit};
}

}  // namespace

VideoSignalMatrix VideoSignalMatrix::of(const VideoColorKind& kind) {
  const double highestSample = kind.depth > 8 ? 65535 : 255;
  const ColorMatrix model = fromDifferences(kind);
  VideoSignalMatrix result;
  for (size_t column = 0; column < 3; ++column) {
    const bool isDifference = kind.model != VideoPicture::Model::Rgb && column > 0;
    const CodeRange range = codeRange(kind, isDifference);
    for (size_t row = 0; row < 3; ++row) {
      const double factor = model[3 * row + column] / range.length;
      result.matrix[3 * row + column] = factor * highestSample;
      result.offset[row] -= factor * range.zero;
    }
  }
  return result;
}

}  // namespace vantrel
