#include "export/video_export_operation.h"

#include <chrono>
#include <utility>

#include "base/cancelled.h"
#include "platform/desktop/file_error.h"

namespace vantrel {

VideoExportOperation::VideoExportOperation(VideoExportRequest request, Reports reports,
                                           Completion completion)
    : m_fileSize(m_receiver, std::move(reports.fileSize)),
      m_progress(m_receiver, std::move(reports.progress)),
      m_task([request = std::move(request), reports = Reports{m_fileSize, m_progress}](
                 const std::stop_token& stop) { return run(request, reports, stop); },
             [this, completion = std::move(completion)](Outcome outcome) {
               m_fileSize.deliver();
               m_progress.deliver();
               // It may destroy what it stands in.
               const Completion complete = completion;
               complete(std::move(outcome));
             }) {}

FinishedExport VideoExportOperation::run(const VideoExportRequest& request, const Reports& reports,
                                         const std::stop_token& stop) {
  const auto start = std::chrono::steady_clock::now();
  TemporaryExport file(request.destination);
  const ContentType type = ContentType::quickTimeMovie();
  const QString title = exportTitle(request.source);
  // Names in the session folder mean nothing to the user.
  const std::filesystem::path name =
      proposedFileName(title, type.preferredFilenameExtension()).toStdString();
  VideoExporter::write(request.source, file.path(), request.crop, request.settings,
                       reports.fileSize, reports.progress, stop, name);
  throwIfCancelled(stop);

  ExportSummary summary;
  std::error_code error;
  const std::uintmax_t bytes = std::filesystem::file_size(file.path(), error);
  if (error) throw fileError(name, FileAction::Read, error);
  summary.bytes = static_cast<int64_t>(bytes);
  summary.codec = EncodingSettings::rawValue(request.settings.codec);
  summary.bitrate = request.settings.megabitsPerSecond;
  const std::chrono::duration<double> elapsed = std::chrono::steady_clock::now() - start;
  summary.elapsed = elapsed.count();
  summary.isHDR = request.isHDR;
  summary.resolution = request.crop.size();
  return {std::move(file), std::move(summary), type, title};
}

}  // namespace vantrel
