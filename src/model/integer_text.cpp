#include "model/integer_text.h"

#include <QByteArray>
#include <algorithm>
#include <charconv>

namespace vantrel {

std::optional<int64_t> integerFromText(QStringView text) {
  const bool hasSign = text.startsWith(u'+') || text.startsWith(u'-');
  const QStringView digits = hasSign ? text.sliced(1) : text;
  const auto isDigit = [](QChar c) { return c >= u'0' && c <= u'9'; };
  if (digits.isEmpty() || !std::all_of(digits.begin(), digits.end(), isDigit)) return std::nullopt;
  // The sign stays with the digits, as the lowest number has no positive counterpart.
  const QByteArray ascii = (text.startsWith(u'-') ? text : digits).toLatin1();
  int64_t number = 0;
  const auto [end, error] = std::from_chars(ascii.data(), ascii.data() + ascii.size(), number);
  if (error != std::errc()) return std::nullopt;
  return number;
}

}  // namespace vantrel
