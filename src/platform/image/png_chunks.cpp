#include "platform/image/png_chunks.h"

#include <zlib.h>

#include <algorithm>
#include <array>
#include <limits>
#include <optional>
#include <string_view>
#include <vector>

#include "base/cancelled.h"
#include "platform/image/exif_orientation.h"
#include "platform/image/file_cursor.h"
#include "platform/image/image_reader.h"

namespace vantrel {
namespace {

constexpr uint64_t kSignature = 8;
// A chunk is its length, its type, its data, and its checksum.
constexpr size_t kChunkHeader = 8;
constexpr size_t kChecksum = 4;
constexpr uint32_t kLongestChunk = 0x7fffffff;
// A longer eXIf is passed over; the orientation is within the first bytes of any real one.
constexpr uint32_t kLongestExif = 4 << 20;
constexpr uint32_t kAnimationControlBytes = 8;

struct Chunk {
  uint32_t length;
  std::array<char, 4> name;

  [[nodiscard]] bool is(std::string_view other) const {
    return std::string_view(name.data(), name.size()) == other;
  }
};

// The header of the next chunk; absent at the end of the file or when it cannot be one.
std::optional<Chunk> nextChunk(FileCursor& cursor) {
  std::array<std::byte, kChunkHeader> header;
  if (!cursor.read(header)) return std::nullopt;
  const auto bytes = std::span(header);
  Chunk chunk{bigEndian(bytes.first(4)), {}};
  std::transform(bytes.begin() + 4, bytes.end(), chunk.name.begin(),
                 [](std::byte byte) { return static_cast<char>(byte); });
  if (chunk.length > kLongestChunk) return std::nullopt;
  return chunk;
}

// Reads the rest of a chunk eXIf. Absent when its checksum is wrong or it is too long.
std::optional<Orientation> readExif(FileCursor& cursor, const Chunk& chunk) {
  if (chunk.length > kLongestExif) {
    cursor.skip(uint64_t{chunk.length} + kChecksum);
    return std::nullopt;
  }
  std::vector<std::byte> data(chunk.length);
  std::array<std::byte, kChecksum> checksum;
  if (!cursor.read(data) || !cursor.read(checksum)) return std::nullopt;
  uLong crc = crc32(0, reinterpret_cast<const Bytef*>(chunk.name.data()), 4);
  crc = crc32(crc, reinterpret_cast<const Bytef*>(data.data()), chunk.length);
  if (crc != bigEndian(checksum)) return std::nullopt;
  return exifOrientation(data);
}

}  // namespace

int pngImageCount(const ReadOnlyFile& file, const std::stop_token& stop) {
  FileCursor cursor(file);
  cursor.skip(kSignature);
  while (const std::optional<Chunk> chunk = nextChunk(cursor)) {
    throwIfCancelled(stop);
    if (chunk->is("IDAT") || chunk->is("IEND")) break;
    if (chunk->is("acTL") && chunk->length == kAnimationControlBytes) {
      std::array<std::byte, 4> frames;
      if (!cursor.read(frames)) break;
      const uint32_t count = bigEndian(frames);
      return static_cast<int>(std::clamp<uint32_t>(count, 1, std::numeric_limits<int>::max()));
    }
    cursor.skip(uint64_t{chunk->length} + kChecksum);
  }
  return 1;
}

PngChunks PngChunks::scan(const ReadOnlyFile& file, const std::stop_token& stop) {
  FileCursor cursor(file);
  cursor.skip(kSignature);
  PngChunks result;
  std::optional<Orientation> orientation;
  for (;;) {
    throwIfCancelled(stop);
    const std::optional<Chunk> chunk = nextChunk(cursor);
    if (!chunk || cursor.position() + chunk->length + kChecksum > file.size()) throw ImageDamaged();
    if (chunk->is("IEND")) break;
    if (chunk->is("IDAT")) result.imageBytes += chunk->length;
    if (chunk->is("eXIf") && !orientation) {
      orientation = readExif(cursor, *chunk);
    } else {
      cursor.skip(uint64_t{chunk->length} + kChecksum);
    }
  }
  result.orientation = orientation.value_or(Orientation::TopLeft);
  return result;
}

}  // namespace vantrel
