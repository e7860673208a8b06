#include "platform/image/jpeg_markers.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <iterator>
#include <optional>
#include <span>
#include <string_view>

#include "base/cancelled.h"
#include "platform/image/exif_orientation.h"
#include "platform/image/file_cursor.h"

namespace vantrel {
namespace {

using namespace std::string_view_literals;

// Second bytes of markers (T.81, table B.1).
constexpr uint8_t kTem = 0x01, kRst0 = 0xd0, kSoi = 0xd8, kEoi = 0xd9, kSos = 0xda, kApp1 = 0xe1,
                  kApp2 = 0xe2;

constexpr auto kExifName = "Exif\0\0"sv;
constexpr auto kIccName = "ICC_PROFILE\0"sv;
// Number and count follow the name of a profile's segment.
constexpr size_t kIccHeader = kIccName.size() + 2;

// Bytes between two looks at the stop token.
constexpr uint64_t kBytesBetweenStops = 64 << 10;

std::optional<uint8_t> nextByte(FileCursor& cursor) {
  std::array<std::byte, 1> byte;
  if (!cursor.read(byte)) return std::nullopt;
  return std::to_integer<uint8_t>(byte[0]);
}

// The next marker, past anything that is none; absent at the end of the file. Throws Cancelled.
std::optional<uint8_t> nextMarker(FileCursor& cursor, const std::stop_token& stop) {
  bool afterFill = false;
  for (uint64_t count = 0;; ++count) {
    if (count % kBytesBetweenStops == 0) throwIfCancelled(stop);
    const std::optional<uint8_t> byte = nextByte(cursor);
    if (!byte || (afterFill && *byte != 0xff && *byte != 0)) return byte;
    afterFill = *byte == 0xff;
  }
}

// Whether no length and no content follow.
bool standsAlone(uint8_t marker) {
  return marker == kTem || (marker >= kRst0 && marker <= kSoi);
}

bool beginsWith(std::span<const std::byte> segment, std::string_view name) {
  return segment.size() >= name.size() &&
         std::memcmp(segment.data(), name.data(), name.size()) == 0;
}

/// The parts of a profile, which is cut up because a segment holds less than 64 KiB.
class IccParts {
 public:
  void add(std::span<const std::byte> segment) {
    const auto number = std::to_integer<size_t>(segment[kIccName.size()]);
    const auto count = std::to_integer<size_t>(segment[kIccName.size() + 1]);
    if (m_parts.empty()) m_parts.resize(count);
    m_bad = m_bad || count != m_parts.size() || number == 0 || number > count ||
            !m_parts[number - 1].empty() || segment.size() == kIccHeader;
    if (m_bad) return;
    const std::span<const std::byte> content = segment.subspan(kIccHeader);
    m_parts[number - 1].assign(content.begin(), content.end());
  }

  [[nodiscard]] std::vector<uint8_t> joined() const {
    std::vector<uint8_t> profile;
    for (const std::vector<std::byte>& part : m_parts) {
      if (m_bad || part.empty()) return {};
      std::transform(part.begin(), part.end(), std::back_inserter(profile),
                     [](std::byte byte) { return std::to_integer<uint8_t>(byte); });
    }
    return profile;
  }

 private:
  std::vector<std::vector<std::byte>> m_parts;
  bool m_bad = false;
};

}  // namespace

JpegMarkers JpegMarkers::scan(const ReadOnlyFile& file, const std::stop_token& stop) {
  FileCursor cursor(file);
  JpegMarkers result;
  IccParts icc;
  bool exifSeen = false;
  std::vector<std::byte> segment;
  for (;;) {
    const std::optional<uint8_t> marker = nextMarker(cursor, stop);
    if (!marker || *marker == kSos || *marker == kEoi) break;
    if (standsAlone(*marker)) continue;

    std::array<std::byte, 2> length;
    if (!cursor.read(length) || bigEndian(length) < length.size()) break;
    const size_t size = bigEndian(length) - length.size();
    if (*marker != kApp1 && *marker != kApp2) {
      cursor.skip(size);
      continue;
    }
    segment.resize(size);
    if (!cursor.read(segment)) break;
    if (*marker == kApp1 && !exifSeen && beginsWith(segment, kExifName)) {
      result.orientation = exifOrientation(segment);
      exifSeen = true;
    } else if (*marker == kApp2 && size >= kIccHeader && beginsWith(segment, kIccName)) {
      icc.add(segment);
    }
  }
  result.iccProfile = icc.joined();
  return result;
}

}  // namespace vantrel
