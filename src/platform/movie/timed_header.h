#pragma once

#include <cstdint>
#include <span>
#include <vector>

namespace vantrel {

/// A header with times: `mvhd`, `tkhd` or `mdhd`. All have version and flags, two dates, some
/// bytes, a duration, and the rest.
class TimedHeader final {
 public:
  /// Bytes between the dates and the duration.
  enum class Kind : uint8_t { Movie = 4, Track = 8, Media = 4 };

  /// Throws DamagedBoxes.
  TimedHeader(Kind kind, std::span<const uint8_t> payload);

  [[nodiscard]] uint64_t duration() const { return m_duration; }
  void setDuration(uint64_t ticks) { m_duration = ticks; }

  /// The number in front of the duration: a timescale, or the id of a track.
  [[nodiscard]] uint32_t number() const;
  void setNumber(uint32_t value);

  /// Flags of a track header: bit 0 is "enabled".
  void setEnabled(bool enabled);
  /// Language of a media header.
  void setLanguage(uint16_t language);

  /// The payload, of version 1 if it was or if the duration needs it.
  [[nodiscard]] std::vector<uint8_t> payload() const;

 private:
  bool m_wide = false;
  uint32_t m_flags = 0;
  uint64_t m_created = 0, m_modified = 0, m_duration = 0;
  std::vector<uint8_t> m_middle, m_rest;
};

}  // namespace vantrel
