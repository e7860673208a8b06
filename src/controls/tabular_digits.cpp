#include "controls/tabular_digits.h"

namespace vantrel {

// NOLINTNEXTLINE(performance-unnecessary-value-param): it is changed where Qt can
QFont withTabularDigits(QFont font) {
#if QT_VERSION >= QT_VERSION_CHECK(6, 7, 0)
  font.setFeature(QFont::Tag("tnum"), 1);
#endif
  return font;
}

}  // namespace vantrel
