#pragma once

// For png_reader.cpp alone: the includes below are libpng's.
#include <png.h>

#include <csetjmp>
#include <type_traits>

#include "platform/image/file_cursor.h"
#include "platform/image/image_reader.h"

namespace vantrel {

/// A libpng decoder over a file. Every error of libpng, and every complaint about image data, is
/// ImageDamaged. One thread.
class PngSession {
 public:
  /// Throws std::bad_alloc.
  explicit PngSession(const ReadOnlyFile& file);
  ~PngSession();
  PngSession(const PngSession&) = delete;
  PngSession& operator=(const PngSession&) = delete;

  [[nodiscard]] png_structp png() const { return m_png; }
  [[nodiscard]] png_infop info() const { return m_info; }

  /// Runs `calls`, which call libpng. Errors of libpng jump out of them, so they must leave nothing
  /// behind that needs a destructor, and may not throw. Throws ImageDamaged or std::bad_alloc.
  template <class Calls>
  void guarded(const Calls& calls) {
    static_assert(std::is_trivially_destructible_v<Calls>);
    if (setjmp(png_jmpbuf(m_png)) != 0) throwError();
    calls();
  }

 private:
  [[noreturn]] void throwError() const;
  static void onError(png_structp png, png_const_charp message);
  static void onWarning(png_structp png, png_const_charp message);
  static void onRead(png_structp png, png_bytep to, size_t count);
  static png_voidp allocate(png_structp png, png_alloc_size_t size);
  static void release(png_structp png, png_voidp memory);

  FileCursor m_cursor;
  bool m_outOfMemory = false;
  png_structp m_png = nullptr;
  png_infop m_info = nullptr;
};

}  // namespace vantrel
