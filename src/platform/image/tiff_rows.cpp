#include "platform/image/tiff_rows.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstring>
#include <limits>
#include <type_traits>

namespace vantrel {
namespace {

template <typename Value>
Value load(const std::byte* from) {
  Value value;
  std::memcpy(&value, from, sizeof value);
  return value;
}

/// A little- or big-endian machine's number of three bytes.
uint32_t load24(const std::byte* from) {
  const auto byte = [from](int i) { return std::to_integer<uint32_t>(from[i]); };
  if constexpr (std::endian::native == std::endian::little) {
    return byte(0) | byte(1) << 8 | byte(2) << 16;
  } else {
    return byte(2) | byte(1) << 8 | byte(0) << 16;
  }
}

/// `bits` ≤ 16 bits from bit `position` on, counted from the highest bit of the first byte.
uint32_t loadBits(const std::byte* from, uint64_t position, int bits) {
  from += position / 8;
  const int end = static_cast<int>(position % 8) + bits;
  uint32_t value = 0;
  for (int taken = 0; taken < end; taken += 8) {
    value = value << 8 | std::to_integer<uint32_t>(*from++);
  }
  return value >> ((8 - end % 8) % 8) & ((1U << bits) - 1);
}

/// A binary floating-point number with a sign, `exponentBits` and `mantissaBits` (IEEE 754; the
/// 24-bit form of TIFF Technical Note 3 has 7 and 16).
float loadSmallFloat(uint32_t raw, int exponentBits, int mantissaBits) {
  const int bias = (1 << (exponentBits - 1)) - 1;
  const int exponent = static_cast<int>(raw >> mantissaBits) & ((1 << exponentBits) - 1);
  const auto mantissa = static_cast<float>(raw & ((1U << mantissaBits) - 1));
  const float sign = raw >> (exponentBits + mantissaBits) & 1 ? -1.0F : 1.0F;
  if (exponent == (1 << exponentBits) - 1) {
    return mantissa > 0 ? std::numeric_limits<float>::quiet_NaN()
                        : sign * std::numeric_limits<float>::infinity();
  }
  const float fraction = std::ldexp(mantissa, -mantissaBits) + (exponent > 0 ? 1.0F : 0.0F);
  return sign * std::ldexp(fraction, std::max(exponent, 1) - bias);
}

float loadFloat(const std::byte* from, int bits) {
  switch (bits) {
    case 16:
      return loadSmallFloat(load<uint16_t>(from), 5, 10);
    case 24:
      return loadSmallFloat(load24(from), 7, 16);
    case 32:
      return load<float>(from);
    default:
      return static_cast<float>(load<double>(from));
  }
}

/// Sample `index` of a row of integers, as it stands in the file.
uint32_t loadInteger(const std::byte* row, uint64_t index, int bits) {
  switch (bits) {
    case 8:
      return std::to_integer<uint32_t>(row[index]);
    case 16:
      return load<uint16_t>(row + 2 * index);
    case 24:
      return load24(row + 3 * index);
    case 32:
      return load<uint32_t>(row + 4 * index);
    default:
      return loadBits(row, index * static_cast<uint64_t>(bits), bits);
  }
}

/// Spreads a value of `bits` over the whole range of Sample, or cuts what is finer than it.
template <typename Sample>
Sample scaled(uint32_t value, int bits) {
  constexpr uint32_t kFull = std::numeric_limits<Sample>::max();
  if (bits > 16) return static_cast<Sample>(value >> (bits - 16));
  const uint32_t most = (1U << bits) - 1;
  return static_cast<Sample>((value * kFull + most / 2) / most);
}

template <typename Sample>
constexpr Sample full() {
  if constexpr (std::is_same_v<Sample, float>) return 1;
  return std::numeric_limits<Sample>::max();
}

/// Copies one channel: every `step`-th sample of `row`, from sample `first` on.
template <typename Sample>
void gather(const std::byte* row, int first, int step, int bits, bool scale, int64_t count,
            Sample* to, int toStep) {
  auto index = static_cast<uint64_t>(first);
  for (; count > 0; --count, index += static_cast<uint64_t>(step), to += toStep) {
    if constexpr (std::is_same_v<Sample, float>) {
      *to = loadFloat(row + index * static_cast<uint64_t>(bits) / 8, bits);
    } else {
      const uint32_t value = loadInteger(row, index, bits);
      const bool asItIs = !scale || bits == std::numeric_limits<Sample>::digits;
      *to = asItIs ? static_cast<Sample>(value) : scaled<Sample>(value, bits);
    }
  }
}

template <typename Sample>
void divideByAlpha(Sample* pixels, int64_t count, int colors) {
  for (; count > 0; --count, pixels += colors + 1) {
    const Sample alpha = pixels[colors];
    for (int c = 0; c < colors; ++c) {
      if constexpr (std::is_same_v<Sample, float>) {
        pixels[c] = alpha > 0 ? pixels[c] / alpha : 0;
      } else if (alpha == 0) {
        pixels[c] = 0;
      } else {
        const uint32_t color = std::min(pixels[c], alpha);
        pixels[c] = static_cast<Sample>((color * uint32_t{full<Sample>()} + alpha / 2U) / alpha);
      }
    }
  }
}

template <typename Sample>
Sample limited(double value) {
  return static_cast<Sample>(std::clamp(std::floor(value + 0.5), 0.0, double{full<Sample>()}));
}

/// L*, a* and b* of ICC version 4 out of the encodings of TIFF: signed a* and b*, with 256 steps to
/// a unit at 16 bits (CIELab, TIFF 6.0 section 23); the same with an offset of 128 (ICCLab); and
/// the default ranges −85 to 85 and −75 to 125 (ITU-T T.42).
template <typename Sample>
void encodeLab(TiffColors from, Sample* pixel) {
  constexpr bool kDeep = sizeof(Sample) == 2;
  constexpr double kFull = full<Sample>();
  constexpr Sample kSign = kDeep ? 0x8000 : 0x80;
  switch (from) {
    case TiffColors::CieLab:
      for (int c = 1; c < 3; ++c) {
        pixel[c] = static_cast<Sample>(pixel[c] ^ kSign);
        if (kDeep) pixel[c] = limited<Sample>(pixel[c] * (257.0 / 256.0));
      }
      break;
    case TiffColors::IccLab:
      for (int c = 0; kDeep && c < 3; ++c) {
        pixel[c] = limited<Sample>(pixel[c] * (65535.0 / 65280.0));
      }
      break;
    case TiffColors::ItuLab: {
      const double a = (pixel[1] / kFull - 128.0 / 255.0) * 170;
      const double b = (pixel[2] / kFull - 96.0 / 255.0) * 200;
      pixel[1] = limited<Sample>((a + 128) / 255 * kFull);
      pixel[2] = limited<Sample>((b + 128) / 255 * kFull);
      break;
    }
    default:
      break;
  }
}

}  // namespace

TiffRows::TiffRows(const TiffPicture& picture)
    : m_picture(picture),
      m_wanted(picture.wantedSamples()),
      m_identical(picture.colors == TiffColors::Direct && !picture.separatePlanes &&
                  !picture.premultiplied && picture.bits == picture.layout.bytesPerSample() * 8 &&
                  static_cast<int>(m_wanted.size()) == picture.samples) {}

void TiffRows::convert(std::span<const std::byte* const> rows, int64_t count, std::byte* pixels) {
  if (m_identical) {
    std::memcpy(pixels, rows[0],
                static_cast<size_t>(count) * static_cast<size_t>(m_picture.layout.bytesPerPixel()));
    return;
  }
  switch (m_picture.layout.sample) {
    case SampleFormat::UInt8:
      return convertAs(rows, count, reinterpret_cast<uint8_t*>(pixels));
    case SampleFormat::UInt16:
      return convertAs(rows, count, reinterpret_cast<uint16_t*>(pixels));
    case SampleFormat::Float32:
      return convertAs(rows, count, reinterpret_cast<float*>(pixels));
  }
}

template <typename Sample>
void TiffRows::lookUp(const std::byte* row, int64_t count, Sample* pixels) {
  const int step = m_picture.separatePlanes ? 1 : m_picture.samples;
  m_indices.resize(static_cast<size_t>(count));
  gather<uint16_t>(row, 0, step, m_picture.bits, false, count, m_indices.data(), 1);
  const int channels = m_picture.layout.channels();
  for (const uint16_t index : m_indices) {
    const std::array<uint16_t, 3>& color = m_picture.colorMap[index];
    for (size_t c = 0; c < 3; ++c) {
      pixels[c] = static_cast<Sample>(color[c]);
    }
    pixels += channels;
  }
}

template <typename Sample>
void TiffRows::convertAs(std::span<const std::byte* const> rows, int64_t count, Sample* pixels) {
  const int channels = m_picture.layout.channels();
  const int colors = m_picture.layout.colorChannels();
  const bool planes = m_picture.separatePlanes;
  const bool scale = m_picture.layout.model != ColorModel::Indexed;
  for (size_t i = 0; i < m_wanted.size(); ++i) {
    const std::byte* row = planes ? rows[i] : rows[0];
    if (m_picture.colors == TiffColors::Palette && i == 0) {
      lookUp(row, count, pixels);
      continue;
    }
    const bool isAlpha = m_picture.layout.alpha && i + 1 == m_wanted.size();
    Sample* channel = pixels + (isAlpha ? colors : static_cast<int>(i));
    gather(row, planes ? 0 : m_wanted[i], planes ? 1 : m_picture.samples, m_picture.bits, scale,
           count, channel, channels);
  }
  if (m_picture.premultiplied) divideByAlpha(pixels, count, colors);
  if (m_picture.colors == TiffColors::Inverted) {
    for (int64_t i = 0; i < count; ++i) {
      pixels[i * channels] = static_cast<Sample>(full<Sample>() - pixels[i * channels]);
    }
  }
  if constexpr (!std::is_same_v<Sample, float>) {
    if (m_picture.layout.model == ColorModel::Lab) {
      for (int64_t i = 0; i < count; ++i) {
        encodeLab(m_picture.colors, pixels + i * channels);
      }
    }
  }
}

}  // namespace vantrel
