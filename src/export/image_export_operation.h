#pragma once

#include <QRectF>
#include <filesystem>
#include <functional>
#include <stop_token>

#include "export/finished_export.h"
#include "media/image_source.h"
#include "model/image_encoding_settings.h"
#include "platform/desktop/background_task.h"

namespace vantrel {

/// All that the export of a still image needs to know.
struct ImageExportRequest {
  ImageSource source;
  /// Whole pixels of the upright image.
  QRectF crop;
  ImageEncodingSettings settings;
  /// The opened file, which gives the title.
  std::filesystem::path sourcePath;
  /// A new name in the session folder.
  std::filesystem::path destination;
};

/// One export of a still image in the background, from a request to a finished file. Destroying it
/// cancels the export and waits for it; a file that is not handed over is deleted on every way out.
/// Main thread.
class ImageExportOperation final {
 public:
  using Outcome = BackgroundTask<FinishedExport>::Outcome;
  using Completion = std::function<void(Outcome)>;

  /// Starts at once. `completion` is called once, later, from the event loop: with the finished
  /// export, or with what `run` throws; with Cancelled whenever `cancel` came before. It may
  /// destroy the operation.
  ImageExportOperation(ImageExportRequest request, Completion completion);

  /// The work itself, blocking, on any thread. Throws what ImageExporter::write throws.
  [[nodiscard]] static FinishedExport run(const ImageExportRequest& request,
                                          const std::stop_token& stop);

  void cancel() { m_task.cancel(); }

 private:
  BackgroundTask<FinishedExport> m_task;
};

}  // namespace vantrel
