#pragma once

#include <QJsonObject>
#include <stop_token>

#include "tools/crop_once_options.h"

namespace vantrel {

/// Crops a video; returns what is to be reported. Where the options ask for it, lines "progress
/// FRACTION" and "bytes SIZE" go to standard error in the meantime. Throws what
/// VideoExporter::write throws.
[[nodiscard]] QJsonObject cropVideoOnce(const CropOnceOptions& options,
                                        const std::stop_token& stop);

}  // namespace vantrel
