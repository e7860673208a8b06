#pragma once

#include <QRectF>
#include <filesystem>
#include <stop_token>

#include "media/image_source.h"
#include "model/image_encoding_settings.h"

namespace vantrel::ImageExporter {

/// Writes the part `crop` (whole pixels of the upright image) of `source` to `destination`.
/// Blocking, any thread. On return the file is complete. Throws ImageError::invalidCrop,
/// ImageError::encodingFailed or Cancelled; a file left behind then is the caller's to delete.
void write(const ImageSource& source, const std::filesystem::path& destination, const QRectF& crop,
           const ImageEncodingSettings& settings, const std::stop_token& stop = {});

}  // namespace vantrel::ImageExporter
