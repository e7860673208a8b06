#pragma once

#include <QRectF>
#include <QSizeF>
#include <QTransform>
#include <vector>

#include "export/crop_video_color.h"
#include "platform/movie/movie.h"

namespace vantrel {

/// Where the picture of a video stands. Crops count in `bounds`.
struct VideoGeometry {
  /// The first video track; others are never looked at.
  MovieTrack track;
  /// At (0, 0), as large as the picture is displayed, upright.
  QRectF bounds;
  /// From the stored frame with square pixels into `bounds`.
  QTransform transform;
};

namespace VideoExporter {

/// Throws Failure if the movie has no video track. Any thread.
[[nodiscard]] VideoGeometry geometry(const Movie& movie);
/// Of one video track.
[[nodiscard]] VideoGeometry geometry(MovieTrack track);

/// The colour of the first description that is HDR, or else of the first; all absent without any.
/// Any thread.
[[nodiscard]] CropVideoColor colorInfo(const MovieTrack& track);

/// The density record of a crop of the track: as large as the crop in pixels, with the source's
/// ratio of points to pixels. One item, or none if the track has no sound record. Any thread.
[[nodiscard]] std::vector<MovieMetadataItem> displayDensity(const MovieTrack& track,
                                                            const QSizeF& croppedSize);

}  // namespace VideoExporter
}  // namespace vantrel
