#pragma once

#include <QString>

#include "export/export_summary.h"
#include "export/temporary_export.h"
#include "platform/desktop/content_type.h"

namespace vantrel {

/// A finished export on its way to its review. Dropping it deletes the file.
struct FinishedExport {
  TemporaryExport file;
  ExportSummary summary;
  ContentType contentType;
  /// The suggested name without an extension, for example "photo-framed".
  QString title;
};

}  // namespace vantrel
