#include "controls/text_scale.h"

#include <QApplication>
#include <QFontInfo>
#include <algorithm>
#include <cmath>

namespace vantrel {
namespace {

// Points.
constexpr double kDesignedText = 13;

}  // namespace

double textScale() {
  // A desktop may name a font that is a little larger than the design's.
  constexpr double kTolerance = 1.2;
  const double scale = QFontInfo(QApplication::font()).pixelSize() / kDesignedText;
  return scale < kTolerance ? 1 : scale;
}

int scaledForText(int points) {
  return static_cast<int>(std::lround(points * textScale()));
}

}  // namespace vantrel
