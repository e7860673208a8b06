#pragma once

// For jpeg_reader.cpp alone: jpeglib.h needs <cstdio> before it.
#include <cstdio>
//
#include <jpeglib.h>

#include <csetjmp>
#include <stop_token>
#include <type_traits>

#include "platform/image/decode_end.h"
#include "platform/image/file_cursor.h"

namespace vantrel {

/// A libjpeg decoder over a file. Every error of libjpeg is ImageDamaged, and so is every warning
/// but those that leave the pixels right. One thread.
class JpegSession {
 public:
  /// Throws std::bad_alloc.
  JpegSession(const ReadOnlyFile& file, std::stop_token stop);
  ~JpegSession();
  JpegSession(const JpegSession&) = delete;
  JpegSession& operator=(const JpegSession&) = delete;

  [[nodiscard]] jpeg_decompress_struct& decoder() { return m_decoder; }

  /// Runs `calls`, which call libjpeg. Errors of libjpeg jump out of them, so they must leave
  /// nothing behind that needs a destructor, and may not throw. Throws ImageDamaged, Cancelled or
  /// std::bad_alloc.
  template <class Calls>
  void guarded(const Calls& calls) {
    static_assert(std::is_trivially_destructible_v<Calls>);
    if (setjmp(m_jump) != 0) throwFor(m_end);
    calls();
  }

 private:
  [[noreturn]] void leave(DecodeEnd end);
  static JpegSession& of(j_common_ptr decoder);
  static void onError(j_common_ptr decoder);
  static void onMessage(j_common_ptr decoder, int level);
  static void onProgress(j_common_ptr decoder);
  static boolean fillInput(j_decompress_ptr decoder);
  static void skipInput(j_decompress_ptr decoder, long count);

  FileCursor m_cursor;
  std::stop_token m_stop;
  std::jmp_buf m_jump{};
  DecodeEnd m_end = DecodeEnd::Damaged;
  jpeg_error_mgr m_errors{};
  jpeg_source_mgr m_source{};
  jpeg_progress_mgr m_progress{};
  jpeg_decompress_struct m_decoder{};
};

}  // namespace vantrel
