#include "export/video_export_operation.h"

#include <chrono>
#include <utility>

#include "base/cancelled.h"
#include "platform/desktop/file_error.h"

namespace vantrel {

VideoExportOperation::VideoExportOperation(VideoExportRequest request, Reports reports,
                                           Completion completion)
    : m_task(
          [request = std::move(request), reports = Reports{delivered(std::move(reports.fileSize)),
                                                           delivered(std::move(reports.progress))}](
              const std::stop_token& stop) { return run(request, reports, stop); },
          std::move(completion)) {}

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

template <class Value>
std::function<void(Value)> VideoExportOperation::delivered(std::function<void(Value)> report) {
  if (!report) return {};
  return [receiver = &m_receiver, report = std::move(report)](Value value) {
    QMetaObject::invokeMethod(
        receiver, [report, value] { report(value); }, Qt::QueuedConnection);
  };
}

}  // namespace vantrel
