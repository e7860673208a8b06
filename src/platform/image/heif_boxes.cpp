#include "platform/image/heif_boxes.h"

#include <algorithm>
#include <array>
#include <map>
#include <optional>
#include <string_view>
#include <vector>

#include "platform/image/file_cursor.h"

namespace vantrel {
namespace {

using namespace std::string_view_literals;

/// Boxes beside each other that are looked at; a file may hold any number of empty ones.
constexpr int kMostSiblings = 4096;
/// Most levels of items made of items: an overlay of grids has three.
constexpr int kMostLevels = 16;
/// Most references among items, and decodings that one item may ask for: the largest grid has
/// 256 × 256 tiles, each with alpha.
constexpr uint64_t kMostReferences = 200'000;
/// Version and flags, which some boxes begin with.
constexpr uint64_t kFullBoxHeader = 4;

/// Contents of a box in the file.
struct Box {
  std::array<char, 4> type{};
  uint64_t begin = 0, end = 0;

  [[nodiscard]] bool is(std::string_view name) const {
    return std::string_view(type.data(), type.size()) == name;
  }
};

/// Which items have to be decoded for which.
class ItemGraph {
 public:
  void add(uint32_t item, uint32_t needed) {
    if (m_references++ < kMostReferences) m_needed[item].push_back(needed);
  }

  [[nodiscard]] bool isSound() {
    return m_references <= kMostReferences &&
           std::all_of(m_needed.begin(), m_needed.end(), [this](const auto& entry) {
             return decodings(entry.first, 0) <= kMostReferences;
           });
  }

 private:
  /// Decodings for an item, itself included; more than kMostReferences for one that needs itself.
  uint64_t decodings(uint32_t item, int level) {
    constexpr uint64_t kTooMany = kMostReferences + 1;
    if (level > kMostLevels) return kTooMany;
    const auto needed = m_needed.find(item);
    if (needed == m_needed.end()) return 1;
    // Until it is known, an item counts as one that needs itself.
    const auto [known, isNew] = m_decodings.try_emplace(item, kTooMany);
    if (!isNew) return known->second;
    uint64_t sum = 1;
    for (const uint32_t other : needed->second) {
      sum = std::min(sum + decodings(other, level + 1), kTooMany);
    }
    return m_decodings[item] = sum;
  }

  uint64_t m_references = 0;
  std::map<uint32_t, std::vector<uint32_t>> m_needed;
  std::map<uint32_t, uint64_t> m_decodings;
};

class BoxScan {
 public:
  explicit BoxScan(const ReadOnlyFile& file) : m_file(file) {}

  [[nodiscard]] HeifBoxes scan() {
    forEachBox(0, m_file.size(), [this](const Box& box) {
      if (box.is("meta"sv)) scanMeta(box);
      if (box.is("moov"sv)) scanMovie(box);
    });
    m_result.isMonochrome = m_result.hasHevc && m_monochrome;
    m_result.isSound = m_items.isSound();
    return m_result;
  }

 private:
  template <size_t Size>
  [[nodiscard]] std::optional<uint32_t> number(uint64_t position) const {
    std::array<std::byte, Size> bytes;
    if (m_file.read(position, bytes) != Size) return std::nullopt;
    return bigEndian(bytes);
  }

  [[nodiscard]] std::optional<Box> boxAt(uint64_t position, uint64_t end) const {
    const std::optional<uint32_t> size = number<4>(position);
    Box box;
    if (!size || m_file.read(position + 4, std::as_writable_bytes(std::span(box.type))) != 4) {
      return std::nullopt;
    }
    uint64_t length = *size;
    box.begin = position + 8;
    if (*size == 0) {
      length = end - position;
    } else if (*size == 1) {
      const std::optional<uint32_t> high = number<4>(position + 8);
      const std::optional<uint32_t> low = number<4>(position + 12);
      if (!high || !low) return std::nullopt;
      length = uint64_t{*high} << 32 | *low;
      box.begin = position + 16;
    }
    length = std::min(length, end - position);
    box.end = position + length;
    if (box.end < box.begin) return std::nullopt;
    return box;
  }

  template <typename Visit>
  void forEachBox(uint64_t begin, uint64_t end, Visit visit) const {
    for (int i = 0; i < kMostSiblings && begin < end; ++i) {
      const std::optional<Box> box = boxAt(begin, end);
      if (!box) return;
      visit(*box);
      begin = box->end;
    }
  }

  template <typename Visit>
  void forEachChild(const Box& parent, std::string_view name, Visit visit) const {
    forEachBox(parent.begin, parent.end, [&](const Box& box) {
      if (box.is(name)) visit(box);
    });
  }

  void scanMeta(Box meta) {
    m_result.hasStills = true;
    meta.begin += kFullBoxHeader;
    forEachChild(meta, "iref"sv, [this](const Box& references) { scanReferences(references); });
    forEachChild(meta, "iprp"sv, [this](const Box& properties) {
      forEachChild(properties, "ipco"sv, [this](const Box& container) {
        forEachChild(container, "hvcC"sv, [this](const Box& box) { takeHevc(box); });
      });
    });
  }

  /// Box `iref` (ISO/IEC 14496-12, 8.11.12): identifiers have two bytes in version 0, else four.
  void scanReferences(Box references) {
    const bool small = number<1>(references.begin) == 0U;
    references.begin += kFullBoxHeader;
    forEachBox(references.begin, references.end, [this, small](const Box& box) {
      const bool isAlpha = box.is("auxl"sv);
      if (!isAlpha && !box.is("dimg"sv)) return;
      const uint64_t idBytes = small ? 2 : 4;
      const auto identifier = [this, small](uint64_t at) {
        return (small ? number<2>(at) : number<4>(at)).value_or(0);
      };
      const uint32_t from = identifier(box.begin);
      const uint32_t count = number<2>(box.begin + idBytes).value_or(0);
      uint64_t at = box.begin + idBytes + 2;
      for (uint32_t i = 0; i < count && at < box.end; ++i, at += idBytes) {
        const uint32_t to = identifier(at);
        m_items.add(isAlpha ? to : from, isAlpha ? from : to);
      }
    });
  }

  /// Chroma format of the decoder configuration (ISO/IEC 14496-15, 8.3.3.1): the lower two bits of
  /// its byte 16, 0 for luminance alone.
  void takeHevc(const Box& box) {
    const std::optional<uint32_t> format = number<1>(box.begin + 16);
    if (!format || box.begin + 16 >= box.end) return;
    m_result.hasHevc = true;
    m_monochrome = m_monochrome && (*format & 3) == 0;
  }

  void scanMovie(const Box& movie) {
    forEachChild(movie, "trak"sv, [this](const Box& track) {
      forEachChild(track, "mdia"sv, [this](const Box& media) {
        bool pictures = false;
        forEachChild(media, "hdlr"sv, [&](const Box& handler) {
          const uint32_t kind = number<4>(handler.begin + kFullBoxHeader + 4).value_or(0);
          pictures = kind == 0x70696374 /* pict */ || kind == 0x76696465 /* vide */;
        });
        if (pictures) scanTrack(media);
      });
    });
  }

  void scanTrack(const Box& media) {
    forEachChild(media, "minf"sv, [this](const Box& information) {
      forEachChild(information, "stbl"sv, [this](const Box& table) {
        forEachChild(table, "stsz"sv, [this](const Box& sizes) {
          const std::optional<uint32_t> count = number<4>(sizes.begin + kFullBoxHeader + 4);
          m_result.sequenceFrames = std::max(m_result.sequenceFrames, count.value_or(0));
        });
      });
    });
  }

  const ReadOnlyFile& m_file;
  HeifBoxes m_result;
  ItemGraph m_items;
  bool m_monochrome = true;
};

}  // namespace

HeifBoxes HeifBoxes::read(const ReadOnlyFile& file) {
  return BoxScan(file).scan();
}

}  // namespace vantrel
