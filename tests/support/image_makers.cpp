#include "support/image_makers.h"

#include <cstdio>
//
#include <jpeglib.h>
#include <zlib.h>

#include <array>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <string_view>

namespace vantrel::testing {
namespace {

void append(Bytes& to, const Bytes& more) {
  to.insert(to.end(), more.begin(), more.end());
}

void append(Bytes& to, std::string_view text) {
  to.insert(to.end(), text.begin(), text.end());
}

void appendNumber(Bytes& to, uint32_t value, int bytes, bool bigEndian = true) {
  for (int i = 0; i < bytes; ++i) {
    const int shift = 8 * (bigEndian ? bytes - 1 - i : i);
    to.push_back(static_cast<uint8_t>(value >> shift));
  }
}

// Appends the rows of a picture that takes every stepX-th column and stepY-th row.
void appendRows(Bytes& rows, const PngSpec& spec, uint32_t startX, uint32_t startY, uint32_t stepX,
                uint32_t stepY) {
  if (startX >= spec.width) return;
  for (uint32_t y = startY; y < spec.height; y += stepY) {
    rows.push_back(0);
    uint32_t bits = 0;
    int filled = 0;
    for (uint32_t x = startX; x < spec.width; x += stepX) {
      for (int channel = 0; channel < spec.channels(); ++channel) {
        bits = bits << spec.depth | spec.sample(x, y, channel);
        filled += spec.depth;
        for (; filled >= 8; filled -= 8)
          rows.push_back(static_cast<uint8_t>(bits >> (filled - 8)));
      }
    }
    if (filled > 0) rows.push_back(static_cast<uint8_t>(bits << (8 - filled)));
  }
}

void setColors(jpeg_compress_struct& encoder, const JpegSpec& spec) {
  constexpr std::array<J_COLOR_SPACE, 5> kSpaces = {JCS_UNKNOWN, JCS_GRAYSCALE, JCS_UNKNOWN,
                                                    JCS_RGB, JCS_CMYK};
  encoder.input_components = spec.channels;
  encoder.in_color_space = kSpaces.at(static_cast<size_t>(spec.channels));
  jpeg_set_defaults(&encoder);
  if (spec.channels == 3) jpeg_set_colorspace(&encoder, spec.transformed ? JCS_YCbCr : JCS_RGB);
  if (spec.channels == 4) jpeg_set_colorspace(&encoder, spec.transformed ? JCS_YCCK : JCS_CMYK);
  encoder.write_Adobe_marker = spec.adobeMarker ? TRUE : FALSE;
  encoder.comp_info[0].h_samp_factor = spec.transformed ? spec.chroma : 1;
  encoder.comp_info[0].v_samp_factor = spec.transformed ? spec.chroma : 1;
}

std::vector<jpeg_scan_info> scanForEachCoefficient(int refinements) {
  std::vector<jpeg_scan_info> scans;
  for (int coefficient = 0; coefficient < DCTSIZE2; ++coefficient) {
    for (int low = refinements; low >= 0; --low) {
      const int high = low == refinements ? 0 : low + 1;
      scans.push_back({1, {0}, coefficient, coefficient, high, low});
    }
  }
  return scans;
}

}  // namespace

void saveBytes(const std::filesystem::path& path, const Bytes& bytes) {
  // A file cut to nothing and filled again is flushed to disk at once by some file systems; a new
  // one is not, which makes tests with thousands of files ten times as fast.
  std::filesystem::remove(path);
  std::ofstream file(path, std::ios::binary);
  file.write(reinterpret_cast<const char*>(bytes.data()),
             static_cast<std::streamsize>(bytes.size()));
  if (!file.flush()) throw std::runtime_error("cannot write " + path.string());
}

Bytes withFlippedBits(Bytes bytes, uint32_t flips, std::mt19937& random) {
  for (; flips > 0; --flips) {
    const size_t at = random() % bytes.size();
    bytes[at] ^= static_cast<uint8_t>(1U << random() % 8);
  }
  return bytes;
}

Bytes loadBytes(const std::filesystem::path& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

Bytes exifBlock(uint16_t orientation, bool bigEndian) {
  Bytes block;
  append(block, bigEndian ? std::string_view("MM") : std::string_view("II"));
  appendNumber(block, 42, 2, bigEndian);
  appendNumber(block, 8, 4, bigEndian);
  appendNumber(block, 1, 2, bigEndian);
  appendNumber(block, 0x0112, 2, bigEndian);
  appendNumber(block, 3, 2, bigEndian);
  appendNumber(block, 1, 4, bigEndian);
  appendNumber(block, orientation, 2, bigEndian);
  appendNumber(block, 0, 2, bigEndian);
  appendNumber(block, 0, 4, bigEndian);
  return block;
}

Bytes pngChunk(const std::string& name, const Bytes& data) {
  Bytes chunk;
  appendNumber(chunk, static_cast<uint32_t>(data.size()), 4);
  append(chunk, std::string_view(name));
  append(chunk, data);
  const uLong crc = crc32(0, chunk.data() + 4, static_cast<uInt>(chunk.size() - 4));
  appendNumber(chunk, static_cast<uint32_t>(crc), 4);
  return chunk;
}

Bytes iccpChunk(const Bytes& profile) {
  Bytes data = {'p', 0, 0};
  append(data, deflated(profile));
  return pngChunk("iCCP", data);
}

Bytes deflated(const Bytes& data) {
  uLongf size = compressBound(static_cast<uLong>(data.size()));
  Bytes out(size);
  compress2(out.data(), &size, data.data(), static_cast<uLong>(data.size()), 6);
  out.resize(size);
  return out;
}

int PngSpec::channels() const {
  switch (colorType) {
    case 2:
      return 3;
    case 4:
      return 2;
    case 6:
      return 4;
    default:
      return 1;
  }
}

Bytes pngRows(const PngSpec& spec) {
  Bytes rows;
  if (!spec.interlaced) {
    appendRows(rows, spec, 0, 0, 1, 1);
    return rows;
  }
  // Adam7: first column, first row, columns apart, rows apart (PNG, 8.2).
  constexpr std::array<std::array<uint32_t, 4>, 7> kPasses = {{{0, 0, 8, 8},
                                                               {4, 0, 8, 8},
                                                               {0, 4, 4, 8},
                                                               {2, 0, 4, 4},
                                                               {0, 2, 2, 4},
                                                               {1, 0, 2, 2},
                                                               {0, 1, 1, 2}}};
  for (const auto& [x, y, stepX, stepY] : kPasses)
    appendRows(rows, spec, x, y, stepX, stepY);
  return rows;
}

Bytes makePng(const PngSpec& spec) {
  return makePngAround(spec, deflated(pngRows(spec)));
}

Bytes makePngAround(const PngSpec& spec, const Bytes& compressed) {
  Bytes header;
  appendNumber(header, spec.width, 4);
  appendNumber(header, spec.height, 4);
  append(header, Bytes{static_cast<uint8_t>(spec.depth), static_cast<uint8_t>(spec.colorType), 0, 0,
                       static_cast<uint8_t>(spec.interlaced ? 1 : 0)});
  Bytes file = {0x89, 'P', 'N', 'G', '\r', '\n', 0x1a, '\n'};
  append(file, pngChunk("IHDR", header));
  for (const Bytes& chunk : spec.before)
    append(file, chunk);
  append(file, pngChunk("IDAT", compressed));
  for (const Bytes& chunk : spec.after)
    append(file, chunk);
  append(file, pngChunk("IEND", {}));
  return file;
}

Bytes makeJpeg(const JpegSpec& spec) {
  jpeg_error_mgr errors;
  jpeg_compress_struct encoder;
  encoder.err = jpeg_std_error(&errors);
  jpeg_create_compress(&encoder);
  unsigned char* memory = nullptr;
  unsigned long size = 0;
  jpeg_mem_dest(&encoder, &memory, &size);
  encoder.image_width = static_cast<JDIMENSION>(spec.width);
  encoder.image_height = static_cast<JDIMENSION>(spec.height);
  setColors(encoder, spec);
  jpeg_set_quality(&encoder, spec.quality, TRUE);
  encoder.arith_code = spec.arithmetic ? TRUE : FALSE;
  encoder.restart_in_rows = spec.restartRows;
  if (spec.progressive) jpeg_simple_progression(&encoder);
  std::vector<jpeg_scan_info> scans;
  if (spec.refinements >= 0) {
    scans = scanForEachCoefficient(spec.refinements);
    encoder.scan_info = scans.data();
    encoder.num_scans = static_cast<int>(scans.size());
  }
  jpeg_start_compress(&encoder, TRUE);
  for (const auto& [number, content] : spec.segments) {
    jpeg_write_marker(&encoder, JPEG_APP0 + number, content.data(),
                      static_cast<unsigned>(content.size()));
  }
  Bytes row(static_cast<size_t>(spec.width) * static_cast<size_t>(spec.channels));
  for (int y = 0; y < spec.height; ++y) {
    for (size_t i = 0; i < row.size(); ++i) {
      const int position = static_cast<int>(i);
      row[i] = spec.sample(position / spec.channels, y, position % spec.channels);
    }
    JSAMPROW pointer = row.data();
    jpeg_write_scanlines(&encoder, &pointer, 1);
  }
  jpeg_finish_compress(&encoder);
  jpeg_destroy_compress(&encoder);
  const Bytes file(memory, memory + size);
  std::free(memory);
  return file;
}

Bytes exifSegment(uint16_t orientation) {
  Bytes segment = {'E', 'x', 'i', 'f', 0, 0};
  append(segment, exifBlock(orientation));
  return segment;
}

Bytes iccSegment(const Bytes& part, uint8_t number, uint8_t count) {
  Bytes segment;
  append(segment, std::string_view("ICC_PROFILE\0", 12));
  append(segment, Bytes{number, count});
  append(segment, part);
  return segment;
}

}  // namespace vantrel::testing
