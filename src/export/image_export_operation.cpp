#include "export/image_export_operation.h"

#include <utility>

#include "export/image_exporter.h"

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

}  // namespace

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
  summary.bytes = fileSizeOf(file.path());
  summary.resolution = request.crop.size();
  summary.imageFormat = label;
  return {std::move(file), std::move(summary), contentTypeOf(request.settings.format),
          exportTitle(request.sourcePath)};
}

}  // namespace vantrel
