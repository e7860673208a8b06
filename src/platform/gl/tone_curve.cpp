#include "platform/gl/tone_curve.h"

#include <algorithm>
#include <cmath>

#include "platform/image/coded_profile.h"

namespace vantrel {
namespace {

/// The PQ signal of light, 1 for white (ITU-R BT.2100, table 4).
double pqSignal(double light) {
  constexpr double kM1 = 2610.0 / 16384, kM2 = 2523.0 / 4096 * 128;
  constexpr double kC1 = 3424.0 / 4096, kC2 = 2413.0 / 4096 * 32, kC3 = 2392.0 / 4096 * 32;
  const double power = std::pow(std::max(light, 0.0) * kHdrWhite / 10000, kM1);
  return std::pow((kC1 + kC2 * power) / (1 + kC3 * power), kM2);
}

}  // namespace

ToneCurve::ToneCurve(double peak) {
  if (!(peak > 1)) return;
  m_peakSignal = pqSignal(peak);
  m_white = pqSignal(1) / m_peakSignal;
  m_knee = std::max(0.0, 1.5 * m_white - 0.5);
}

double ToneCurve::operator()(double light) const {
  const double signal = pqSignal(light) / m_peakSignal;
  if (signal < m_knee || m_knee >= 1) return std::clamp(light, 0.0, 1.0);
  const double t = (std::min(signal, 1.0) - m_knee) / (1 - m_knee);
  const double square = t * t, cube = t * square;
  const double bent = (2 * cube - 3 * square + 1) * m_knee +
                      (cube - 2 * square + t) * (1 - m_knee) + (3 * square - 2 * cube) * m_white;
  return std::min(pqLuminance(bent * m_peakSignal) / kHdrWhite, 1.0);
}

}  // namespace vantrel
