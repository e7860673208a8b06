#include "tools/crop_video_once.h"

#include <algorithm>
#include <cinttypes>
#include <cmath>
#include <cstdio>

#include "export/finished_export.h"
#include "export/video_exporter.h"

namespace vantrel {
namespace {

constexpr double kBitsPerMegabit = 1'000'000;

/// HEVC at the rate of the source, unless something else was asked for.
EncodingSettings settingsOf(const CropOnceOptions& options, const MovieTrack& track) {
  EncodingSettings settings;
  const double rate = track.estimatedDataRate / kBitsPerMegabit;
  if (std::isfinite(rate) && rate > 0) {
    settings.megabitsPerSecond =
        std::clamp(rate, EncodingSettings::kLowestMbps, EncodingSettings::kHighestMbps);
  }
  settings.codec = options.codec.value_or(settings.codec);
  settings.megabitsPerSecond = options.megabitsPerSecond.value_or(settings.megabitsPerSecond);
  return settings;
}

// A line is written in one call, so that those of several threads stay whole.
void printBytes(int64_t bytes) {
  std::fprintf(stderr, "bytes %" PRId64 "\n", bytes);
}

void printProgress(double fraction) {
  std::fprintf(stderr, "progress %.4f\n", fraction);
}

}  // namespace

QJsonObject cropVideoOnce(const CropOnceOptions& options, const std::stop_token& stop) {
  const Movie movie = Movie::open(options.source, stop);
  const VideoGeometry geometry = VideoExporter::geometry(movie);
  // What does not fit is for the exporter to refuse.
  const QRectF crop = options.crop(geometry.bounds.size(), 2).value_or(QRectF());
  const EncodingSettings settings = settingsOf(options, geometry.track);
  VideoExporter::FileSize fileSize;
  VideoExporter::Progress progress;
  if (options.progress) {
    fileSize = printBytes;
    progress = printProgress;
  }
  const VideoExportReport report =
      VideoExporter::write(movie, options.destination, crop, settings, fileSize, progress, stop);
  return {{QStringLiteral("kind"), QStringLiteral("video")},
          {QStringLiteral("width"), static_cast<qint64>(crop.width())},
          {QStringLiteral("height"), static_cast<qint64>(crop.height())},
          {QStringLiteral("bytes"), static_cast<qint64>(fileSizeOf(options.destination))},
          {QStringLiteral("frames"), static_cast<qint64>(report.frames)},
          {QStringLiteral("codec"), EncodingSettings::rawValue(settings.codec)},
          {QStringLiteral("hdr"), VideoExporter::colorInfo(geometry.track).isHDR()}};
}

}  // namespace vantrel
