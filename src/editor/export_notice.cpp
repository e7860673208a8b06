#include "editor/export_notice.h"

#include <QCoreApplication>

#include "export/crop_export_state.h"

namespace vantrel {

ExportNotice ExportNotice::ofFinished(const QString& name) {
  return {QCoreApplication::translate("ExportNotice", "Export finished"), name, false};
}

ExportNotice ExportNotice::ofFailed(const QString& message) {
  return {CropExportState::text(CropExportState::Message::failed), message.simplified(), true};
}

}  // namespace vantrel
