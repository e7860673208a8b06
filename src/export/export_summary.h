#pragma once

#include <QSizeF>
#include <QString>
#include <cstdint>
#include <optional>

namespace vantrel {

/// What a finished export reports.
struct ExportSummary {
  /// The label of the codec, or of the format for an image.
  QString codec;
  /// Requested megabits per second; 0 for an image.
  double bitrate = 0;
  int64_t bytes = 0;
  /// Seconds that the export took; 0 for an image.
  double elapsed = 0;
  bool isHDR = false;
  /// Output size in pixels.
  QSizeF resolution;
  /// The label of the image format; absent for a video.
  std::optional<QString> imageFormat;

  /// The line over a finished export, for example "PNG · 640 × 480 px · 1.2 MB".
  [[nodiscard]] QString description() const;
};

}  // namespace vantrel
