#include "platform/image/profile_builder.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <memory>
#include <string>

#include "platform/image/lcms_ptr.h"

namespace vantrel {
namespace {

using Curve = std::unique_ptr<cmsToneCurve, decltype(&cmsFreeToneCurve)>;

constexpr double kLeastExponent = 0.1;
constexpr double kMostExponent = 10;
// Least area of the triangle of primaries that is taken for a space and not for a damaged record.
constexpr double kLeastArea = 1e-4;

bool isUsable(double exponent) {
  return exponent >= kLeastExponent && exponent <= kMostExponent;
}

bool isUsable(const Chromaticities& c) {
  const std::array values = {c.whiteX, c.whiteY, c.redX,  c.redY,
                             c.greenX, c.greenY, c.blueX, c.blueY};
  const bool inRange =
      std::all_of(values.begin(), values.end(), [](double v) { return v >= -0.5 && v <= 1.5; });
  const double area =
      (c.greenX - c.redX) * (c.blueY - c.redY) - (c.blueX - c.redX) * (c.greenY - c.redY);
  return inRange && c.whiteY > 0.01 && std::abs(area) / 2 >= kLeastArea;
}

// IEC 61966-2-1 as the parametric curve of ICC type 4: (a x + b)^g from d on, c x below.
Curve srgbCurve() {
  const std::array<cmsFloat64Number, 5> parameters = {2.4, 1 / 1.055, 0.055 / 1.055, 1 / 12.92,
                                                      0.04045};
  return {cmsBuildParametricToneCurve(nullptr, 4, parameters.data()), cmsFreeToneCurve};
}

Curve curveFor(std::optional<double> exponent) {
  if (!exponent) return srgbCurve();
  return {cmsBuildGamma(nullptr, *exponent), cmsFreeToneCurve};
}

std::string curveName(std::optional<double> exponent) {
  if (!exponent) return "sRGB curve";
  std::array<char, 32> text;
  std::snprintf(text.data(), text.size(), "gamma %.2f", *exponent);
  return text.data();
}

}  // namespace

std::vector<uint8_t> rgbProfile(const Chromaticities& c, std::optional<double> exponent) {
  if (!isUsable(c) || (exponent && !isUsable(*exponent))) return {};
  const cmsCIExyY white = {c.whiteX, c.whiteY, 1};
  const cmsCIExyYTRIPLE primaries = {
      {c.redX, c.redY, 1}, {c.greenX, c.greenY, 1}, {c.blueX, c.blueY, 1}};
  const Curve curve = curveFor(exponent);
  if (!curve) return {};
  std::array<cmsToneCurve*, 3> curves;
  curves.fill(curve.get());
  return namedProfile(LcmsProfile(cmsCreateRGBProfile(&white, &primaries, curves.data())),
                      "Calibrated RGB, " + curveName(exponent));
}

std::vector<uint8_t> grayProfile(double exponent) {
  if (!isUsable(exponent)) return {};
  const Curve curve = curveFor(exponent);
  if (!curve) return {};
  return namedProfile(LcmsProfile(cmsCreateGrayProfile(cmsD50_xyY(), curve.get())),
                      "Calibrated Gray, " + curveName(exponent));
}

}  // namespace vantrel
