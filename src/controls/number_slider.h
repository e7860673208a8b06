#pragma once

#include <functional>

#include "controls/spoken_slider.h"

namespace vantrel {

/// A slider that counts its number in ticks of its own. Main thread.
class NumberSlider : public SpokenSlider {
  Q_OBJECT

 public:
  /// The number with its unit, as a person says it.
  using InWords = std::function<QString(double number)>;

  /// `ticks` make up 1.
  NumberSlider(double ticks, InWords inWords, QWidget* parent = nullptr);

  [[nodiscard]] double number() const override { return value() / m_ticks; }
  [[nodiscard]] Span span() const override;
  [[nodiscard]] QString valueText() const override { return m_inWords(number()); }
  void choose(double number) override;

 private:
  double m_ticks;
  InWords m_inWords;
};

}  // namespace vantrel
