#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string_view>
#include <vector>

namespace vantrel {

/// The four characters of a box type as the number that they make, the first most significant.
[[nodiscard]] constexpr uint32_t fourCC(std::string_view name) {
  uint32_t value = 0;
  for (const char c : name)
    value = value << 8 | static_cast<unsigned char>(c);
  return value;
}

/// Whether a type is made of characters that anybody uses for one: damage mostly is not.
[[nodiscard]] bool isPlausibleType(uint32_t type);

/// Takes big-endian numbers from the front of some bytes. A request past the end gives zeros and
/// nothing more comes afterwards: `ok` tells, once, after any number of requests.
class ByteCursor final {
 public:
  explicit ByteCursor(std::span<const uint8_t> bytes) : m_bytes(bytes) {}

  [[nodiscard]] uint8_t u8() { return static_cast<uint8_t>(number(1)); }
  [[nodiscard]] uint16_t u16() { return static_cast<uint16_t>(number(2)); }
  [[nodiscard]] uint32_t u32() { return static_cast<uint32_t>(number(4)); }
  [[nodiscard]] uint64_t u64() { return number(8); }
  /// 64 bits if `wide`, else 32.
  [[nodiscard]] uint64_t word(bool wide) { return number(wide ? 8 : 4); }
  /// Empty if there are not so many.
  [[nodiscard]] std::span<const uint8_t> take(uint64_t count);
  void skip(uint64_t count) { (void)take(count); }

  [[nodiscard]] std::span<const uint8_t> rest() const { return m_bytes; }
  [[nodiscard]] bool ok() const { return m_ok; }

 private:
  [[nodiscard]] uint64_t number(unsigned bytes);

  std::span<const uint8_t> m_bytes;
  bool m_ok = true;
};

/// What the first bytes of a box say (ISO/IEC 14496-12, 4.2).
struct BoxHeader {
  static constexpr uint64_t kShortSize = 8, kLongSize = 16;

  uint32_t type = 0;
  /// Of this header, in bytes.
  uint64_t headerSize = kShortSize;
  /// Of the whole box, never less than its header; 0 for a box that ends where the file does.
  uint64_t size = 0;

  /// Absent when `bytes` are too few or contradict themselves. Sixteen bytes are always enough.
  [[nodiscard]] static std::optional<BoxHeader> parse(std::span<const uint8_t> bytes);
};

/// A box in memory that another owns.
struct BoxView {
  uint32_t type = 0;
  std::span<const uint8_t> whole, payload;
};

/// Takes the first of the boxes that follow each other in `bytes`. Absent when there is none, or
/// none that ends within them; `bytes` then stay as they are.
[[nodiscard]] std::optional<BoxView> takeBox(std::span<const uint8_t>& bytes);

/// The first box of this type among those in `bytes`.
[[nodiscard]] std::optional<BoxView> findBox(std::span<const uint8_t> bytes, uint32_t type);

/// Appends big-endian numbers and boxes.
class BoxWriter final {
 public:
  void u16(uint16_t value) { number(value, 2); }
  void u32(uint32_t value) { number(value, 4); }
  void u64(uint64_t value) { number(value, 8); }
  /// 64 bits if `wide`, else the lower 32.
  void word(uint64_t value, bool wide) { number(value, wide ? 8 : 4); }
  void append(std::span<const uint8_t> bytes);
  void append(std::string_view text);
  void zeros(size_t count) { m_bytes.resize(m_bytes.size() + count); }

  /// Opens a box; everything up to the matching `end` is in it.
  void begin(uint32_t type);
  /// Closes the box that was opened last. Throws std::length_error for one of 4 GiB or more.
  void end();

  /// What was written; every box must be closed. The writer is empty afterwards.
  [[nodiscard]] std::vector<uint8_t> release();

 private:
  void number(uint64_t value, int bytes);

  std::vector<uint8_t> m_bytes;
  std::vector<size_t> m_open;
};

}  // namespace vantrel
