#include "platform/desktop/formatting.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <limits>
#include <string>

namespace vantrel::CropFormatting {
namespace {

constexpr uint64_t kThousand = 1000;

struct ByteUnit {
  uint64_t bytes;
  int digits;
  QLatin1String name;
};

// No count of 63 bits reaches 1,000 EB.
constexpr std::array kByteUnits{
    ByteUnit{1'000, 0, QLatin1String("kB")},
    ByteUnit{1'000'000, 1, QLatin1String("MB")},
    ByteUnit{1'000'000'000, 2, QLatin1String("GB")},
    ByteUnit{1'000'000'000'000, 2, QLatin1String("TB")},
    ByteUnit{1'000'000'000'000'000, 2, QLatin1String("PB")},
    ByteUnit{1'000'000'000'000'000'000, 2, QLatin1String("EB")},
};

uint64_t powerOfTen(int exponent) {
  uint64_t power = 1;
  for (; exponent > 0; --exponent)
    power *= 10;
  return power;
}

/// Adds one to the last digit of a decimal number, which may hold one point.
void incrementLastDigit(std::string& decimal) {
  for (auto digit = decimal.rbegin(); digit != decimal.rend(); ++digit) {
    if (*digit == '.') continue;
    if (*digit != '9') {
      ++*digit;
      return;
    }
    *digit = '0';
  }
  decimal.insert(decimal.begin(), '1');
}

/// A finite value's magnitude with `digits` fractional digits, rounded from the shortest decimal
/// that stands for it, so that 1.005 with two digits is 1.01 as it reads.
std::string roundedMagnitude(double value, int digits) {
  std::array<char, std::numeric_limits<double>::max_exponent10 + 32> shortest{};
  const auto end = std::to_chars(shortest.data(), shortest.data() + shortest.size(),
                                 std::abs(value), std::chars_format::fixed)
                       .ptr;
  std::string decimal(shortest.data(), end);
  const size_t point = std::min(decimal.find('.'), decimal.size());
  const size_t wanted = point + 1 + static_cast<size_t>(digits);
  const bool up = decimal.size() > wanted && decimal[wanted] >= '5';
  if (point == decimal.size()) decimal += '.';
  decimal.resize(wanted, '0');
  if (up) incrementLastDigit(decimal);
  if (digits == 0) decimal.pop_back();
  return decimal;
}

}  // namespace

const QLocale& locale() {
  static const QLocale locale(QLocale::English, QLocale::UnitedStates);
  return locale;
}

QString byteCount(int64_t bytes) {
  if (bytes <= 0) return QStringLiteral("Zero kB");
  if (bytes == 1) return QStringLiteral("1 byte");
  const auto count = static_cast<uint64_t>(bytes);
  if (count < kThousand) return QStringLiteral("%1 bytes").arg(bytes);
  for (const ByteUnit& unit : kByteUnits) {
    const uint64_t scale = powerOfTen(unit.digits);
    const uint64_t step = unit.bytes / scale;
    const uint64_t steps = (count + step / 2) / step;
    if (steps >= kThousand * scale) continue;
    // The shortest form leaves trailing zeros away.
    const double number = static_cast<double>(steps) / static_cast<double>(scale);
    const QString shown = locale().toString(number, 'f', QLocale::FloatingPointShortest);
    return QStringLiteral("%1 %2").arg(shown, unit.name);
  }
  Q_UNREACHABLE();
}

QString fixed(double value, int digits) {
  if (!std::isfinite(value)) return locale().toString(value);
  const std::string decimal = roundedMagnitude(value, digits);
  QString text = QString::fromLatin1(decimal.data(), static_cast<qsizetype>(decimal.size()));
  const qsizetype whole = digits == 0 ? text.size() : text.indexOf(u'.');
  for (qsizetype position = whole - 3; position > 0; position -= 3) {
    text.insert(position, locale().groupSeparator());
  }
  const bool isZero = decimal.find_first_not_of("0.") == std::string::npos;
  return value < 0 && !isZero ? locale().negativeSign() + text : text;
}

}  // namespace vantrel::CropFormatting
