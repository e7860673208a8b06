#pragma once

#include <filesystem>

#include "platform/desktop/file_descriptor.h"

namespace vantrel {

/// Opens a file for reading if it has contents of its own. A directory, a pipe, a socket and a
/// device are refused without being opened, so that nothing blocks. Throws std::system_error. Any
/// thread.
[[nodiscard]] FileDescriptor openRegularFile(const std::filesystem::path& path);

}  // namespace vantrel
