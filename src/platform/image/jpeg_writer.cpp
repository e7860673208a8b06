#include <csetjmp>
#include <cstdio>
// libjpeg's header needs FILE and size_t and includes neither.
#include <jpeglib.h>

#include <jerror.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <new>
#include <stdexcept>
#include <string>
#include <system_error>
#include <vector>

#include "base/cancelled.h"
#include "platform/image/image_writer.h"
#include "platform/image/output_file.h"
#include "platform/image/pixel_conversion.h"

namespace vantrel {
namespace {

/// From this quality upwards colours keep their full resolution.
constexpr double kFullColorQuality = 0.9;
/// Rows are converted and handed to the encoder in bands of this size, at least one row.
constexpr size_t kBandBytes = size_t{256} << 10;
/// The largest profile that APP2 markers can hold (ICC.1:2022, B.4): 255 parts of 65,519 bytes.
constexpr size_t kMostProfileBytes = size_t{255} * 65519;

/// libjpeg with its errors as exceptions and an OutputFile behind it. libjpeg leaves by longjmp, so
/// every function that calls it does nothing else and has nothing to destroy.
class JpegCompressor {
 public:
  explicit JpegCompressor(OutputFile& file);
  ~JpegCompressor() { jpeg_destroy_compress(&m_info); }
  JpegCompressor(const JpegCompressor&) = delete;
  JpegCompressor& operator=(const JpegCompressor&) = delete;

  void start(int64_t width, int64_t height, ColorModel model, double quality);
  void writeProfile(const std::vector<uint8_t>& iccProfile);
  void writeRows(JSAMPARRAY rows, int count);
  void finish();

 private:
  static constexpr size_t kBufferBytes = size_t{64} << 10;

  static JpegCompressor& of(j_common_ptr info) {
    return *static_cast<JpegCompressor*>(info->client_data);
  }
  [[noreturn]] static void leave(j_common_ptr info) { std::longjmp(of(info).m_leave, 1); }
  static void ignoreMessage(j_common_ptr, int) {}
  static void startOutput(j_compress_ptr info);
  static boolean writeBuffer(j_compress_ptr info);
  static void endOutput(j_compress_ptr info);

  void refillBuffer();
  void send(size_t size);
  [[noreturn]] void fail();

  OutputFile& m_file;
  jpeg_compress_struct m_info{};
  jpeg_error_mgr m_errors{};
  jpeg_destination_mgr m_output{};
  std::jmp_buf m_leave{};
  std::error_code m_writeError;
  std::vector<JOCTET> m_buffer;
};

JpegCompressor::JpegCompressor(OutputFile& file) : m_file(file), m_buffer(kBufferBytes) {
  m_info.err = jpeg_std_error(&m_errors);
  m_errors.error_exit = leave;
  m_errors.emit_message = ignoreMessage;
  m_info.client_data = this;
  m_output.init_destination = startOutput;
  m_output.empty_output_buffer = writeBuffer;
  m_output.term_destination = endOutput;
  if (setjmp(m_leave) != 0) fail();
  jpeg_create_compress(&m_info);
  m_info.dest = &m_output;
}

void JpegCompressor::start(int64_t width, int64_t height, ColorModel model, double quality) {
  if (setjmp(m_leave) != 0) fail();
  m_info.image_width = static_cast<JDIMENSION>(width);
  m_info.image_height = static_cast<JDIMENSION>(height);
  m_info.in_color_space = JCS_RGB;
  if (model == ColorModel::Gray) m_info.in_color_space = JCS_GRAYSCALE;
  if (model == ColorModel::Cmyk) m_info.in_color_space = JCS_CMYK;
  m_info.input_components = model == ColorModel::Gray ? 1 : model == ColorModel::Cmyk ? 4 : 3;
  jpeg_set_defaults(&m_info);
  jpeg_set_quality(&m_info, static_cast<int>(std::lround(quality * 100)), TRUE);
  if (model == ColorModel::Rgb && quality >= kFullColorQuality) {
    m_info.comp_info[0].h_samp_factor = 1;
    m_info.comp_info[0].v_samp_factor = 1;
  }
  jpeg_start_compress(&m_info, TRUE);
}

void JpegCompressor::writeProfile(const std::vector<uint8_t>& iccProfile) {
  if (setjmp(m_leave) != 0) fail();
  jpeg_write_icc_profile(&m_info, iccProfile.data(), static_cast<unsigned>(iccProfile.size()));
}

void JpegCompressor::writeRows(JSAMPARRAY rows, int count) {
  if (setjmp(m_leave) != 0) fail();
  jpeg_write_scanlines(&m_info, rows, static_cast<JDIMENSION>(count));
}

void JpegCompressor::finish() {
  if (setjmp(m_leave) != 0) fail();
  jpeg_finish_compress(&m_info);
}

void JpegCompressor::startOutput(j_compress_ptr info) {
  of(reinterpret_cast<j_common_ptr>(info)).refillBuffer();
}

boolean JpegCompressor::writeBuffer(j_compress_ptr info) {
  JpegCompressor& self = of(reinterpret_cast<j_common_ptr>(info));
  self.send(kBufferBytes);
  self.refillBuffer();
  return TRUE;
}

void JpegCompressor::endOutput(j_compress_ptr info) {
  JpegCompressor& self = of(reinterpret_cast<j_common_ptr>(info));
  self.send(kBufferBytes - self.m_output.free_in_buffer);
}

void JpegCompressor::refillBuffer() {
  m_output.next_output_byte = m_buffer.data();
  m_output.free_in_buffer = kBufferBytes;
}

void JpegCompressor::send(size_t size) {
  m_writeError = m_file.tryWrite(m_buffer.data(), size);
  if (m_writeError) std::longjmp(m_leave, 1);
}

void JpegCompressor::fail() {
  if (m_writeError) throw std::system_error(m_writeError);
  if (m_errors.msg_code == JERR_OUT_OF_MEMORY) throw std::bad_alloc();
  std::array<char, JMSG_LENGTH_MAX> message{};
  m_errors.format_message(reinterpret_cast<j_common_ptr>(&m_info), message.data());
  throw std::runtime_error(message.data());
}

/// Adobe's inverted ink, which is what every reader expects of a JPEG: 255 is bare paper.
void invert(std::vector<uint8_t>& samples) {
  for (uint8_t& sample : samples)
    sample = static_cast<uint8_t>(~sample);
}

void writeBands(JpegCompressor& jpeg, const PixelConversion& conversion, const Bitmap& bitmap,
                const PixelRect& area, const std::stop_token& stop) {
  const PixelLayout& layout = conversion.layout();
  const size_t rowBytes = static_cast<size_t>(area.width * layout.bytesPerPixel());
  const auto bandRows =
      std::clamp<int64_t>(static_cast<int64_t>(kBandBytes / rowBytes), 1, area.height);
  std::vector<uint8_t> band(rowBytes * static_cast<size_t>(bandRows));
  std::vector<JSAMPROW> rows;
  for (int64_t first = 0; first < area.height; first += bandRows) {
    throwIfCancelled(stop);
    const int64_t count = std::min(bandRows, area.height - first);
    rows.clear();
    for (int64_t i = 0; i < count; ++i) {
      uint8_t* row = band.data() + static_cast<size_t>(i) * rowBytes;
      conversion.convert(bitmap.pixel(area.x, area.y + first + i),
                         reinterpret_cast<std::byte*>(row), area.width);
      rows.push_back(row);
    }
    if (layout.model == ColorModel::Cmyk) invert(band);
    jpeg.writeRows(rows.data(), static_cast<int>(count));
  }
}

}  // namespace

void writeJpeg(const Bitmap& bitmap, const PixelRect& area, const std::filesystem::path& path,
               double quality, const std::array<double, 3>& background,
               const std::stop_token& stop) {
  throwIfCancelled(stop);
  if (std::max(area.width, area.height) > JPEG_MAX_DIMENSION) {
    throw std::length_error("A JPEG has at most 65500 pixels on a side");
  }
  const PixelConversion conversion = PixelConversion::forJpeg(bitmap, background);
  const std::vector<uint8_t>& profile = conversion.iccProfile();
  if (profile.size() > kMostProfileBytes) {
    throw std::length_error("The colour profile is too large for a JPEG");
  }
  // What is not a number fails the test and counts as 0.
  const double bounded = quality > 0 ? std::min(quality, 1.0) : 0.0;

  OutputFile file(path);
  JpegCompressor jpeg(file);
  jpeg.start(area.width, area.height, conversion.layout().model, bounded);
  if (!profile.empty()) jpeg.writeProfile(profile);
  writeBands(jpeg, conversion, bitmap, area, stop);
  jpeg.finish();
  file.close();
}

}  // namespace vantrel
