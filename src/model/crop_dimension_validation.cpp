#include "model/crop_dimension_validation.h"

#include <QChar>
#include <QList>
#include <algorithm>

#include "model/integer_text.h"

namespace vantrel {
namespace {

/// Whether a text is made of numbers alone, in any script.
bool isNumeric(const QString& text) {
  const QList<uint> characters = text.toUcs4();
  return !characters.isEmpty() &&
         std::all_of(characters.begin(), characters.end(),
                     [](uint character) { return QChar::isNumber(char32_t{character}); });
}

}  // namespace

CropDimensionValidation CropDimensionValidation::resolve(const QString& text, int64_t current,
                                                         int64_t maximum, int64_t multiple) {
  if (multiple < 1) qFatal("a crop needs a pixel step of at least 1");
  const int64_t ceiling = std::max(multiple, maximum / multiple * multiple);
  const QString trimmed = text.trimmed();
  const auto number = integerFromText(trimmed);
  if (!number) return {isNumeric(trimmed) ? ceiling : current, true};
  const int64_t clamped = std::clamp(*number, multiple, ceiling);
  return {clamped / multiple * multiple, clamped != *number};
}

}  // namespace vantrel
