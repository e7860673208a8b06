#include "support/tiff_maker.h"

#include <algorithm>
#include <cstring>
#include <memory>
#include <stdexcept>

namespace vantrel::testing {
namespace {

struct Close {
  void operator()(TIFF* tiff) const { TIFFClose(tiff); }
};

/// Puts `bits` of `value` behind `position` bits: whole bytes in the machine's order, other widths
/// from the highest bit on.
void putSample(std::vector<uint8_t>& row, size_t position, int bits, uint64_t value) {
  if (bits % 8 == 0) {
    std::memcpy(row.data() + position / 8, &value, static_cast<size_t>(bits / 8));
    return;
  }
  for (int bit = bits - 1; bit >= 0; --bit, ++position) {
    if (value >> bit & 1) row[position / 8] |= static_cast<uint8_t>(0x80 >> position % 8);
  }
}

/// `width` samples of a row from column x on: those of all samples, or of plane `plane`.
std::vector<uint8_t> rowOf(const TiffSpec& spec, uint32_t x, uint32_t y, uint32_t width,
                           int plane) {
  const int samples = spec.separatePlanes ? 1 : spec.samples;
  const size_t bits = static_cast<size_t>(samples) * static_cast<size_t>(spec.bits);
  std::vector<uint8_t> row((width * bits + 7) / 8);
  for (uint32_t column = 0; column < width; ++column) {
    for (int s = 0; s < samples; ++s) {
      const uint64_t value = spec.sample(std::min(x + column, spec.width - 1),
                                         std::min(y, spec.height - 1), plane + s);
      putSample(row, column * bits + static_cast<size_t>(s * spec.bits), spec.bits, value);
    }
  }
  return row;
}

void setTags(TIFF* tiff, const TiffSpec& spec) {
  TIFFSetField(tiff, TIFFTAG_IMAGEWIDTH, spec.width);
  TIFFSetField(tiff, TIFFTAG_IMAGELENGTH, spec.height);
  TIFFSetField(tiff, TIFFTAG_BITSPERSAMPLE, spec.bits);
  TIFFSetField(tiff, TIFFTAG_SAMPLESPERPIXEL, spec.samples);
  TIFFSetField(tiff, TIFFTAG_PHOTOMETRIC, spec.photometric);
  TIFFSetField(tiff, TIFFTAG_SAMPLEFORMAT, spec.sampleFormat);
  TIFFSetField(tiff, TIFFTAG_PLANARCONFIG,
               spec.separatePlanes ? PLANARCONFIG_SEPARATE : PLANARCONFIG_CONTIG);
  TIFFSetField(tiff, TIFFTAG_COMPRESSION, spec.compression);
  TIFFSetField(tiff, TIFFTAG_ORIENTATION, spec.orientation);
  TIFFSetField(tiff, TIFFTAG_FILLORDER, spec.fillOrder);
  if (spec.predictor) TIFFSetField(tiff, TIFFTAG_PREDICTOR, spec.predictor);
  if (spec.jpegFromRgb) TIFFSetField(tiff, TIFFTAG_JPEGCOLORMODE, JPEGCOLORMODE_RGB);
  if (spec.inkSet) TIFFSetField(tiff, TIFFTAG_INKSET, spec.inkSet);
  if (spec.subfileType) TIFFSetField(tiff, TIFFTAG_SUBFILETYPE, spec.subfileType);
  if (!spec.extraSamples.empty()) {
    TIFFSetField(tiff, TIFFTAG_EXTRASAMPLES, static_cast<int>(spec.extraSamples.size()),
                 spec.extraSamples.data());
  }
  if (!spec.colorMap[0].empty()) {
    TIFFSetField(tiff, TIFFTAG_COLORMAP, spec.colorMap[0].data(), spec.colorMap[1].data(),
                 spec.colorMap[2].data());
  }
  if (!spec.profile.empty()) {
    TIFFSetField(tiff, TIFFTAG_ICCPROFILE, static_cast<uint32_t>(spec.profile.size()),
                 spec.profile.data());
  }
  if (spec.tileSide) {
    TIFFSetField(tiff, TIFFTAG_TILEWIDTH, spec.tileSide);
    TIFFSetField(tiff, TIFFTAG_TILELENGTH, spec.tileSide);
  } else {
    TIFFSetField(tiff, TIFFTAG_ROWSPERSTRIP, spec.rowsPerStrip ? spec.rowsPerStrip : spec.height);
  }
}

bool writeStrips(TIFF* tiff, const TiffSpec& spec, int plane) {
  for (uint32_t y = 0; y < spec.height; ++y) {
    std::vector<uint8_t> row = rowOf(spec, 0, y, spec.width, plane);
    if (TIFFWriteScanline(tiff, row.data(), y, static_cast<uint16_t>(plane)) < 0) return false;
  }
  return true;
}

bool writeTiles(TIFF* tiff, const TiffSpec& spec, int plane) {
  for (uint32_t top = 0; top < spec.height; top += spec.tileSide) {
    for (uint32_t left = 0; left < spec.width; left += spec.tileSide) {
      std::vector<uint8_t> tile;
      for (uint32_t y = top; y < top + spec.tileSide; ++y) {
        const std::vector<uint8_t> row = rowOf(spec, left, y, spec.tileSide, plane);
        tile.insert(tile.end(), row.begin(), row.end());
      }
      if (TIFFWriteTile(tiff, tile.data(), left, top, 0, static_cast<uint16_t>(plane)) < 0) {
        return false;
      }
    }
  }
  return true;
}

}  // namespace

void saveTiff(const std::filesystem::path& path, const std::vector<TiffSpec>& pages,
              const char* mode) {
  const std::unique_ptr<TIFF, Close> tiff(TIFFOpen(path.c_str(), mode));
  bool written = tiff != nullptr;
  for (const TiffSpec& page : pages) {
    if (!written) break;
    setTags(tiff.get(), page);
    const int planes = page.separatePlanes ? page.samples : 1;
    for (int plane = 0; written && plane < planes; ++plane) {
      written = page.tileSide ? writeTiles(tiff.get(), page, plane)
                              : writeStrips(tiff.get(), page, plane);
    }
    written = written && TIFFWriteDirectory(tiff.get());
  }
  if (!written) throw std::runtime_error("cannot write " + path.string());
}

}  // namespace vantrel::testing
