#include "platform/gl/video_display_color.h"

#include <algorithm>
#include <cmath>
#include <optional>

#include "platform/gl/tone_curve.h"
#include "platform/gl/video_signal_matrix.h"
#include "platform/image/coded_profile.h"

namespace vantrel {
namespace {

// Code points of ITU-T H.273.
constexpr int kLinear = 8, kLog100 = 9, kLog316 = 10, kPq = 16, kCinema = 17, kHlg = 18;

/// Peaks of HDR in cd/m²: of what does not tell its own, and of what PQ holds.
constexpr double kUsualPeak = 1000, kHighestPeak = 10000;
/// HLG's system gamma at that usual peak (ITU-R BT.2100, table 5, note 5f).
constexpr double kHlgGamma = 1.2;

bool isBesideBt709(int primaries) {
  constexpr std::array kConverted = {4, 8, 9, 11, 12};
  return std::find(kConverted.begin(), kConverted.end(), primaries) != kConverted.end();
}

bool isOfDisplays(int transfer) {
  constexpr std::array kConverted = {kLinear, kLog100, kLog316, kPq, kCinema, kHlg};
  return std::find(kConverted.begin(), kConverted.end(), transfer) == kConverted.end();
}

/// IEC 61966-2-1.
double srgbLight(double signal) {
  return signal <= 0.04045 ? signal / 12.92 : std::pow((signal + 0.055) / 1.055, 2.4);
}

double lightOf(int transfer, double signal) {
  switch (transfer) {
    case kLinear:
      return signal;
    case kLog100:
      return signal > 0 ? std::pow(10, 2 * (signal - 1)) : 0;
    case kLog316:
      return signal > 0 ? std::pow(10, 2.5 * (signal - 1)) : 0;
    case kPq:
      return pqLuminance(signal) / kHdrWhite;
    case kCinema:
      return std::pow(signal, 2.6) * 52.37 / 48;
    case kHlg:
      return hlgSceneLight(signal);
    default:
      return srgbLight(signal);
  }
}

/// The brightest light of the video, in cd/m².
double peakOf(const VideoColorKind& kind) {
  if (kind.color.transfer != kPq) return kUsualPeak;
  double peak = kUsualPeak;
  if (const auto& display = kind.hdrMetadata.masteringDisplay) {
    const Fraction& highest = display->highestLuminance;
    if (highest.numerator > 0 && highest.denominator > 0)
      peak = double(highest.numerator) / highest.denominator;
  } else if (kind.hdrMetadata.contentLight && kind.hdrMetadata.contentLight->maximum > 0) {
    peak = kind.hdrMetadata.contentLight->maximum;
  }
  return std::clamp(peak, kHdrWhite, kHighestPeak);
}

std::array<double, 3> product(const ColorMatrix& m, const std::array<double, 3>& v) {
  return {m[0] * v[0] + m[1] * v[1] + m[2] * v[2], m[3] * v[0] + m[4] * v[1] + m[5] * v[2],
          m[6] * v[0] + m[7] * v[1] + m[8] * v[2]};
}

ColorMatrix product(const ColorMatrix& m, const ColorMatrix& n) {
  ColorMatrix result{};
  for (size_t column = 0; column < 3; ++column) {
    const auto image = product(m, std::array{n[column], n[3 + column], n[6 + column]});
    for (size_t row = 0; row < 3; ++row)
      result[3 * row + column] = image[row];
  }
  return result;
}

ColorMatrix inverse(const ColorMatrix& m) {
  const auto cofactor = [&m](size_t row, size_t column) {
    const size_t r1 = (row + 1) % 3, r2 = (row + 2) % 3;
    const size_t c1 = (column + 1) % 3, c2 = (column + 2) % 3;
    return m[3 * r1 + c1] * m[3 * r2 + c2] - m[3 * r1 + c2] * m[3 * r2 + c1];
  };
  const double determinant = m[0] * cofactor(0, 0) + m[1] * cofactor(0, 1) + m[2] * cofactor(0, 2);
  ColorMatrix result{};
  for (size_t row = 0; row < 3; ++row) {
    for (size_t column = 0; column < 3; ++column)
      result[3 * row + column] = cofactor(column, row) / determinant;
  }
  return result;
}

/// X, Y and Z of a chromaticity with a Y of 1.
std::array<double, 3> xyz(double x, double y) {
  return {x / y, 1, (1 - x - y) / y};
}

/// From light in these primaries to X, Y, Z, with a Y of 1 for white.
ColorMatrix toXyz(const Chromaticities& c) {
  const auto red = xyz(c.redX, c.redY), green = xyz(c.greenX, c.greenY),
             blue = xyz(c.blueX, c.blueY);
  ColorMatrix columns{red[0],  green[0], blue[0],  red[1], green[1],
                      blue[1], red[2],   green[2], blue[2]};
  const auto weights = product(inverse(columns), xyz(c.whiteX, c.whiteY));
  for (size_t i = 0; i < columns.size(); ++i)
    columns[i] *= weights[i % 3];
  return columns;
}

/// Makes one white the other, after Bradford.
ColorMatrix adaptation(const std::array<double, 3>& from, const std::array<double, 3>& to) {
  constexpr ColorMatrix kCones = {0.8951, 0.2664, -0.1614, -0.7502, 1.7135,
                                  0.0367, 0.0389, -0.0685, 1.0296};
  const auto source = product(kCones, from), target = product(kCones, to);
  const ColorMatrix scale = {target[0] / source[0], 0, 0, 0, target[1] / source[1], 0, 0, 0,
                             target[2] / source[2]};
  return product(inverse(kCones), product(scale, kCones));
}

ColorMatrix toSrgb(const Chromaticities& c) {
  const Chromaticities& srgb = kSrgbChromaticities;
  const ColorMatrix adapted =
      product(adaptation(xyz(c.whiteX, c.whiteY), xyz(srgb.whiteX, srgb.whiteY)), toXyz(c));
  return product(inverse(toXyz(srgb)), adapted);
}

std::vector<float> toneTable(double peak) {
  const ToneCurve curve(peak);
  std::vector<float> table(VideoLight::kTableSize);
  for (size_t i = 0; i < table.size(); ++i) {
    // Where there is no light, any factor will do.
    const double root = std::max(double(i), 0.5) / (VideoLight::kTableSize - 1);
    const double light = std::pow(root, 4) * peak;
    table[i] = static_cast<float>(curve(light) / light);
  }
  return table;
}

VideoLight lightOf(const VideoColorKind& kind) {
  VideoLight result;
  const int transfer = kind.color.transfer;
  for (int i = 0; i < VideoLight::kTableSize; ++i) {
    const double signal = double(i) / (VideoLight::kTableSize - 1);
    result.light.push_back(static_cast<float>(lightOf(transfer, signal)));
  }
  const Chromaticities primaries =
      isBesideBt709(kind.color.primaries)
          ? codedChromaticities(kind.color.primaries).value_or(kSrgbChromaticities)
          : kSrgbChromaticities;
  const ColorMatrix matrix = toXyz(primaries);
  result.luminance = {matrix[3], matrix[4], matrix[5]};
  result.toSrgb = toSrgb(primaries);
  if (transfer == kHlg) {
    result.gain = kUsualPeak / kHdrWhite;
    result.exponent = kHlgGamma - 1;
  }
  if (kind.color.isHdr()) result.peak = peakOf(kind) / kHdrWhite;
  result.tone = toneTable(result.peak);
  return result;
}

}  // namespace

VideoColorKind VideoColorKind::of(const VideoPicture& picture) {
  return {picture.model, picture.depth, picture.isFullRange, picture.color, picture.hdrMetadata};
}

VideoDisplayColor VideoDisplayColor::of(const VideoColorKind& kind) {
  const VideoSignalMatrix signal = VideoSignalMatrix::of(kind);
  VideoDisplayColor result;
  result.toSignal = signal.matrix;
  result.offset = signal.offset;
  result.convertsLight = !isOfDisplays(kind.color.transfer) || isBesideBt709(kind.color.primaries);
  if (result.convertsLight) result.light = lightOf(kind);
  return result;
}

}  // namespace vantrel
