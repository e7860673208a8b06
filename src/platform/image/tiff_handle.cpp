#include "platform/image/tiff_handle.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <limits>
#include <new>
#include <span>

namespace vantrel {
namespace {

// Most that libtiff may take at once: compressed data is never larger than the file, and a list of
// offsets at most four times as large as in the file.
tmsize_t mostAtOnce(uint64_t fileSize) {
  constexpr uint64_t kAlways = uint64_t{64} << 20;
  constexpr auto kMost = static_cast<uint64_t>(std::numeric_limits<tmsize_t>::max());
  return static_cast<tmsize_t>(std::min(kMost, kAlways + 4 * std::min(fileSize, kMost / 8)));
}

}  // namespace

TiffHandle::TiffHandle(const ReadOnlyFile& file) : m_file(file) {
  struct FreeOptions {
    void operator()(TIFFOpenOptions* options) const { TIFFOpenOptionsFree(options); }
  };
  const std::unique_ptr<TIFFOpenOptions, FreeOptions> options(TIFFOpenOptionsAlloc());
  if (!options) throw std::bad_alloc();
  TIFFOpenOptionsSetMaxSingleMemAlloc(options.get(), mostAtOnce(file.size()));
  TIFFOpenOptionsSetErrorHandlerExtR(options.get(), takeError, this);
  TIFFOpenOptionsSetWarningHandlerExtR(
      options.get(), [](TIFF*, void*, const char*, const char*, va_list) { return 1; }, nullptr);

  const auto refuseWrite = [](thandle_t, void*, tmsize_t) -> tmsize_t { return -1; };
  const auto close = [](thandle_t) { return 0; };
  const auto size = [](thandle_t self) -> toff_t {
    return static_cast<TiffHandle*>(self)->m_file.size();
  };
  // Read, and not mapped: a mapped file that someone cuts off ends the process.
  m_tiff.reset(TIFFClientOpenExt("", "rm", this, read, refuseWrite, seek, close, size, nullptr,
                                 nullptr, options.get()));
}

uint16_t TiffHandle::rawShort(uint16_t tag) const {
  const bool big = TIFFIsBigTIFF(get());
  const bool bigEndian = TIFFIsBigEndian(get());
  const size_t countBytes = big ? 8 : 2;
  const size_t entryBytes = big ? 20 : 12;
  const auto shortAt = [bigEndian](const std::byte* from) {
    const auto high = std::to_integer<uint16_t>(from[bigEndian ? 0 : 1]);
    const auto low = std::to_integer<uint16_t>(from[bigEndian ? 1 : 0]);
    return static_cast<uint16_t>(high << 8 | low);
  };
  // A directory has at most 65535 entries, so that of a long count only two bytes matter.
  std::array<std::byte, 20> buffer{};
  uint64_t position = TIFFCurrentDirOffset(get());
  if (m_file.read(position, std::span(buffer).first(countBytes)) != countBytes) return 0;
  uint16_t entries = shortAt(buffer.data() + (big && bigEndian ? 6 : 0));
  for (position += countBytes; entries > 0; --entries, position += entryBytes) {
    if (m_file.read(position, std::span(buffer).first(entryBytes)) != entryBytes) return 0;
    if (shortAt(buffer.data()) == tag && shortAt(buffer.data() + 2) == TIFF_SHORT) {
      return shortAt(buffer.data() + (big ? 12 : 8));
    }
    if (shortAt(buffer.data()) > tag) return 0;  // entries stand in order
  }
  return 0;
}

tmsize_t TiffHandle::read(thandle_t self, void* to, tmsize_t size) {
  auto* handle = static_cast<TiffHandle*>(self);
  if (size < 0) return -1;
  const size_t count = handle->m_file.read(
      handle->m_position, {static_cast<std::byte*>(to), static_cast<size_t>(size)});
  handle->m_position += count;
  return static_cast<tmsize_t>(count);
}

toff_t TiffHandle::seek(thandle_t self, toff_t offset, int origin) {
  auto* handle = static_cast<TiffHandle*>(self);
  switch (origin) {
    case SEEK_CUR:
      offset += handle->m_position;
      break;
    case SEEK_END:
      offset += handle->m_file.size();
      break;
    default:
      break;
  }
  handle->m_position = offset;
  return offset;
}

int TiffHandle::takeError(TIFF*, void* self, const char*, const char*, va_list) {
  static_cast<TiffHandle*>(self)->m_failed = true;
  return 1;  // handled: the process-wide handler is not asked
}

}  // namespace vantrel
