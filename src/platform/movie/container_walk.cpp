#include "platform/movie/container_walk.h"

#include <algorithm>
#include <array>
#include <optional>
#include <span>

#include "platform/movie/box_bytes.h"
#include "platform/movie/matroska_number.h"

namespace vantrel {
namespace {

constexpr uint32_t kEbml = 0x1A45DFA3;

/// The elements of a segment and of its clusters (RFC 9559).
class MatroskaWalk final : public ContainerWalk {
 public:
  explicit MatroskaWalk(const std::filesystem::path& path)
      : ContainerWalk(path), m_end(file().size()) {}

 private:
  static constexpr uint64_t kSegment = 0x18538067, kCluster = 0x1F43B675;

  static bool standsInCluster(uint64_t id) {
    // Timestamp, SimpleBlock, BlockGroup, PrevSize, Position, SilentTracks, EncryptedBlock, and the
    // Void and CRC-32 of any element.
    constexpr std::array<uint64_t, 9> kIds = {0xE7, 0xA3,   0xA0, 0xAB, 0xA7,
                                              0xAF, 0x5854, 0xEC, 0xBF};
    return std::find(kIds.begin(), kIds.end(), id) != kIds.end();
  }
  static bool standsBesideCluster(uint64_t id) {
    // SeekHead, Info, Tracks, Cues, Attachments, Chapters, Tags.
    constexpr std::array<uint64_t, 7> kIds = {0x114D9B74, 0x1549A966, 0x1654AE6B, 0x1C53BB6B,
                                              0x1941A469, 0x1043A770, 0x1254C367};
    return std::find(kIds.begin(), kIds.end(), id) != kIds.end();
  }

  bool step() override {
    if (offset() == m_clusterEnd) m_isInCluster = false;
    if (offset() >= m_end) {
      goToEnd();
      return true;
    }
    const auto id = MatroskaNumber::read(file(), offset());
    if (!id) return false;
    const uint64_t sizeAt = offset() + static_cast<uint64_t>(id->length);
    const auto size = MatroskaNumber::read(file(), sizeAt);
    if (!size) return false;
    const uint64_t content = sizeAt + static_cast<uint64_t>(size->length);
    if (id->marked == kSegment) return enterSegment(content, *size);
    if (id->marked == kCluster) return enterCluster(content, *size);
    if (m_isInCluster && !standsInCluster(id->marked)) {
      if (m_clusterEnd || !standsBesideCluster(id->marked)) return false;
      m_isInCluster = false;
    }
    const uint64_t limit = m_isInCluster && m_clusterEnd ? *m_clusterEnd : m_end;
    if (size->isUnknown() || size->value > limit - std::min(limit, content)) return false;
    goTo(content + size->value);
    return true;
  }

  bool enterSegment(uint64_t content, const MatroskaNumber& size) {
    if (!size.isUnknown()) m_end = std::min(m_end, content + size.value);
    goTo(content);
    return true;
  }

  bool enterCluster(uint64_t content, const MatroskaNumber& size) {
    if (m_isInCluster && m_clusterEnd) return false;
    m_isInCluster = true;
    m_clusterEnd.reset();
    if (!size.isUnknown()) m_clusterEnd = content + size.value;
    if (m_clusterEnd && *m_clusterEnd > m_end) return false;
    goTo(content);
    return true;
  }

  uint64_t m_end;
  bool m_isInCluster = false;
  /// Absent where it ends before the next element that cannot stand in it.
  std::optional<uint64_t> m_clusterEnd;
};

/// The chunks of an AVI file ("OpenDML AVI File Format Extensions", 1996).
class AviWalk final : public ContainerWalk {
 public:
  explicit AviWalk(const std::filesystem::path& path) : ContainerWalk(path) {}

 private:
  static constexpr uint64_t kHeader = 8, kListHeader = 12;

  bool step() override {
    std::array<uint8_t, kListHeader> bytes{};
    if (!file().read(offset(), std::span(bytes).first(kHeader))) {
      goToEnd();
      return true;
    }
    ByteCursor cursor(bytes);
    const uint32_t type = cursor.u32();
    // Little-endian.
    const uint64_t size = uint64_t{bytes[7]} << 24 | bytes[6] << 16 | bytes[5] << 8 | bytes[4];
    const bool isRiff = type == fourCC("RIFF");
    if (isRiff || type == fourCC("LIST")) {
      if (!file().read(offset(), bytes)) return false;
      cursor.skip(4);
      const uint32_t list = cursor.u32();
      if (isRiff || list == fourCC("movi") || list == fourCC("rec ")) {
        if (isRiff) m_hasEnd = size != 0 && size != UINT32_MAX;
        if (isRiff) m_end = offset() + kHeader + size;
        goTo(offset() + kListHeader);
        return true;
      }
    }
    return skip(type, size);
  }

  bool skip(uint32_t type, uint64_t size) {
    // What follows the last part is no part of the film.
    if (m_hasEnd && offset() >= m_end) {
      goToEnd();
      return true;
    }
    if (!isPlausibleType(type)) {
      // Some writers leave out the byte that makes a size even.
      if (!m_isPadded) return false;
      m_isPadded = false;
      goTo(offset() - 1);
      return true;
    }
    const uint64_t end = offset() + kHeader + size;
    if (end > file().size()) return false;
    m_isPadded = size % 2 != 0;
    goTo(end + size % 2);
    return true;
  }

  uint64_t m_end = 0;
  bool m_hasEnd = false;
  bool m_isPadded = false;
};

}  // namespace

std::unique_ptr<ContainerWalk> ContainerWalk::open(const std::filesystem::path& path) {
  BoxFile file(path);
  std::array<uint8_t, 12> bytes{};
  if (!file.read(0, bytes)) return nullptr;
  ByteCursor cursor(bytes);
  const uint32_t type = cursor.u32();
  cursor.skip(4);
  if (type == kEbml) return std::make_unique<MatroskaWalk>(path);
  if (type == fourCC("RIFF") && cursor.u32() == fourCC("AVI ")) {
    return std::make_unique<AviWalk>(path);
  }
  return nullptr;
}

bool ContainerWalk::isSoundUpTo(uint64_t offset) {
  while (m_isSound && m_offset <= offset && m_offset < m_file.size())
    m_isSound = step();
  return m_isSound;
}

}  // namespace vantrel
