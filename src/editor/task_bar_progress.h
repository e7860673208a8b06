#pragma once

#include <QObject>
#include <vector>

#include "editor/launcher_progress.h"

namespace vantrel {

class CropExportState;

/// The progress of all running exports on the program's entry in the task bar, where the desktop
/// shows it (com.canonical.Unity.LauncherEntry). Exports without a percentage are left out. Main
/// thread.
class TaskBarProgress final : public QObject {
 public:
  using QObject::QObject;

  /// Follows this export as long as both live.
  void watch(const CropExportState& state);

 private:
  void update();

  std::vector<const CropExportState*> m_states;
  LauncherProgress m_progress;
};

}  // namespace vantrel
