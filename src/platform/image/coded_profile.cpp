#include "platform/image/coded_profile.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <optional>
#include <string>

#include "platform/image/lcms_ptr.h"
#include "platform/image/profile_builder.h"

namespace vantrel {
namespace {

using Curve = std::unique_ptr<cmsToneCurve, LcmsClose<cmsFreeToneCurve>>;

/// ITU-T H.273, table 2.
struct Primaries {
  int code;
  const char* name;
  Chromaticities chromaticities;
};

constexpr double kD65x = 0.3127, kD65y = 0.3290;
constexpr Primaries kPrimaries[] = {
    {1, "BT.709", kSrgbChromaticities},
    {4, "BT.470 M", {0.310, 0.316, 0.67, 0.33, 0.21, 0.71, 0.14, 0.08}},
    {5, "BT.601 625", {kD65x, kD65y, 0.64, 0.33, 0.29, 0.60, 0.15, 0.06}},
    {6, "BT.601 525", {kD65x, kD65y, 0.630, 0.340, 0.310, 0.595, 0.155, 0.070}},
    {7, "SMPTE 240M", {kD65x, kD65y, 0.630, 0.340, 0.310, 0.595, 0.155, 0.070}},
    {8, "Film", {0.310, 0.316, 0.681, 0.319, 0.243, 0.692, 0.145, 0.049}},
    {9, "BT.2020", {kD65x, kD65y, 0.708, 0.292, 0.170, 0.797, 0.131, 0.046}},
    {11, "DCI P3", {0.314, 0.351, 0.680, 0.320, 0.265, 0.690, 0.150, 0.060}},
    {12, "Display P3", {kD65x, kD65y, 0.680, 0.320, 0.265, 0.690, 0.150, 0.060}},
    {22, "EBU 3213", {kD65x, kD65y, 0.630, 0.340, 0.295, 0.605, 0.155, 0.077}},
};

constexpr int kBt709Primaries = 1;
constexpr int kSrgbTransfer = 13;

constexpr size_t kTableSize = 4096;
/// Of the nominal peak of HLG, in cd/m².
constexpr double kHlgPeak = 1000;

const Primaries* find(int code) {
  const auto* const known =
      std::find_if(std::begin(kPrimaries), std::end(kPrimaries),
                   [code](const Primaries& primaries) { return primaries.code == code; });
  return known == std::end(kPrimaries) ? nullptr : known;
}

/// The light of a PQ signal, 1 for white.
double pqLight(double signal) {
  return pqLuminance(signal) / kHdrWhite;
}

/// The light of an HLG signal, 1 for white, with the system gamma of 1.2 on each channel.
double hlgLight(double signal) {
  return std::pow(hlgSceneLight(signal), 1.2) * kHlgPeak / kHdrWhite;
}

Curve sampled(cmsContext context, double (*light)(double)) {
  std::array<cmsUInt16Number, kTableSize> table;
  for (size_t i = 0; i < kTableSize; ++i) {
    const double value = std::min(light(static_cast<double>(i) / (kTableSize - 1)), 1.0);
    table[i] = static_cast<cmsUInt16Number>(std::lround(value * 65535));
  }
  return Curve(cmsBuildTabulatedToneCurve16(context, kTableSize, table.data()));
}

/// The inverse of a power segment above a linear one: V = α L^(1/γ) − (α − 1), V = slope × L below,
/// as ICC's parametric curve of type 3.
Curve segmented(cmsContext context, double gamma, double alpha, double slope, double from) {
  const std::array<cmsFloat64Number, 5> parameters = {gamma, 1 / alpha, (alpha - 1) / alpha,
                                                      1 / slope, from};
  return Curve(cmsBuildParametricToneCurve(context, 4, parameters.data()));
}

struct Transfer {
  const char* name;
  Curve curve;
};

/// ITU-T H.273, table 3.
std::optional<Transfer> transferOf(cmsContext context, int code) {
  switch (code) {
    case 1:
    case 6:
    case 14:
    case 15:
      return Transfer{"video curve", segmented(context, 1 / 0.45, 1.099, 4.5, 0.081)};
    case 4:
      return Transfer{"gamma 2.2", Curve(cmsBuildGamma(context, 2.2))};
    case 5:
      return Transfer{"gamma 2.8", Curve(cmsBuildGamma(context, 2.8))};
    case 7:
      return Transfer{"SMPTE 240M curve", segmented(context, 1 / 0.45, 1.1115, 4, 0.0913)};
    case 8:
      return Transfer{"linear", Curve(cmsBuildGamma(context, 1))};
    case kSrgbTransfer:
      return Transfer{"sRGB curve", segmented(context, 2.4, 1.055, 12.92, 0.04045)};
    case 16:
      return Transfer{"PQ", sampled(context, pqLight)};
    case 17:
      return Transfer{"gamma 2.6", Curve(cmsBuildGamma(context, 2.6))};
    case 18:
      return Transfer{"HLG", sampled(context, hlgLight)};
    default:
      return std::nullopt;
  }
}

LcmsProfile makeProfile(cmsContext context, const Chromaticities& c, cmsToneCurve* curve,
                        ColorModel model) {
  if (model == ColorModel::Gray) {
    return LcmsProfile(cmsCreateGrayProfileTHR(context, cmsD50_xyY(), curve));
  }
  const cmsCIExyY white = {c.whiteX, c.whiteY, 1};
  const cmsCIExyYTRIPLE primaries = {
      {c.redX, c.redY, 1}, {c.greenX, c.greenY, 1}, {c.blueX, c.blueY, 1}};
  std::array<cmsToneCurve*, 3> curves = {curve, curve, curve};
  return LcmsProfile(cmsCreateRGBProfileTHR(context, &white, &primaries, curves.data()));
}

}  // namespace

std::optional<Chromaticities> codedChromaticities(int primaries) {
  const Primaries* const known = find(primaries);
  if (!known) return std::nullopt;
  return known->chromaticities;
}

double pqLuminance(double signal) {
  constexpr double kM1 = 2610.0 / 16384, kM2 = 2523.0 / 4096 * 128;
  constexpr double kC1 = 3424.0 / 4096, kC2 = 2413.0 / 4096 * 32, kC3 = 2392.0 / 4096 * 32;
  constexpr double kPeak = 10000;
  const double power = std::pow(signal, 1 / kM2);
  return std::pow(std::max(power - kC1, 0.0) / (kC2 - kC3 * power), 1 / kM1) * kPeak;
}

double hlgSceneLight(double signal) {
  constexpr double kA = 0.17883277, kB = 0.28466892, kC = 0.55991073;
  return signal <= 0.5 ? signal * signal / 3 : (std::exp((signal - kC) / kA) + kB) / 12;
}

std::vector<uint8_t> codedProfile(int primaries, int transfer, ColorModel model) {
  const LcmsContext context = makeLcmsContext();
  const Primaries* const known = find(primaries);
  const Primaries& space = known ? *known : kPrimaries[0];
  std::optional<Transfer> curve = transferOf(context.get(), transfer);
  const bool likeSrgb = !curve || transfer == kSrgbTransfer;
  if (likeSrgb && (space.code == kBt709Primaries || model == ColorModel::Gray)) return {};
  if (!curve) curve = transferOf(context.get(), kSrgbTransfer);

  LcmsProfile profile = makeProfile(context.get(), space.chromaticities, curve->curve.get(), model);
  std::string name = model == ColorModel::Gray ? std::string("Gray") : std::string(space.name);
  const bool isDisplayP3 = space.code == 12 && likeSrgb && model != ColorModel::Gray;
  if (!isDisplayP3) name += std::string(", ") + curve->name;
  return namedProfile(std::move(profile), name);
}

}  // namespace vantrel
