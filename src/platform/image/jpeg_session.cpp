#include "platform/image/jpeg_session.h"

#include <jerror.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <utility>

namespace vantrel {
namespace {

// Each scan of a progressive file visits the whole picture, though it may take a few bytes only. No
// encoder makes more scans than the first number; large pictures may have those that come within
// the second, in pixels visited, and the third in any case.
constexpr int64_t kMostScans = 500;
constexpr int64_t kMostVisits = int64_t{1} << 34;
constexpr int64_t kScansOfAnySize = 50;

// Warnings after which the pixels are right all the same: padding between segments, headers that
// are wrong in what does not matter.
constexpr std::array kHarmless = {
    static_cast<int>(JWRN_EXTRANEOUS_DATA), static_cast<int>(JWRN_ADOBE_XFORM),
    static_cast<int>(JWRN_JFIF_MAJOR), static_cast<int>(JWRN_NOT_SEQUENTIAL)};

int64_t mostScans(const jpeg_decompress_struct& decoder) {
  const int64_t pixels = int64_t{decoder.image_width} * decoder.image_height;
  return std::clamp(kMostVisits / std::max<int64_t>(pixels, 1), kScansOfAnySize, kMostScans);
}

void doNothing(j_decompress_ptr) {}
void sayNothing(j_common_ptr) {}

}  // namespace

JpegSession::JpegSession(const ReadOnlyFile& file, std::stop_token stop)
    : m_cursor(file), m_stop(std::move(stop)) {
  m_decoder.err = jpeg_std_error(&m_errors);
  m_decoder.client_data = this;
  m_errors.error_exit = onError;
  m_errors.emit_message = onMessage;
  m_errors.output_message = sayNothing;
  guarded([this] { jpeg_create_decompress(&m_decoder); });
  m_source.init_source = doNothing;
  m_source.fill_input_buffer = fillInput;
  m_source.skip_input_data = skipInput;
  m_source.resync_to_restart = jpeg_resync_to_restart;
  m_source.term_source = doNothing;
  m_decoder.src = &m_source;
  m_progress.progress_monitor = onProgress;
  m_decoder.progress = &m_progress;
}

JpegSession::~JpegSession() {
  jpeg_destroy_decompress(&m_decoder);
}

void JpegSession::leave(DecodeEnd end) {
  m_end = end;
  std::longjmp(m_jump, 1);
}

JpegSession& JpegSession::of(j_common_ptr decoder) {
  return *static_cast<JpegSession*>(decoder->client_data);
}

void JpegSession::onError(j_common_ptr decoder) {
  const bool memory = decoder->err->msg_code == JERR_OUT_OF_MEMORY;
  of(decoder).leave(memory ? DecodeEnd::OutOfMemory : DecodeEnd::Damaged);
}

void JpegSession::onMessage(j_common_ptr decoder, int level) {
  // Messages of a level from 0 up are trace output.
  if (level >= 0) return;
  const bool harmless =
      std::find(kHarmless.begin(), kHarmless.end(), decoder->err->msg_code) != kHarmless.end();
  if (!harmless) of(decoder).leave(DecodeEnd::Damaged);
}

void JpegSession::onProgress(j_common_ptr decoder) {
  JpegSession& session = of(decoder);
  if (session.m_stop.stop_requested()) session.leave(DecodeEnd::Cancelled);
  if (session.m_decoder.input_scan_number > mostScans(session.m_decoder)) {
    session.leave(DecodeEnd::Damaged);
  }
}

boolean JpegSession::fillInput(j_decompress_ptr decoder) {
  JpegSession& session = of(reinterpret_cast<j_common_ptr>(decoder));
  if (session.m_stop.stop_requested()) session.leave(DecodeEnd::Cancelled);
  const std::span<const std::byte> ready = session.m_cursor.peek();
  if (ready.empty()) session.leave(DecodeEnd::Damaged);
  session.m_source.next_input_byte = reinterpret_cast<const JOCTET*>(ready.data());
  session.m_source.bytes_in_buffer = ready.size();
  session.m_cursor.skip(ready.size());
  return TRUE;
}

void JpegSession::skipInput(j_decompress_ptr decoder, long count) {
  JpegSession& session = of(reinterpret_cast<j_common_ptr>(decoder));
  if (count <= 0) return;
  const size_t inBuffer = std::min(static_cast<size_t>(count), session.m_source.bytes_in_buffer);
  session.m_source.next_input_byte += inBuffer;
  session.m_source.bytes_in_buffer -= inBuffer;
  session.m_cursor.skip(static_cast<uint64_t>(count) - inBuffer);
}

}  // namespace vantrel
