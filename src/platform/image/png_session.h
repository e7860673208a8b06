#pragma once

// For png_reader.cpp alone: the includes below are libpng's.
#include <png.h>

#include <csetjmp>
#include <stop_token>
#include <type_traits>

#include "platform/image/decode_end.h"
#include "platform/image/file_cursor.h"

namespace vantrel {

/// A libpng decoder over a file. Every error of libpng, and every complaint about image data, is
/// ImageDamaged. One thread.
class PngSession {
 public:
  /// Throws std::bad_alloc.
  PngSession(const ReadOnlyFile& file, std::stop_token stop);
  PngSession(const PngSession&) = delete;
  PngSession& operator=(const PngSession&) = delete;

  [[nodiscard]] png_structp png() const { return m_handles.png; }
  [[nodiscard]] png_infop info() const { return m_handles.info; }

  /// Runs `calls`, which call libpng. Errors of libpng jump out of them, so they must leave nothing
  /// behind that needs a destructor, and may not throw. Throws ImageDamaged, Cancelled or
  /// std::bad_alloc.
  template <class Calls>
  void guarded(const Calls& calls) {
    static_assert(std::is_trivially_destructible_v<Calls>);
    if (setjmp(png_jmpbuf(m_handles.png)) != 0) throwFor(m_end);
    calls();
  }

 private:
  struct Handles {
    png_structp png = nullptr;
    png_infop info = nullptr;

    Handles() = default;
    ~Handles() { png_destroy_read_struct(&png, &info, nullptr); }
    Handles(const Handles&) = delete;
    Handles& operator=(const Handles&) = delete;
  };

  static void onError(png_structp png, png_const_charp message);
  static void onWarning(png_structp png, png_const_charp message);
  static void onRead(png_structp png, png_bytep to, size_t count);
  static png_voidp allocate(png_structp png, png_alloc_size_t size);
  static void release(png_structp png, png_voidp memory);

  FileCursor m_cursor;
  std::stop_token m_stop;
  DecodeEnd m_end = DecodeEnd::Damaged;
  Handles m_handles;
};

}  // namespace vantrel
