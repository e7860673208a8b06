#include "platform/image/pixel_conversion.h"

#include <algorithm>
#include <cstring>
#include <memory>
#include <new>
#include <utility>

#include "platform/image/color_profile.h"
#include "platform/image/lcms_ptr.h"
#include "platform/image/pixel_runs.h"

namespace vantrel {
namespace {

/// A colour transform to sRGB. It holds no state, so that threads can share it.
class SrgbTransform {
 public:
  /// Null when the pixels have no profile that gives them a meaning.
  static std::shared_ptr<const SrgbTransform> from(const PixelLayout& from, const PixelLayout& to,
                                                   const std::vector<uint8_t>& iccProfile);

  void apply(const void* from, void* to, size_t pixels) const {
    cmsDoTransform(m_transform.get(), from, to, static_cast<cmsUInt32Number>(pixels));
  }

 private:
  LcmsContext m_context = makeLcmsContext();
  LcmsTransform m_transform;
};

cmsUInt32Number formatOf(const PixelLayout& layout) {
  cmsUInt32Number space = PT_RGB;
  if (layout.model == ColorModel::Gray) space = PT_GRAY;
  if (layout.model == ColorModel::Cmyk) space = PT_CMYK;
  if (layout.model == ColorModel::Lab) space = PT_Lab;
  return COLORSPACE_SH(space) | CHANNELS_SH(static_cast<unsigned>(layout.colorChannels())) |
         BYTES_SH(static_cast<unsigned>(layout.bytesPerSample())) |
         EXTRA_SH(layout.alpha ? 1U : 0U);
}

std::shared_ptr<const SrgbTransform> SrgbTransform::from(const PixelLayout& from,
                                                         const PixelLayout& to,
                                                         const std::vector<uint8_t>& iccProfile) {
  const auto result = std::make_shared<SrgbTransform>();
  LcmsProfile source;
  if (from.model == ColorModel::Lab) {
    source.reset(cmsCreateLab4ProfileTHR(result->m_context.get(), nullptr));
    if (!source) throw std::bad_alloc();
  } else if (profileFits(iccProfile, from.model)) {
    source = openLcmsProfile(result->m_context, iccProfile);
  } else {
    return nullptr;
  }
  const LcmsProfile srgb = openLcmsProfile(result->m_context, srgbProfile());
  result->m_transform.reset(
      cmsCreateTransformTHR(result->m_context.get(), source.get(), formatOf(from), srgb.get(),
                            formatOf(to), kRenderingIntent, kTransformFlags | cmsFLAGS_COPY_ALPHA));
  if (!result->m_transform) throw std::bad_alloc();
  return result;
}

std::array<PaletteEntry, 256> colorTable(const std::vector<PaletteEntry>& palette) {
  std::array<PaletteEntry, 256> table;
  std::copy_n(palette.begin(), std::min(palette.size(), table.size()), table.begin());
  return table;
}

std::vector<PaletteEntry> paletteInSrgb(const BitmapColor& color) {
  static_assert(sizeof(PaletteEntry) == 4);
  const PixelLayout layout{ColorModel::Rgb, SampleFormat::UInt8, true};
  std::vector<PaletteEntry> palette = color.palette;
  if (color.iccProfile == srgbProfile()) return palette;
  if (const auto transform = SrgbTransform::from(layout, layout, color.iccProfile)) {
    transform->apply(color.palette.data(), palette.data(), palette.size());
  }
  return palette;
}

}  // namespace

PixelConversion::PixelConversion(const Bitmap& bitmap)
    : m_source(bitmap.layout()),
      m_layout(bitmap.layout()),
      m_iccProfile(bitmap.color().iccProfile) {}

PixelConversion PixelConversion::forPng(const Bitmap& bitmap) {
  PixelConversion result(bitmap);
  const ColorModel model = result.m_layout.model;
  result.toIntegers(SampleFormat::UInt16);
  if (model == ColorModel::Cmyk || model == ColorModel::Lab) result.toSrgb(bitmap.color());
  return result;
}

PixelConversion PixelConversion::forJpeg(const Bitmap& bitmap,
                                         const std::array<double, 3>& background) {
  PixelConversion result(bitmap);
  const BitmapColor& color = bitmap.color();
  const ColorModel model = result.m_layout.model;
  if (bitmap.hasAlpha()) {
    result.toIntegers(SampleFormat::UInt16);
    if (model != ColorModel::Rgb) result.toSrgb(color);
    const bool fits = profileFits(result.m_iccProfile, ColorModel::Rgb);
    result.overBackground(srgbColorIn(fits ? result.m_iccProfile : std::vector<uint8_t>(),
                                      background[0], background[1], background[2]));
  } else if (model == ColorModel::Indexed) {
    result.paletteToRgb(color.palette, false);
  } else if (model == ColorModel::Lab) {
    result.toIntegers(SampleFormat::UInt16);
    result.toSrgb(color);
    result.toBytes();
  } else {
    result.toIntegers(SampleFormat::UInt8);
    result.toBytes();
  }
  return result;
}

void PixelConversion::append(PixelLayout result, Run run) {
  m_layout = result;
  m_steps.push_back({std::move(run), result.bytesPerPixel()});
}

void PixelConversion::toIntegers(SampleFormat sample) {
  if (m_layout.sample != SampleFormat::Float32) return;
  PixelLayout result = m_layout;
  result.sample = sample;
  const auto convert =
      sample == SampleFormat::UInt8 ? floatsToIntegers<uint8_t> : floatsToIntegers<uint16_t>;
  const auto channels = static_cast<size_t>(result.channels());
  append(result, [=](const std::byte* from, std::byte* to, size_t pixels) {
    convert(from, to, pixels * channels);
  });
}

void PixelConversion::toBytes() {
  if (m_layout.sample != SampleFormat::UInt16) return;
  PixelLayout result = m_layout;
  result.sample = SampleFormat::UInt8;
  const auto channels = static_cast<size_t>(result.channels());
  append(result, [=](const std::byte* from, std::byte* to, size_t pixels) {
    wordsToBytes(from, to, pixels * channels);
  });
}

void PixelConversion::paletteToRgb(const std::vector<PaletteEntry>& palette, bool alpha) {
  append({ColorModel::Rgb, SampleFormat::UInt8, alpha},
         [table = colorTable(palette), alpha](const std::byte* from, std::byte* to, size_t pixels) {
           indicesToRgb(from, to, pixels, table, alpha);
         });
}

void PixelConversion::toSrgb(const BitmapColor& color) {
  m_iccProfile = srgbProfile();
  const PixelLayout from = m_layout;
  if (from.model == ColorModel::Indexed) {
    paletteToRgb(paletteInSrgb(color), color.paletteHasAlpha);
    return;
  }
  const PixelLayout result{ColorModel::Rgb, from.sample, from.alpha};
  if (const auto transform = SrgbTransform::from(from, result, color.iccProfile)) {
    append(result, [transform](const std::byte* in, std::byte* out, size_t pixels) {
      transform->apply(in, out, pixels);
    });
    return;
  }
  const bool bytes = from.sample == SampleFormat::UInt8;
  const auto uncalibrated = from.model == ColorModel::Gray
                                ? (bytes ? grayToRgb<uint8_t> : grayToRgb<uint16_t>)
                                : (bytes ? inkToRgb<uint8_t> : inkToRgb<uint16_t>);
  append(result, [=](const std::byte* in, std::byte* out, size_t pixels) {
    uncalibrated(in, out, pixels, result.alpha);
  });
}

void PixelConversion::overBackground(const std::array<uint8_t, 3>& background) {
  const auto blend =
      m_layout.sample == SampleFormat::UInt8 ? rgbOverColor<uint8_t> : rgbOverColor<uint16_t>;
  append({ColorModel::Rgb, SampleFormat::UInt8, false},
         [=](const std::byte* from, std::byte* to, size_t pixels) {
           blend(from, to, pixels, background);
         });
}

void PixelConversion::convert(const std::byte* from, std::byte* to, int64_t pixels) const {
  // Runs of this length pass through all steps while they are in the cache.
  constexpr int64_t kRun = 512;
  constexpr size_t kMostBytesPerPixel = 20;
  alignas(8) std::array<std::array<std::byte, kRun * kMostBytesPerPixel>, 2> between;
  if (isIdentity()) {
    std::memcpy(to, from, static_cast<size_t>(pixels * m_source.bytesPerPixel()));
    return;
  }
  for (int64_t done = 0; done < pixels; done += kRun) {
    const int64_t run = std::min(kRun, pixels - done);
    const std::byte* input = from + done * m_source.bytesPerPixel();
    for (size_t step = 0; step < m_steps.size(); ++step) {
      const bool last = step + 1 == m_steps.size();
      std::byte* output =
          last ? to + done * m_layout.bytesPerPixel() : between[step % between.size()].data();
      m_steps[step].run(input, output, static_cast<size_t>(run));
      input = output;
    }
  }
}

}  // namespace vantrel
