#include "platform/image/matrix_shaper.h"

#include <algorithm>
#include <cmath>
#include <optional>

namespace vantrel {
namespace {

constexpr size_t kSteps = 65536;

/// Rows of a 3 × 3 matrix.
using Matrix = std::array<double, 9>;

/// From light in the profile's primaries to CIE XYZ under D50.
std::optional<Matrix> primariesOf(cmsHPROFILE profile) {
  Matrix matrix;
  size_t column = 0;
  for (const cmsTagSignature tag :
       {cmsSigRedColorantTag, cmsSigGreenColorantTag, cmsSigBlueColorantTag}) {
    const auto* color = static_cast<const cmsCIEXYZ*>(cmsReadTag(profile, tag));
    if (!color) return std::nullopt;
    matrix[column] = color->X;
    matrix[column + 3] = color->Y;
    matrix[column + 6] = color->Z;
    ++column;
  }
  return matrix;
}

std::optional<Matrix> inverse(const Matrix& m) {
  const auto cofactor = [&m](size_t row, size_t column) {
    const size_t r1 = (row + 1) % 3 * 3, r2 = (row + 2) % 3 * 3;
    const size_t c1 = (column + 1) % 3, c2 = (column + 2) % 3;
    return m[r1 + c1] * m[r2 + c2] - m[r1 + c2] * m[r2 + c1];
  };
  const double determinant = m[0] * cofactor(0, 0) + m[1] * cofactor(0, 1) + m[2] * cofactor(0, 2);
  if (std::abs(determinant) < 1e-9) return std::nullopt;
  Matrix result;
  for (size_t i = 0; i < result.size(); ++i) {
    result[i] = cofactor(i % 3, i / 3) / determinant;
  }
  return result;
}

std::array<float, 9> product(const Matrix& a, const Matrix& b) {
  std::array<float, 9> result;
  for (size_t i = 0; i < result.size(); ++i) {
    const size_t row = i / 3 * 3, column = i % 3;
    result[i] = static_cast<float>(a[row] * b[column] + a[row + 1] * b[column + 3] +
                                   a[row + 2] * b[column + 6]);
  }
  return result;
}

/// IEC 61966-2-1.
std::vector<uint8_t> srgbEncoding() {
  std::vector<uint8_t> table(kSteps);
  for (size_t i = 0; i < kSteps; ++i) {
    const double light = static_cast<double>(i) / (kSteps - 1);
    const double value =
        light <= 0.0031308 ? 12.92 * light : 1.055 * std::pow(light, 1 / 2.4) - 0.055;
    table[i] = static_cast<uint8_t>(std::lround(value * 255));
  }
  return table;
}

}  // namespace

std::unique_ptr<const MatrixShaper> MatrixShaper::make(const LcmsContext& context,
                                                       const LcmsProfile& profile) {
  if (cmsGetPCS(profile.get()) != cmsSigXYZData || !cmsIsMatrixShaper(profile.get()) ||
      cmsIsTag(profile.get(), cmsSigAToB0Tag) || cmsIsTag(profile.get(), cmsSigAToB1Tag) ||
      cmsIsTag(profile.get(), cmsSigDToB0Tag) || cmsIsTag(profile.get(), cmsSigDToB1Tag)) {
    return nullptr;
  }
  const LcmsProfile srgb(cmsCreate_sRGBProfileTHR(context.get()));
  const std::optional<Matrix> from = primariesOf(profile.get());
  const std::optional<Matrix> to = srgb ? primariesOf(srgb.get()) : std::nullopt;
  const std::optional<Matrix> back = to ? inverse(*to) : std::nullopt;
  if (!from || !back) return nullptr;

  std::unique_ptr<MatrixShaper> shaper(new MatrixShaper);
  shaper->m_matrix = product(*back, *from);
  shaper->m_encoded = srgbEncoding();
  constexpr std::array kCurves = {cmsSigRedTRCTag, cmsSigGreenTRCTag, cmsSigBlueTRCTag};
  for (size_t channel = 0; channel < kCurves.size(); ++channel) {
    const auto* curve =
        static_cast<const cmsToneCurve*>(cmsReadTag(profile.get(), kCurves[channel]));
    if (!curve) return nullptr;
    std::vector<float>& light = shaper->m_light[channel];
    light.resize(kSteps);
    for (size_t i = 0; i < kSteps; ++i) {
      light[i] = std::clamp(
          cmsEvalToneCurveFloat(curve, static_cast<float>(i) / static_cast<float>(kSteps - 1)),
          0.0F, 1.0F);
    }
  }
  return shaper;
}

void MatrixShaper::convert(const uint16_t* pixels, int channels, int64_t count,
                           uint8_t* output) const {
  const auto& m = m_matrix;
  for (; count > 0; --count, pixels += channels, output += 4) {
    const float red = m_light[0][pixels[0]];
    const float green = m_light[1][pixels[1]];
    const float blue = m_light[2][pixels[2]];
    for (size_t row = 0; row < 3; ++row) {
      const float light = m[row * 3] * red + m[row * 3 + 1] * green + m[row * 3 + 2] * blue;
      const float step = std::clamp(light, 0.0F, 1.0F) * static_cast<float>(kSteps - 1) + 0.5F;
      output[row] = m_encoded[static_cast<size_t>(step)];
    }
  }
}

}  // namespace vantrel
