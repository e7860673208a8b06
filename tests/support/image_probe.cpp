#include "support/image_probe.h"

#include <cstdio>
// libjpeg's header needs FILE and size_t and includes neither.
#include <jpeglib.h>
#include <png.h>
#include <zlib.h>

#include <cstring>
#include <fstream>
#include <iterator>
#include <memory>
#include <stdexcept>

namespace vantrel::testing {
namespace {

std::vector<uint8_t> bytesOf(const std::filesystem::path& path) {
  std::ifstream file(path, std::ios::binary);
  if (!file) throw std::runtime_error("cannot read " + path.string());
  return {std::istreambuf_iterator<char>(file), {}};
}

size_t bigEndianAt(const std::vector<uint8_t>& bytes, size_t at, int count) {
  size_t value = 0;
  for (int i = 0; i < count; ++i)
    value = value << 8 | bytes.at(at + static_cast<size_t>(i));
  return value;
}

// Without interlacing each row is a type byte and the filtered bytes.
void readFilteredRows(const std::vector<uint8_t>& compressed, PngContents& png) {
  const size_t expected = png.pixels.size() + png.height;
  std::vector<uint8_t> output(expected + 1);
  uLongf size = output.size();
  uLong read = compressed.size();
  png.streamIsWhole = uncompress2(output.data(), &size, compressed.data(), &read) == Z_OK &&
                      size == expected && read == compressed.size();
  for (size_t at = 0; at < expected; at += png.rowBytes() + 1)
    png.filterTypes.push_back(output[at]);
}

void readChunks(const std::vector<uint8_t>& file, PngContents& png) {
  std::vector<uint8_t> stream;
  for (size_t at = 8; at < file.size();) {
    const size_t length = bigEndianAt(file, at, 4);
    const std::string type(file.begin() + static_cast<std::ptrdiff_t>(at) + 4,
                           file.begin() + static_cast<std::ptrdiff_t>(at) + 8);
    if (png.chunks.empty() || png.chunks.back() != type) png.chunks.push_back(type);
    const auto data = file.begin() + static_cast<std::ptrdiff_t>(at) + 8;
    if (type == "IDAT") stream.insert(stream.end(), data, data + static_cast<ptrdiff_t>(length));
    at += length + 12;
  }
  readFilteredRows(stream, png);
}

// libpng is written in C, but built so that exceptions pass through it.
[[noreturn]] void throwPngMessage(png_structp, png_const_charp message) {
  throw std::runtime_error(message);
}

struct PngReading {
  png_structp png =
      png_create_read_struct(PNG_LIBPNG_VER_STRING, nullptr, throwPngMessage, throwPngMessage);
  png_infop info = png_create_info_struct(png);
  PngReading() = default;
  PngReading(const PngReading&) = delete;
  PngReading& operator=(const PngReading&) = delete;
  ~PngReading() { png_destroy_read_struct(&png, &info, nullptr); }
};

void readPngColor(const PngReading& reading, PngContents& result) {
  png_colorp palette = nullptr;
  int count = 0;
  if (png_get_PLTE(reading.png, reading.info, &palette, &count) != 0) {
    for (int i = 0; i < count; ++i) {
      result.palette.insert(result.palette.end(),
                            {palette[i].red, palette[i].green, palette[i].blue});
    }
  }
  png_bytep alpha = nullptr;
  if (png_get_tRNS(reading.png, reading.info, &alpha, &count, nullptr) != 0) {
    result.paletteAlpha.assign(alpha, alpha + count);
  }
  png_charp name = nullptr;
  int method = 0;
  png_bytep profile = nullptr;
  png_uint_32 size = 0;
  if (png_get_iCCP(reading.png, reading.info, &name, &method, &profile, &size) != 0) {
    result.iccProfile.assign(profile, profile + size);
  }
}

struct JpegReading {
  jpeg_decompress_struct info{};
  jpeg_error_mgr errors{};
  JpegReading() = default;
  JpegReading(const JpegReading&) = delete;
  JpegReading& operator=(const JpegReading&) = delete;
  ~JpegReading() { jpeg_destroy_decompress(&info); }
};

[[noreturn]] void throwJpegMessage(j_common_ptr info) {
  char message[JMSG_LENGTH_MAX];
  info->err->format_message(info, message);
  throw std::runtime_error(message);
}

void throwJpegWarning(j_common_ptr info, int level) {
  if (level < 0) throwJpegMessage(info);
}

std::vector<int> jpegMarkers(const std::vector<uint8_t>& file) {
  std::vector<int> markers;
  constexpr int kStartOfScan = 0xDA;
  for (size_t at = 2; markers.empty() || markers.back() != kStartOfScan;) {
    if (file.at(at) != 0xFF) throw std::runtime_error("no marker where one should be");
    markers.push_back(file.at(at + 1));
    at += 2 + bigEndianAt(file, at + 2, 2);
  }
  return markers;
}

}  // namespace

PngContents readPngFile(const std::filesystem::path& path) {
  const std::unique_ptr<std::FILE, int (*)(std::FILE*)> file(std::fopen(path.c_str(), "rb"),
                                                             std::fclose);
  if (!file) throw std::runtime_error("cannot read " + path.string());
  const PngReading reading;
  png_set_user_limits(reading.png, 0x7FFFFFFF, 0x7FFFFFFF);
  png_init_io(reading.png, file.get());
  png_read_info(reading.png, reading.info);
  PngContents result;
  result.width = png_get_image_width(reading.png, reading.info);
  result.height = png_get_image_height(reading.png, reading.info);
  result.bitDepth = png_get_bit_depth(reading.png, reading.info);
  result.colorType = png_get_color_type(reading.png, reading.info);
  readPngColor(reading, result);
  const size_t rowBytes = png_get_rowbytes(reading.png, reading.info);
  result.pixels.resize(rowBytes * result.height);
  for (size_t y = 0; y < result.height; ++y) {
    png_read_row(reading.png, result.pixels.data() + y * rowBytes, nullptr);
  }
  png_read_end(reading.png, nullptr);
  readChunks(bytesOf(path), result);
  return result;
}

JpegContents readJpegFile(const std::filesystem::path& path) {
  const std::vector<uint8_t> file = bytesOf(path);
  JpegReading reading;
  jpeg_decompress_struct& info = reading.info;
  info.err = jpeg_std_error(&reading.errors);
  reading.errors.error_exit = throwJpegMessage;
  reading.errors.emit_message = throwJpegWarning;
  jpeg_create_decompress(&info);
  jpeg_mem_src(&info, file.data(), static_cast<unsigned long>(file.size()));
  jpeg_save_markers(&info, JPEG_APP0 + 2, 0xFFFF);
  jpeg_read_header(&info, TRUE);
  JpegContents result;
  result.markers = jpegMarkers(file);
  result.hasAdobeMarker = info.saw_Adobe_marker != 0;
  result.isProgressive = info.progressive_mode != 0;
  result.chromaWidth = info.max_h_samp_factor;
  result.chromaHeight = info.max_v_samp_factor;
  if (info.saw_JFIF_marker != 0) {
    result.densityUnit = info.density_unit;
    result.densityX = info.X_density;
    result.densityY = info.Y_density;
  }
  JOCTET* profile = nullptr;
  unsigned size = 0;
  if (jpeg_read_icc_profile(&info, &profile, &size) != 0) {
    result.iccProfile.assign(profile, profile + size);
    std::free(profile);
  }
  jpeg_start_decompress(&info);
  result.width = static_cast<int>(info.output_width);
  result.height = static_cast<int>(info.output_height);
  result.channels = info.output_components;
  const size_t rowBytes = static_cast<size_t>(result.width) * static_cast<size_t>(result.channels);
  result.pixels.resize(rowBytes * static_cast<size_t>(result.height));
  while (info.output_scanline < info.output_height) {
    JSAMPROW row = result.pixels.data() + info.output_scanline * rowBytes;
    jpeg_read_scanlines(&info, &row, 1);
  }
  jpeg_finish_decompress(&info);
  return result;
}

}  // namespace vantrel::testing
