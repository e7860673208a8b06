#include "canvas/crop_appearance.h"

#include "controls/dark_palette.h"

namespace vantrel::CropAppearance {

QColor exportAccent() {
  return QColor::fromRgb(225, 0, 0);
}

QColor canvas(const QPalette& palette) {
  const float white = isDark(palette) ? 0.2F : 0.78F;
  return QColor::fromRgbF(white, white, white);
}

QColor cropBorder() {
  return exportAccent();
}

QColor cropHandles() {
  return Qt::white;
}

QColor excludedArea() {
  return QColor::fromRgbF(0, 0, 0, 0.45F);
}

}  // namespace vantrel::CropAppearance
