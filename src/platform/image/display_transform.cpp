#include "platform/image/display_transform.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>

#include "platform/image/color_profile.h"

namespace vantrel {
namespace {

constexpr size_t kOutputChannels = 4;
/// Steps of each channel in the grid on which a profile is compared with sRGB.
constexpr int kGridSteps = 17;

uint8_t eightBits(uint16_t sample) {
  return static_cast<uint8_t>((sample * 255U + 32767U) / 65535U);
}

uint8_t product(uint32_t a, uint32_t b) {
  return static_cast<uint8_t>((a * b + 127) / 255);
}

cmsUInt32Number lcmsFormat(const PixelLayout& layout) {
  const auto bytes = layout.sample == SampleFormat::UInt8 ? 1U : 2U;
  const cmsUInt32Number common = BYTES_SH(bytes) | EXTRA_SH(layout.alpha ? 1U : 0U) |
                                 CHANNELS_SH(static_cast<unsigned>(layout.colorChannels()));
  switch (layout.model) {
    case ColorModel::Gray:
      return common | COLORSPACE_SH(PT_GRAY);
    case ColorModel::Cmyk:
      return common | COLORSPACE_SH(PT_CMYK);
    case ColorModel::Lab:
      return common | COLORSPACE_SH(PT_Lab);
    case ColorModel::Rgb:
    case ColorModel::Indexed:
      break;
  }
  return common | COLORSPACE_SH(PT_RGB);
}

/// Limits float samples to the range from 0 to 1 and spreads them over 16 bits.
void sixteenBits(const std::byte* samples, size_t count, std::vector<uint16_t>& result) {
  result.resize(count);
  const auto* from = reinterpret_cast<const float*>(samples);
  std::transform(from, from + count, result.begin(), [](float sample) {
    const float limited = sample >= 0 ? std::min(sample, 1.0F) : 0.0F;  // NaN becomes 0
    // Right for what is not negative, and unlike lround it can be done for many at once.
    // NOLINTNEXTLINE(bugprone-incorrect-roundings)
    return static_cast<uint16_t>(limited * 65535.0F + 0.5F);
  });
}

template <typename Sample>
uint8_t toEightBits(Sample sample) {
  if constexpr (sizeof(Sample) == 1) return sample;
  return eightBits(sample);
}

template <typename Sample>
void spreadGray(const Sample* from, size_t step, int64_t count, uint8_t* to) {
  for (; count > 0; --count, from += step, to += kOutputChannels) {
    to[0] = to[1] = to[2] = toEightBits(*from);
  }
}

template <typename Sample>
void spreadRgb(const Sample* from, size_t step, int64_t count, uint8_t* to) {
  for (; count > 0; --count, from += step, to += kOutputChannels) {
    to[0] = toEightBits(from[0]);
    to[1] = toEightBits(from[1]);
    to[2] = toEightBits(from[2]);
  }
}

/// Ink without a profile: each ink takes its complement away, black takes from all.
template <typename Sample>
void spreadCmyk(const Sample* from, size_t step, int64_t count, uint8_t* to) {
  for (; count > 0; --count, from += step, to += kOutputChannels) {
    const uint32_t paper = 255U - toEightBits(from[3]);
    for (int c = 0; c < 3; ++c) {
      to[c] = product(255U - toEightBits(from[c]), paper);
    }
  }
}

template <typename Sample>
void spreadColors(const PixelLayout& layout, const std::byte* pixels, int64_t count, uint8_t* to) {
  const auto* from = reinterpret_cast<const Sample*>(pixels);
  const auto step = static_cast<size_t>(layout.channels());
  switch (layout.colorChannels()) {
    case 1:
      return spreadGray(from, step, count, to);
    case 3:
      return spreadRgb(from, step, count, to);
    default:
      return spreadCmyk(from, step, count, to);
  }
}

template <typename Sample>
void multiplyByAlpha(const PixelLayout& layout, const std::byte* pixels, int64_t count,
                     uint8_t* to) {
  const auto step = static_cast<size_t>(layout.channels());
  const auto* alpha = reinterpret_cast<const Sample*>(pixels) + layout.colorChannels();
  for (; count > 0; --count, alpha += step, to += kOutputChannels) {
    const uint32_t opacity = toEightBits(*alpha);
    to[0] = product(to[0], opacity);
    to[1] = product(to[1], opacity);
    to[2] = product(to[2], opacity);
    to[3] = static_cast<uint8_t>(opacity);
  }
}

void makeOpaque(int64_t count, uint8_t* to) {
  for (; count > 0; --count, to += kOutputChannels) {
    to[3] = 255;
  }
}

/// True when `transform`, from 8-bit RGB to RGBA, moves no colour by more than rounding does.
bool keepsColors(cmsHTRANSFORM transform) {
  for (int red = 0; red < kGridSteps; ++red) {
    for (int green = 0; green < kGridSteps; ++green) {
      for (int blue = 0; blue < kGridSteps; ++blue) {
        const int color[] = {red * 255 / (kGridSteps - 1), green * 255 / (kGridSteps - 1),
                             blue * 255 / (kGridSteps - 1)};
        uint8_t from[3];
        uint8_t to[kOutputChannels];
        std::copy(std::begin(color), std::end(color), from);
        cmsDoTransform(transform, from, to, 1);
        for (int c = 0; c < 3; ++c) {
          if (std::abs(to[c] - from[c]) > 1) return false;
        }
      }
    }
  }
  return true;
}

}  // namespace

DisplayRenderer::Transform::Transform(const Bitmap& bitmap) : m_layout(bitmap.layout()) {
  if (m_layout.model == ColorModel::Indexed)
    m_layout = {ColorModel::Rgb, SampleFormat::UInt8, true};
  if (const LcmsProfile profile = sourceProfile(bitmap)) prepareColors(profile);
  if (bitmap.layout().model == ColorModel::Indexed) {
    takePalette(bitmap);
    m_colors.reset();
  }
}

void DisplayRenderer::Transform::prepareColors(const LcmsProfile& profile) {
  if (m_layout.model == ColorModel::Rgb) {
    const LcmsTransform probe = transformFrom(profile.get(), TYPE_RGB_8);
    if (probe && keepsColors(probe.get())) return;
    if (m_layout.sample != SampleFormat::UInt8) m_shaper = MatrixShaper::make(m_context, profile);
  }
  if (!m_shaper) m_colors = transformFrom(profile.get(), lcmsFormat(m_layout));
}

/// Null when the samples need no profile; a profile that cannot be used counts as none.
LcmsProfile DisplayRenderer::Transform::sourceProfile(const Bitmap& bitmap) const {
  const std::vector<uint8_t>& bytes = bitmap.color().iccProfile;
  if (!bytes.empty() && profileFits(bytes, m_layout.model))
    return openLcmsProfile(m_context, bytes);
  if (m_layout.model != ColorModel::Lab) return nullptr;
  return LcmsProfile(cmsCreateLab4ProfileTHR(m_context.get(), nullptr));
}

LcmsTransform DisplayRenderer::Transform::transformFrom(cmsHPROFILE profile,
                                                        cmsUInt32Number format) const {
  const LcmsProfile srgb(cmsCreate_sRGBProfileTHR(m_context.get()));
  // What lcms2 does by a table of colours is half as far off with a finer one, at little cost.
  return LcmsTransform(cmsCreateTransformTHR(m_context.get(), profile, format, srgb.get(),
                                             TYPE_RGBA_8, kRenderingIntent,
                                             kTransformFlags | cmsFLAGS_HIGHRESPRECALC));
}

void DisplayRenderer::Transform::takePalette(const Bitmap& bitmap) {
  m_palette.resize(256, Rgba{0, 0, 0, 255});
  const std::vector<PaletteEntry>& entries = bitmap.color().palette;
  for (size_t i = 0; i < std::min(entries.size(), m_palette.size()); ++i) {
    const PaletteEntry& entry = entries[i];
    const Rgba color = {entry.red, entry.green, entry.blue, entry.alpha};
    m_palette[i] = color;
    if (m_colors) cmsDoTransform(m_colors.get(), color.data(), m_palette[i].data(), 1);
    m_palette[i][3] = entry.alpha;
  }
}

void DisplayRenderer::Transform::lookUp(const std::byte* indices, int64_t count,
                                        std::byte* colors) const {
  for (; count > 0; --count, ++indices, colors += kOutputChannels) {
    std::memcpy(colors, m_palette[static_cast<size_t>(*indices)].data(), kOutputChannels);
  }
}

void DisplayRenderer::Transform::convert(const std::byte* pixels, int64_t count, uint8_t* output,
                                         std::vector<uint16_t>& scratch) const {
  if (m_layout.sample == SampleFormat::Float32) {
    sixteenBits(pixels, static_cast<size_t>(count) * static_cast<size_t>(m_layout.channels()),
                scratch);
    pixels = reinterpret_cast<const std::byte*>(scratch.data());
  }
  const bool deep = m_layout.sample != SampleFormat::UInt8;
  if (m_colors) {
    cmsDoTransform(m_colors.get(), pixels, output, static_cast<cmsUInt32Number>(count));
  } else if (m_shaper) {
    m_shaper->convert(reinterpret_cast<const uint16_t*>(pixels), m_layout.channels(), count,
                      output);
  } else if (deep) {
    spreadColors<uint16_t>(m_layout, pixels, count, output);
  } else {
    spreadColors<uint8_t>(m_layout, pixels, count, output);
  }
  if (!m_layout.alpha) {
    makeOpaque(count, output);
  } else if (deep) {
    multiplyByAlpha<uint16_t>(m_layout, pixels, count, output);
  } else {
    multiplyByAlpha<uint8_t>(m_layout, pixels, count, output);
  }
}

}  // namespace vantrel
