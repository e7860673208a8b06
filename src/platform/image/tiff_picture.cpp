#include "platform/image/tiff_picture.h"

#include <algorithm>
#include <numeric>
#include <span>

#include "platform/image/color_profile.h"
#include "platform/image/image_reader.h"

namespace vantrel {
namespace {

/// The channels of the bitmap before alpha, and how they are made.
struct Meaning {
  ColorModel model;
  TiffColors colors;
};

Meaning meaningOf(const TiffHandle& file, uint16_t photometric) {
  switch (photometric) {
    case PHOTOMETRIC_MINISWHITE:
      return {ColorModel::Gray, TiffColors::Inverted};
    case PHOTOMETRIC_MINISBLACK:
      return {ColorModel::Gray, TiffColors::Direct};
    case PHOTOMETRIC_RGB:
      return {ColorModel::Rgb, TiffColors::Direct};
    case PHOTOMETRIC_PALETTE:
      return {ColorModel::Indexed, TiffColors::Palette};
    case PHOTOMETRIC_SEPARATED:
      if (file.field<uint16_t>(TIFFTAG_INKSET, INKSET_CMYK) != INKSET_CMYK) throw ImageDamaged();
      return {ColorModel::Cmyk, TiffColors::Direct};
    case PHOTOMETRIC_CIELAB:
      return {ColorModel::Lab, TiffColors::CieLab};
    case PHOTOMETRIC_ICCLAB:
      return {ColorModel::Lab, TiffColors::IccLab};
    case PHOTOMETRIC_ITULAB:
      return {ColorModel::Lab, TiffColors::ItuLab};
    case PHOTOMETRIC_YCBCR:
    case PHOTOMETRIC_LOGL:
    case PHOTOMETRIC_LOGLUV:
      return {ColorModel::Rgb, TiffColors::Library};
    default:
      throw ImageDamaged();
  }
}

/// libjpeg converts YCbCr itself; the samples are then plain RGB.
bool decodesToRgb(const TiffHandle& file, uint16_t photometric, bool separatePlanes) {
  return photometric == PHOTOMETRIC_YCBCR && !separatePlanes &&
         file.field<uint16_t>(TIFFTAG_COMPRESSION, COMPRESSION_NONE) == COMPRESSION_JPEG &&
         TIFFSetField(file.get(), TIFFTAG_JPEGCOLORMODE, JPEGCOLORMODE_RGB);
}

SampleFormat sampleFormatOf(const TiffPicture& picture) {
  if (picture.isFloat) return SampleFormat::Float32;
  return picture.bits <= 8 ? SampleFormat::UInt8 : SampleFormat::UInt16;
}

void checkDepth(const TiffPicture& picture, uint16_t format) {
  const int bits = picture.bits;
  const ColorModel model = picture.layout.model;
  // libtiff and its users write the samples of Lab as integers with or without a sign.
  const bool signedAllowed = model == ColorModel::Lab && format == SAMPLEFORMAT_INT;
  bool readable = false;
  if (format == SAMPLEFORMAT_IEEEFP) {
    const bool scalar = model == ColorModel::Gray || model == ColorModel::Rgb;
    readable = scalar && (bits == 16 || bits == 24 || bits == 32 || bits == 64);
  } else if (format == SAMPLEFORMAT_UINT || format == SAMPLEFORMAT_VOID || signedAllowed) {
    readable = (bits >= 1 && bits <= 16) || bits == 24 || bits == 32;
    if (model == ColorModel::Lab) readable = bits == 8 || bits == 16;
    if (model == ColorModel::Indexed) readable = bits <= 8 || bits == 16;
  }
  if (!readable) throw ImageDamaged();
}

/// The first extra sample that is alpha; what the others mean is not known, and they are left out.
void readAlpha(const TiffHandle& file, TiffPicture& picture) {
  uint16_t count = 0;
  const uint16_t* kinds = nullptr;
  if (!TIFFGetFieldDefaulted(file.get(), TIFFTAG_EXTRASAMPLES, &count, &kinds)) return;
  const int colors = picture.layout.colorChannels();
  for (int i = 0; i < count && colors + i < picture.samples; ++i) {
    if (kinds[i] != EXTRASAMPLE_ASSOCALPHA && kinds[i] != EXTRASAMPLE_UNASSALPHA) continue;
    picture.alphaSample = colors + i;
    picture.premultiplied = kinds[i] == EXTRASAMPLE_ASSOCALPHA;
    picture.layout.alpha = true;
    return;
  }
}

/// The 8-bit values that the 16-bit ones of a colour map stand for; empty when they are finer than
/// that. Writers spread 8 bits over 16, shift them up, or leave them as they are.
std::vector<PaletteEntry> exactPalette(std::span<const std::array<uint16_t, 3>> map) {
  const auto all = [map](auto holds) {
    return std::all_of(map.begin(), map.end(), [holds](const std::array<uint16_t, 3>& color) {
      return std::all_of(color.begin(), color.end(), holds);
    });
  };
  int shift = 8;
  if (all([](uint16_t value) { return value < 256; })) {
    shift = 0;
  } else if (!all([](uint16_t value) { return value % 257 == 0; }) &&
             !all([](uint16_t value) { return value % 256 == 0; })) {
    return {};
  }
  std::vector<PaletteEntry> palette;
  for (const std::array<uint16_t, 3>& color : map) {
    palette.push_back({static_cast<uint8_t>(color[0] >> shift),
                       static_cast<uint8_t>(color[1] >> shift),
                       static_cast<uint8_t>(color[2] >> shift), 255});
  }
  return palette;
}

void readPalette(const TiffHandle& file, TiffPicture& picture) {
  const uint16_t* maps[3] = {};
  if (!TIFFGetField(file.get(), TIFFTAG_COLORMAP, &maps[0], &maps[1], &maps[2])) {
    throw ImageDamaged();
  }
  picture.colorMap.resize(size_t{1} << picture.bits);
  for (size_t i = 0; i < picture.colorMap.size(); ++i) {
    picture.colorMap[i] = {maps[0][i], maps[1][i], maps[2][i]};
  }
  std::vector<PaletteEntry> palette = exactPalette(picture.colorMap);
  if (picture.bits <= 8 && !palette.empty() && !picture.layout.alpha) {
    picture.colors = TiffColors::Direct;
    picture.color.palette = std::move(palette);
    return;
  }
  if (!palette.empty()) {
    for (size_t i = 0; i < palette.size(); ++i) {
      const auto wide = [](uint8_t value) { return static_cast<uint16_t>(value * 257); };
      picture.colorMap[i] = {wide(palette[i].red), wide(palette[i].green), wide(palette[i].blue)};
    }
  }
  picture.layout.model = ColorModel::Rgb;
  picture.layout.sample = SampleFormat::UInt16;
}

int fileBitsOf(const TiffPicture& picture) {
  const int bits = picture.bits;
  if (picture.layout.sample == SampleFormat::UInt16) return bits > 8 && bits < 16 ? bits : 0;
  const bool single =
      picture.layout.model == ColorModel::Gray || picture.layout.model == ColorModel::Indexed;
  return single && (bits == 1 || bits == 2 || bits == 4) ? bits : 0;
}

void readProfile(const TiffHandle& file, TiffPicture& picture) {
  uint32_t size = 0;
  const uint8_t* data = nullptr;
  if (!TIFFGetField(file.get(), TIFFTAG_ICCPROFILE, &size, &data)) return;
  std::vector<uint8_t> profile(data, data + size);
  if (profileFits(profile, picture.layout.model)) picture.color.iccProfile = std::move(profile);
}

}  // namespace

std::vector<int> TiffPicture::wantedSamples() const {
  const size_t colorSamples =
      colors == TiffColors::Palette ? 1 : static_cast<size_t>(layout.colorChannels());
  std::vector<int> wanted(colorSamples);
  std::iota(wanted.begin(), wanted.end(), 0);
  if (layout.alpha) wanted.push_back(alphaSample);
  return wanted;
}

uint64_t TiffPicture::rowBytes(uint64_t pixels) const {
  const auto perPixel =
      static_cast<uint64_t>(bits) * (separatePlanes ? 1U : static_cast<uint64_t>(samples));
  return (pixels * perPixel + 7) / 8;
}

TiffPicture TiffPicture::read(const TiffHandle& file) {
  TiffPicture picture;
  picture.width = file.field<uint32_t>(TIFFTAG_IMAGEWIDTH, 0);
  picture.height = file.field<uint32_t>(TIFFTAG_IMAGELENGTH, 0);
  picture.orientation = orientationFromTag(file.field<uint16_t>(TIFFTAG_ORIENTATION, 1));
  picture.bits = file.field<uint16_t>(TIFFTAG_BITSPERSAMPLE, 1);
  picture.samples = file.field<uint16_t>(TIFFTAG_SAMPLESPERPIXEL, 1);
  picture.separatePlanes =
      picture.samples > 1 &&
      file.field<uint16_t>(TIFFTAG_PLANARCONFIG, PLANARCONFIG_CONTIG) == PLANARCONFIG_SEPARATE;
  uint16_t photometric = 0;
  if (!TIFFGetField(file.get(), TIFFTAG_PHOTOMETRIC, &photometric)) throw ImageDamaged();

  Meaning meaning = meaningOf(file, photometric);
  if (decodesToRgb(file, photometric, picture.separatePlanes)) meaning.colors = TiffColors::Direct;
  picture.layout.model = meaning.model;
  picture.colors = meaning.colors;
  if (meaning.colors == TiffColors::Library) {
    if (photometric == PHOTOMETRIC_YCBCR) readProfile(file, picture);
    return picture;
  }
  if (picture.samples < picture.layout.colorChannels()) throw ImageDamaged();

  const auto format = file.field<uint16_t>(TIFFTAG_SAMPLEFORMAT, SAMPLEFORMAT_UINT);
  checkDepth(picture, format);
  picture.isFloat = format == SAMPLEFORMAT_IEEEFP;
  picture.layout.sample = sampleFormatOf(picture);
  readAlpha(file, picture);
  if (meaning.colors == TiffColors::Palette) readPalette(file, picture);
  picture.color.fileBits = fileBitsOf(picture);
  readProfile(file, picture);
  return picture;
}

}  // namespace vantrel
