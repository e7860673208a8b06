#pragma once

#include <QObject>
#include <QRectF>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <stop_token>

#include "export/finished_export.h"
#include "export/video_exporter.h"
#include "model/encoding_settings.h"
#include "platform/desktop/background_task.h"
#include "platform/desktop/latest_report.h"

namespace vantrel {

/// All that the export of a video needs to know.
struct VideoExportRequest {
  /// The opened file, which gives the title too.
  std::filesystem::path source;
  /// Whole pixels of the upright picture.
  QRectF crop;
  EncodingSettings settings;
  /// Whether the source is HDR; for the summary.
  bool isHDR = false;
  /// A new name in the session folder.
  std::filesystem::path destination;
};

/// One export of a video in the background, from a request to a finished file. Destroying it
/// cancels the export and waits for it; a file that is not handed over is deleted on every way out.
/// Main thread.
class VideoExportOperation final {
 public:
  using Outcome = BackgroundTask<FinishedExport>::Outcome;
  using Completion = std::function<void(Outcome)>;

  /// Who is told how far it is. Neither may destroy the operation.
  struct Reports {
    VideoExporter::FileSize fileSize;
    VideoExporter::Progress progress;
  };

  /// Starts at once. The reports come from the event loop as those of LatestReport do, the last of
  /// them before the completion, and none after this object's end. `completion` is called once,
  /// later, from the event loop: with the finished export, or with what `run` throws; with
  /// Cancelled whenever `cancel` came before. It may destroy the operation.
  VideoExportOperation(VideoExportRequest request, Reports reports, Completion completion);

  /// The work itself, blocking, on any thread; reports come from several. Throws what
  /// VideoExporter::write throws, and std::system_error where the finished file is gone.
  [[nodiscard]] static FinishedExport run(const VideoExportRequest& request, const Reports& reports,
                                          const std::stop_token& stop);

  void cancel() { m_task.cancel(); }

 private:
  /// Takes the reports that are on their way, and outlives the task that sends them.
  QObject m_receiver;
  LatestReport<int64_t> m_fileSize;
  LatestReport<double> m_progress;
  BackgroundTask<FinishedExport> m_task;
};

}  // namespace vantrel
