#include "controls/dark_palette.h"

#include <QColor>
#include <QPalette>

namespace vantrel {

bool isDark(const QPalette& palette) {
  return palette.color(QPalette::Window).lightnessF() <
         palette.color(QPalette::WindowText).lightnessF();
}

}  // namespace vantrel
