#include "platform/movie/container_extent.h"

#include <array>
#include <cstdint>
#include <span>

#include "platform/movie/box_bytes.h"
#include "platform/movie/box_file.h"
#include "platform/movie/matroska_number.h"

namespace vantrel {
namespace {

bool matroskaIsWhole(BoxFile& file) {
  constexpr uint64_t kSegment = 0x18538067;
  for (uint64_t offset = 0; offset < file.size();) {
    const auto id = MatroskaNumber::read(file, offset);
    if (!id) return true;
    const uint64_t sizeAt = offset + static_cast<uint64_t>(id->length);
    const auto size = MatroskaNumber::read(file, sizeAt);
    if (!size) return false;
    if (size->isUnknown()) return true;
    offset = sizeAt + static_cast<uint64_t>(size->length) + size->value;
    if (id->marked == kSegment) return offset <= file.size();
  }
  return true;
}

/// Long files are several chunks in a row ("OpenDML AVI File Format Extensions", 1996).
bool riffIsWhole(BoxFile& file) {
  constexpr uint64_t kHeader = 8;
  std::array<uint8_t, kHeader> header{};
  for (uint64_t offset = 0; file.read(offset, header);) {
    if (ByteCursor(header).u32() != fourCC("RIFF")) return true;
    // Little-endian.
    const uint64_t size = uint64_t{header[7]} << 24 | header[6] << 16 | header[5] << 8 | header[4];
    // A writer that was cut off has left what it began with.
    if (size == 0 || size == UINT32_MAX) return true;
    offset += kHeader + size;
    if (offset > file.size()) return false;
    offset += size % 2;
  }
  return true;
}

constexpr uint64_t kTransportPacket = 188;
constexpr uint8_t kTransportSync = 0x47;

/// Whether a packet begins at `offset`, as those before it do.
bool isTransportPacket(BoxFile& file, uint64_t offset, uint64_t stride) {
  constexpr uint64_t kPacketsBefore = 8;
  for (uint64_t packet = 0; packet <= kPacketsBefore; ++packet) {
    std::array<uint8_t, 1> byte{};
    if (packet * stride > offset || !file.read(offset - packet * stride, byte)) return false;
    if (byte[0] != kTransportSync) return false;
  }
  return true;
}

}  // namespace

bool transportIsWhole(const std::filesystem::path& path) {
  BoxFile file(path);
  // Alone, behind a time stamp, and before its check bytes.
  for (const uint64_t stride : {kTransportPacket, kTransportPacket + 4, kTransportPacket + 16}) {
    for (uint64_t left = 1; left < kTransportPacket && left <= file.size(); ++left) {
      if (isTransportPacket(file, file.size() - left, stride)) return false;
    }
  }
  return true;
}

bool containerIsWhole(const std::filesystem::path& path) {
  BoxFile file(path);
  std::array<uint8_t, 4> bytes{};
  if (!file.read(0, bytes)) return true;
  constexpr uint32_t kEbml = 0x1A45DFA3;
  const uint32_t type = ByteCursor(bytes).u32();
  if (type == kEbml) return matroskaIsWhole(file);
  return type != fourCC("RIFF") || riffIsWhole(file);
}

}  // namespace vantrel
