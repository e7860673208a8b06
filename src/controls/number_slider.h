#pragma once

#include <QSlider>
#include <functional>

namespace vantrel {

/// A horizontal slider that counts a number in ticks of its own, and tells assistive tools the
/// number. Main thread.
class NumberSlider : public QSlider {
  Q_OBJECT

 public:
  /// The number with its unit, as a person says it.
  using InWords = std::function<QString(double number)>;

  /// `ticks` make up 1.
  NumberSlider(double ticks, InWords inWords, QWidget* parent = nullptr);

  [[nodiscard]] double number(int value) const { return value / m_ticks; }
  [[nodiscard]] QString valueText() const { return m_inWords(number(value())); }
  /// As if the user had moved the slider there.
  void choose(double number);

 private:
  double m_ticks;
  InWords m_inWords;
};

}  // namespace vantrel
