#include "platform/image/heif_boxes.h"

#include <algorithm>
#include <array>
#include <optional>
#include <string_view>

#include "platform/image/file_cursor.h"

namespace vantrel {
namespace {

using namespace std::string_view_literals;

/// Boxes beside each other that are looked at; a file may hold any number of empty ones.
constexpr int kMostSiblings = 4096;
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

class BoxScan {
 public:
  explicit BoxScan(const ReadOnlyFile& file) : m_file(file) {}

  [[nodiscard]] HeifBoxes scan() {
    forEachBox(0, m_file.size(), [this](const Box& box) {
      if (box.is("meta"sv)) scanMeta(box);
      if (box.is("moov"sv)) scanMovie(box);
    });
    m_result.isMonochrome = m_result.hasHevc && m_monochrome;
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
    forEachChild(meta, "iprp"sv, [this](const Box& properties) {
      forEachChild(properties, "ipco"sv, [this](const Box& container) {
        forEachChild(container, "hvcC"sv, [this](const Box& box) { takeHevc(box); });
      });
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
          const std::optional<uint32_t> kind = number<4>(handler.begin + kFullBoxHeader + 4);
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
  bool m_monochrome = true;
};

}  // namespace

HeifBoxes HeifBoxes::read(const ReadOnlyFile& file) {
  return BoxScan(file).scan();
}

}  // namespace vantrel
