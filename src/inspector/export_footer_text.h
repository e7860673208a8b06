#pragma once

#include <QString>
#include <cstdint>
#include <optional>

#include "export/crop_export_state.h"

/// What the export footer says.
namespace vantrel::ExportFooterText {

/// What is being done: `progress` is a fraction, whose percentage is cut off, not rounded.
[[nodiscard]] QString phase(double progress, bool indeterminate);

/// The status line: the last outcome, or else the output of the open file, or else "Ready".
[[nodiscard]] QString status(std::optional<CropExportState::Message> message, bool loaded,
                             int64_t outputWidth, int64_t outputHeight,
                             const QString& encodingName);

/// How the canvas is used, in four lines.
[[nodiscard]] QString help();

}  // namespace vantrel::ExportFooterText
