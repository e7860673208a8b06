#pragma once

#include <QString>
#include <cstdint>
#include <filesystem>

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

/// The title of an export: the source's file name without its last extension, and "-framed".
[[nodiscard]] QString exportTitle(const std::filesystem::path& sourcePath);

/// A file name for an export: its title with the extension, unless it ends in that already. What
/// no file system would take for its length loses the end of what stands before "-framed".
[[nodiscard]] QString proposedFileName(const QString& title, const QString& extension);

/// The size of a file in bytes; 0 if it is not known.
[[nodiscard]] int64_t fileSizeOf(const std::filesystem::path& file);

}  // namespace vantrel
