#include "controls/number_slider.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace vantrel {

NumberSlider::NumberSlider(double ticks, InWords inWords, QWidget* parent)
    : SpokenSlider(parent), m_ticks(ticks), m_inWords(std::move(inWords)) {}

SpokenSlider::Span NumberSlider::span() const {
  return {minimum() / m_ticks, maximum() / m_ticks, singleStep() / m_ticks};
}

void NumberSlider::choose(double number) {
  if (!isEnabled() || std::isnan(number)) return;
  const double legal = std::clamp<double>(number * m_ticks, minimum(), maximum());
  setValue(static_cast<int>(std::lround(legal)));
}

}  // namespace vantrel
