#include "export/finished_export.h"

#include <system_error>

#include "platform/desktop/file_error.h"

namespace vantrel {

QString exportTitle(const std::filesystem::path& sourcePath) {
  return displayName(sourcePath.stem()) + QStringLiteral("-framed");
}

int64_t fileSizeOf(const std::filesystem::path& file) {
  std::error_code error;
  const std::uintmax_t size = std::filesystem::file_size(file, error);
  return error ? 0 : static_cast<int64_t>(size);
}

}  // namespace vantrel
