#pragma once

#include <QLocale>
#include <QString>
#include <cstdint>

namespace vantrel::CropFormatting {

/// The locale of every number and byte count on screen, whatever the user's: en_US.
[[nodiscard]] const QLocale& locale();

/// A file's size in decimal units: "Zero kB", "1 byte", "512 bytes", "34 kB", "1.2 MB", "3.45 GB".
[[nodiscard]] QString byteCount(int64_t bytes);

/// `value` with exactly `digits` fractional digits, a half rounded away from zero, thousands
/// grouped.
[[nodiscard]] QString fixed(double value, int digits);

}  // namespace vantrel::CropFormatting
