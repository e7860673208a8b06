#pragma once

#include <filesystem>

namespace vantrel {

/// Whether the outermost elements of a Matroska, WebM or RIFF (AVI, WAV) file end inside the file.
/// True for other files, and for those whose writer could not tell their length. Throws
/// std::system_error when the file cannot be read. Blocking, any thread.
[[nodiscard]] bool containerIsWhole(const std::filesystem::path& path);

/// Whether an MPEG transport stream (ISO/IEC 13818-1) does not end within a packet. Throws as
/// containerIsWhole does.
[[nodiscard]] bool transportIsWhole(const std::filesystem::path& path);

}  // namespace vantrel
