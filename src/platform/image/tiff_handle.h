#pragma once

// Private to this folder: a file opened by libtiff, with errors of its own.

#include <tiffio.h>

#include <cstdint>
#include <memory>

#include "platform/image/read_only_file.h"

namespace vantrel {

/// Opens a file for libtiff. Several handles may read one file at once; each keeps its own position
/// and its own errors, and nothing is printed. One thread.
class TiffHandle {
 public:
  /// `file` must outlive the handle.
  explicit TiffHandle(const ReadOnlyFile& file);
  TiffHandle(const TiffHandle&) = delete;
  TiffHandle& operator=(const TiffHandle&) = delete;

  /// Null when the first directory cannot be read.
  [[nodiscard]] TIFF* get() const { return m_tiff.get(); }
  /// True when libtiff has reported an error, even one after which it went on.
  [[nodiscard]] bool hasFailed() const { return m_failed; }
  void forgetFailure() { m_failed = false; }

  /// The value of a tag with its default, `absent` when it has neither.
  template <typename Value>
  [[nodiscard]] Value field(uint32_t tag, Value absent) const {
    Value value{};
    return TIFFGetFieldDefaulted(get(), tag, &value) ? value : absent;
  }
  /// The value of a tag of type SHORT in the current directory, read without libtiff; 0 when it is
  /// not there.
  [[nodiscard]] uint16_t rawShort(uint16_t tag) const;

 private:
  struct Close {
    void operator()(TIFF* tiff) const { TIFFClose(tiff); }
  };

  static tmsize_t read(thandle_t self, void* to, tmsize_t size);
  static toff_t seek(thandle_t self, toff_t offset, int origin);
  static int takeError(TIFF* tiff, void* self, const char* module, const char* format,
                       va_list arguments);

  const ReadOnlyFile& m_file;
  uint64_t m_position = 0;
  bool m_failed = false;
  std::unique_ptr<TIFF, Close> m_tiff;
};

}  // namespace vantrel
