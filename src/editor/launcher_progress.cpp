#include "editor/launcher_progress.h"

#include <algorithm>
#include <cmath>
#include <numeric>

namespace vantrel {

std::optional<LauncherProgress::Shown> LauncherProgress::take(const std::vector<double>& running) {
  Shown shown;
  if (!running.empty()) {
    const double sum = std::accumulate(running.begin(), running.end(), 0.0);
    const double mean = sum / static_cast<double>(running.size());
    // Whole only when all is done.
    shown = {true, static_cast<int>(std::floor(std::clamp(mean, 0.0, 1.0) * 100))};
  }
  if (shown == m_shown) return std::nullopt;
  m_shown = shown;
  return shown;
}

}  // namespace vantrel
