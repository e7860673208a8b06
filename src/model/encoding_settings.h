#pragma once

#include <QString>
#include <array>

namespace vantrel {

/// A closed range of bitrates in megabits per second.
struct BitrateRange {
  double lower = 0, upper = 0;
  friend bool operator==(const BitrateRange&, const BitrateRange&) = default;
};

/// How a cropped video is encoded.
struct EncodingSettings {
  enum class Codec { h264, hevc };
  static constexpr std::array kCodecs{Codec::h264, Codec::hevc};
  static constexpr double kLowestMbps = 0.01, kHighestMbps = 10000;

  Codec codec = Codec::hevc;
  /// Megabits per second of 1,000,000 bits.
  double megabitsPerSecond = 2.5;

  /// "H.264" or "HEVC": the label shown, the same in every language.
  [[nodiscard]] static QString rawValue(Codec codec);

  /// Whether the bitrate is finite and from 0.01 to 10,000.
  [[nodiscard]] bool isValid() const;

  /// The bitrate that matches a source of this measured one: the default where it is none.
  [[nodiscard]] static double originalBitrate(double measured);

  /// The range of the bitrate slider, widened so that it contains `rate`.
  [[nodiscard]] static BitrateRange bitrateRange(double rate);

  friend bool operator==(const EncodingSettings&, const EncodingSettings&) = default;
};

}  // namespace vantrel
