#include "platform/image/png_color.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <optional>
#include <vector>

#include "platform/image/color_profile.h"
#include "platform/image/profile_builder.h"

namespace vantrel {
namespace {

// PNG stores gamma and chromaticities as whole numbers of 1/100000.
constexpr double kUnit = 100000;
// The gamma that stands for the sRGB curve (PNG, 11.3.2.5), and what counts as the same.
constexpr double kSrgbGamma = 0.45455;
constexpr double kTolerance = 0.001;

std::vector<uint8_t> embeddedProfile(const PngSession& session) {
  png_charp name = nullptr;
  int compression = 0;
  png_bytep bytes = nullptr;
  png_uint_32 size = 0;
  if (png_get_iCCP(session.png(), session.info(), &name, &compression, &bytes, &size) == 0) {
    return {};
  }
  return {bytes, bytes + size};
}

std::optional<double> gammaOf(const PngSession& session) {
  png_fixed_point gamma = 0;
  if (png_get_gAMA_fixed(session.png(), session.info(), &gamma) == 0 || gamma <= 0) {
    return std::nullopt;
  }
  return gamma / kUnit;
}

std::optional<Chromaticities> chromaticitiesOf(const PngSession& session) {
  std::array<png_fixed_point, 8> v{};
  if (png_get_cHRM_fixed(session.png(), session.info(), &v[0], &v[1], &v[2], &v[3], &v[4], &v[5],
                         &v[6], &v[7]) == 0) {
    return std::nullopt;
  }
  return Chromaticities{v[0] / kUnit, v[1] / kUnit, v[2] / kUnit, v[3] / kUnit,
                        v[4] / kUnit, v[5] / kUnit, v[6] / kUnit, v[7] / kUnit};
}

bool isNear(double a, double b) {
  return std::abs(a - b) <= kTolerance;
}

bool isSrgb(const Chromaticities& c) {
  const Chromaticities& s = kSrgbChromaticities;
  return isNear(c.whiteX, s.whiteX) && isNear(c.whiteY, s.whiteY) && isNear(c.redX, s.redX) &&
         isNear(c.redY, s.redY) && isNear(c.greenX, s.greenX) && isNear(c.greenY, s.greenY) &&
         isNear(c.blueX, s.blueX) && isNear(c.blueY, s.blueY);
}

std::vector<uint8_t> calibratedGray(const PngSession& session) {
  const std::optional<double> gamma = gammaOf(session);
  return gamma && !isNear(*gamma, kSrgbGamma) ? grayProfile(1 / *gamma) : std::vector<uint8_t>();
}

std::vector<uint8_t> calibratedRgb(const PngSession& session) {
  const std::optional<double> gamma = gammaOf(session);
  const std::optional<Chromaticities> primaries = chromaticitiesOf(session);
  if (!gamma && !primaries) return {};
  const bool srgbCurve = !gamma || isNear(*gamma, kSrgbGamma);
  if (srgbCurve && (!primaries || isSrgb(*primaries))) return srgbProfile();
  return rgbProfile(primaries.value_or(kSrgbChromaticities),
                    srgbCurve ? std::nullopt : std::optional(1 / *gamma));
}

std::vector<uint8_t> profileOf(const PngSession& session, ColorModel model) {
  std::vector<uint8_t> embedded = embeddedProfile(session);
  if (!embedded.empty() && profileFits(embedded, model)) return embedded;
  const bool gray = model == ColorModel::Gray;
  if (png_get_valid(session.png(), session.info(), PNG_INFO_sRGB) != 0) {
    return gray ? std::vector<uint8_t>() : srgbProfile();
  }
  return gray ? calibratedGray(session) : calibratedRgb(session);
}

std::vector<PaletteEntry> paletteOf(const PngSession& session) {
  png_colorp colors = nullptr;
  int count = 0;
  png_get_PLTE(session.png(), session.info(), &colors, &count);
  std::vector<PaletteEntry> palette(static_cast<size_t>(std::max(count, 0)));
  for (size_t i = 0; i < palette.size(); ++i) {
    palette[i] = {colors[i].red, colors[i].green, colors[i].blue, 255};
  }
  png_bytep alpha = nullptr;
  int alphas = 0;
  png_get_tRNS(session.png(), session.info(), &alpha, &alphas, nullptr);
  for (size_t i = 0; i < std::min(palette.size(), static_cast<size_t>(alpha ? alphas : 0)); ++i) {
    palette[i].alpha = alpha[i];
  }
  return palette;
}

}  // namespace

BitmapColor pngColor(const PngSession& session, ColorModel model) {
  BitmapColor color;
  color.iccProfile = profileOf(session, model);
  if (model == ColorModel::Indexed) {
    color.palette = paletteOf(session);
    color.paletteHasAlpha = png_get_valid(session.png(), session.info(), PNG_INFO_tRNS) != 0;
  }
  return color;
}

}  // namespace vantrel
