#pragma once

namespace vantrel {

/// The values that a slider can be moved to: from `lower` in equal steps, the last one at `upper`
/// wherever that lies. They are numbered from 0.
struct SliderScale {
  double lower = 0, upper = 1;
  /// How many steps make up 1.
  int stepsPerUnit = 1;

  [[nodiscard]] int last() const;
  /// The value of a step.
  [[nodiscard]] double value(int step) const;
  /// The step closest to a value.
  [[nodiscard]] int closest(double value) const;
  /// One step up or down from a value; from between two steps, to the next one.
  [[nodiscard]] int next(double value, bool up) const;

 private:
  [[nodiscard]] double position(double value) const;
};

}  // namespace vantrel
