#pragma once

#include <QSlider>

namespace vantrel {

/// A horizontal slider on a number other than its value: assistive tools are told that number, and
/// can choose another. Main thread.
class SpokenSlider : public QSlider {
  Q_OBJECT

 public:
  struct Span {
    double least = 0, most = 0;
    /// Between two numbers that an arrow key leads to.
    double step = 0;
  };

  explicit SpokenSlider(QWidget* parent = nullptr);

  [[nodiscard]] virtual double number() const = 0;
  [[nodiscard]] virtual Span span() const = 0;
  /// The number with its unit, as a person says it; empty where the bare number says enough.
  [[nodiscard]] virtual QString valueText() const { return {}; }
  /// As if the user had moved the slider there.
  virtual void choose(double number) = 0;
};

}  // namespace vantrel
