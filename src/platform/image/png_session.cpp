#include "platform/image/png_session.h"

#include <array>
#include <cstdlib>
#include <new>
#include <string_view>
#include <utility>

namespace vantrel {
namespace {

// Most memory that one chunk outside the image data may take, a compressed profile included.
constexpr png_alloc_size_t kMostChunkBytes = 16 << 20;
constexpr png_uint_32 kMostSide = PNG_UINT_31_MAX;

// Chunks that say nothing about the pixels; they are passed over without being stored.
constexpr std::array<char[5], 15> kIgnored = {"bKGD", "cICP", "eXIf", "hIST", "iTXt",
                                              "oFFs", "pCAL", "pHYs", "sBIT", "sCAL",
                                              "sPLT", "sTER", "tEXt", "tIME", "zTXt"};
static_assert(sizeof(kIgnored) == kIgnored.size() * 5, "libpng takes names of five bytes each");

}  // namespace

PngSession::PngSession(const ReadOnlyFile& file, std::stop_token stop)
    : m_cursor(file), m_stop(std::move(stop)) {
  m_handles.png = png_create_read_struct_2(PNG_LIBPNG_VER_STRING, this, onError, onWarning, this,
                                           allocate, release);
  m_handles.info = png() ? png_create_info_struct(png()) : nullptr;
  if (!info()) throw std::bad_alloc();
  png_set_read_fn(png(), this, onRead);
  png_set_user_limits(png(), kMostSide, kMostSide);
  png_set_chunk_malloc_max(png(), kMostChunkBytes);
  png_set_check_for_invalid_index(png(), 0);
  guarded([this] {
    png_set_keep_unknown_chunks(png(), PNG_HANDLE_CHUNK_NEVER,
                                reinterpret_cast<png_const_bytep>(kIgnored.data()),
                                static_cast<int>(kIgnored.size()));
  });
}

void PngSession::onError(png_structp png, png_const_charp) {
  png_longjmp(png, 1);
}

void PngSession::onWarning(png_structp png, png_const_charp message) {
  // Data after the last row harms nothing; anything else about IDAT, a wrong checksum of the
  // deflate stream for one, means that pixels may be wrong.
  const std::string_view text = message;
  const bool harmless =
      text == "IDAT: Extra compressed data" || text == "IDAT: Too much image data";
  if (text.starts_with("IDAT:") && !harmless) png_longjmp(png, 1);
}

void PngSession::onRead(png_structp png, png_bytep to, size_t count) {
  auto* session = static_cast<PngSession*>(png_get_io_ptr(png));
  if (session->m_stop.stop_requested()) {
    session->m_end = DecodeEnd::Cancelled;
    png_longjmp(png, 1);
  }
  if (!session->m_cursor.read({reinterpret_cast<std::byte*>(to), count})) png_longjmp(png, 1);
}

png_voidp PngSession::allocate(png_structp png, png_alloc_size_t size) {
  void* const memory = std::malloc(size);
  if (!memory) static_cast<PngSession*>(png_get_mem_ptr(png))->m_end = DecodeEnd::OutOfMemory;
  return memory;
}

void PngSession::release(png_structp, png_voidp memory) {
  std::free(memory);
}

}  // namespace vantrel
