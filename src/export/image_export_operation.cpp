#include "export/image_export_operation.h"

#include <system_error>
#include <utility>

#include "export/image_exporter.h"
#include "platform/desktop/file_error.h"

namespace vantrel {
namespace {

ContentType contentTypeOf(ImageEncodingSettings::Format format) {
  switch (format) {
    case ImageEncodingSettings::Format::png:
      return ContentType::png();
    case ImageEncodingSettings::Format::jpeg:
      return ContentType::jpeg();
  }
  return {};
}

/// 0 if it is not known.
int64_t sizeOf(const std::filesystem::path& file) {
  std::error_code error;
  const std::uintmax_t size = std::filesystem::file_size(file, error);
  return error ? 0 : static_cast<int64_t>(size);
}

}  // namespace

QString exportTitle(const std::filesystem::path& sourcePath) {
  return displayName(sourcePath.stem()) + QStringLiteral("-framed");
}

ImageExportOperation::ImageExportOperation(ImageExportRequest request, Completion completion)
    : m_task([request =
                  std::move(request)](const std::stop_token& stop) { return run(request, stop); },
             std::move(completion)) {}

FinishedExport ImageExportOperation::run(const ImageExportRequest& request,
                                         const std::stop_token& stop) {
  TemporaryExport file(request.destination);
  ImageExporter::write(request.source, file.path(), request.crop, request.settings, stop);

  const QString label = ImageEncodingSettings::rawValue(request.settings.format);
  ExportSummary summary;
  summary.codec = label;
  summary.bytes = sizeOf(file.path());
  summary.resolution = request.crop.size();
  summary.imageFormat = label;
  return {std::move(file), std::move(summary), contentTypeOf(request.settings.format),
          exportTitle(request.sourcePath)};
}

}  // namespace vantrel
