#include "platform/image/png_chunk_writer.h"

#include <zlib.h>

#include <algorithm>
#include <array>

namespace vantrel {
namespace {

constexpr size_t kImageDataBytes = size_t{256} << 10;

}  // namespace

PngChunkWriter::PngChunkWriter(OutputFile& file) : m_file(file) {
  m_imageData.reserve(kImageDataBytes);
}

void PngChunkWriter::writeSignature() {
  constexpr std::array<uint8_t, 8> signature{0x89, 'P', 'N', 'G', '\r', '\n', 0x1A, '\n'};
  m_file.write(signature.data(), signature.size());
}

void PngChunkWriter::write(std::string_view type, std::span<const uint8_t> data) {
  const auto length = bigEndian(static_cast<uint32_t>(data.size()));
  const auto* letters = reinterpret_cast<const Bytef*>(type.data());
  uLong checksum = crc32_z(0, letters, type.size());
  // For zlib a null pointer, which an empty span may have, means a fresh start.
  if (!data.empty()) checksum = crc32_z(checksum, data.data(), data.size());
  const auto crc = bigEndian(static_cast<uint32_t>(checksum));
  m_file.write(length.data(), length.size());
  m_file.write(type.data(), type.size());
  m_file.write(data.data(), data.size());
  m_file.write(crc.data(), crc.size());
}

void PngChunkWriter::addImageData(std::span<const uint8_t> data) {
  while (!data.empty()) {
    const size_t part = std::min(data.size(), kImageDataBytes - m_imageData.size());
    m_imageData.insert(m_imageData.end(), data.begin(),
                       data.begin() + static_cast<ptrdiff_t>(part));
    data = data.subspan(part);
    if (m_imageData.size() == kImageDataBytes) flushImageData();
  }
}

void PngChunkWriter::endImageData() {
  if (!m_imageData.empty()) flushImageData();
}

void PngChunkWriter::flushImageData() {
  write("IDAT", m_imageData);
  m_imageData.clear();
}

}  // namespace vantrel
