#pragma once

#include <cstddef>
#include <string>

#include "export/export_temporary_storage.h"
#include "support/temporary_folder.h"

namespace vantrel::testing {

/// How many exports lie in the session folder.
inline size_t waitingExports() {
  size_t count = 0;
  for (const std::string& name : namesIn(ExportTemporaryStorage::shared().directory())) {
    if (name.starts_with("Vantrel-")) ++count;
  }
  return count;
}

}  // namespace vantrel::testing
