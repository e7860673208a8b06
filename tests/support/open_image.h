#pragma once

#include <cstring>
#include <filesystem>
#include <stdexcept>
#include <string>

#include "platform/image/image_reader.h"
#include "support/image_makers.h"
#include "support/temporary_folder.h"

namespace vantrel::testing {

/// An image file in a folder of its own, and a reader on it.
class OpenImage {
 public:
  explicit OpenImage(const Bytes& bytes) {
    saveBytes(path(), bytes);
    m_reader = ImageReader::open(path());
    if (!m_reader) throw std::runtime_error("the file is of no known type");
  }

  [[nodiscard]] std::filesystem::path path() const { return m_folder / "image"; }
  [[nodiscard]] ImageReader& reader() { return *m_reader; }

 private:
  TemporaryFolder m_folder;
  std::unique_ptr<ImageReader> m_reader;
};

[[nodiscard]] inline Bitmap decodeBytes(const Bytes& bytes) {
  return OpenImage(bytes).reader().decode({});
}

/// A sample of an integer format.
[[nodiscard]] inline int sampleAt(const Bitmap& bitmap, int64_t x, int64_t y, int channel) {
  const std::byte* const pixel = bitmap.pixel(x, y);
  if (bitmap.layout().sample == SampleFormat::UInt8) return std::to_integer<int>(pixel[channel]);
  uint16_t value = 0;
  std::memcpy(&value, pixel + 2 * channel, sizeof value);
  return value;
}

}  // namespace vantrel::testing
