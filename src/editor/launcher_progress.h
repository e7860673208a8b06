#pragma once

#include <optional>
#include <vector>

namespace vantrel {

/// What the task bar shows of the exports that run: the mean of their progress, in whole percent,
/// so that a change is worth a message.
class LauncherProgress final {
 public:
  struct Shown {
    bool visible = false;
    int percent = 0;
    friend bool operator==(const Shown&, const Shown&) = default;
  };

  /// Takes the progress from 0 to 1 of each that has one; what to show by now, absent if that is
  /// what is shown already. Nothing is shown from the start.
  [[nodiscard]] std::optional<Shown> take(const std::vector<double>& running);

 private:
  Shown m_shown;
};

}  // namespace vantrel
