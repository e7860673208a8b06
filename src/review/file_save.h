#pragma once

#include <QObject>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <stop_token>

#include "platform/desktop/background_task.h"

namespace vantrel {

/// Copies a file, as atomicCopy does: blocking, told the bytes copied so far, Cancelled if stopped.
using CopyFile = std::function<void(
    const std::filesystem::path& source, const std::filesystem::path& destination,
    const std::stop_token& stop, const std::function<void(int64_t)>& progress)>;

/// One copy of a finished export to the place that the user named, in the background. Destroying it
/// cancels the copy and waits for it. Main thread.
class FileSave final {
 public:
  using Outcome = BackgroundTask<void>::Outcome;

  /// Starts at once. `progress` is told the fraction that is copied, from 0 to 1, a hundred times
  /// at most; it may not destroy this object. `completion` is called once, after all of these: it
  /// is Cancelled only if the destination was left alone, whenever `cancel` came. It may destroy
  /// this object. Neither is called after this object's end.
  FileSave(CopyFile copy, std::filesystem::path source, std::filesystem::path destination,
           std::function<void(double)> progress, std::function<void(Outcome)> completion);

  /// The outcome comes later.
  void cancel() { m_cancellation.request_stop(); }

 private:
  /// Takes the reports that are on their way, and outlives the task that sends them.
  QObject m_receiver;
  /// Not the task's own: that one would take back a copy that is made.
  std::stop_source m_cancellation;
  BackgroundTask<void> m_task;
};

}  // namespace vantrel
