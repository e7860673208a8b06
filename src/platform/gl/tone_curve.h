#pragma once

// Private to this folder.

namespace vantrel {

/// Brings the light of an HDR video within the range of the display, leaving the darker part as it
/// is (ITU-R BT.2390, EETF; the lowest light of both is 0). Light is 1 for the display's white,
/// which stands for diffuse white.
class ToneCurve final {
 public:
  /// `peak` is the brightest light of the video. Up to 1 nothing is changed.
  explicit ToneCurve(double peak);

  /// From 0 to 1, for light from 0 to `peak`; never falls.
  [[nodiscard]] double operator()(double light) const;

 private:
  double m_peakSignal = 1;
  /// Of the display's white in the scale where the peak has a signal of 1, and where it begins to
  /// bend.
  double m_white = 1, m_knee = 1;
};

}  // namespace vantrel
