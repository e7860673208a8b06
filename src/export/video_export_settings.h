#pragma once

#include <QRectF>

#include "export/video_geometry.h"
#include "model/encoding_settings.h"
#include "platform/movie/movie_reader.h"
#include "platform/movie/movie_writer.h"

// How the tracks of an export are read and written. Rules without effects; any thread. A crop is
// truncated to whole pixels.
namespace vantrel::VideoExporter {

/// Whether the crop lies in `bounds` and has even dimensions of at least 2.
[[nodiscard]] bool isLegalCrop(const QRectF& crop, const QRectF& bounds);

/// The tags of the written pictures, all three specified: those of the source, with ITU-R BT.2020
/// where an HDR source has none, and BT.709 where another has none. Written pictures are never RGB.
[[nodiscard]] ColorTags writtenColor(const CropVideoColor& source);

/// Turned upright and with the crop's corner at the origin; ten bits for HDR.
[[nodiscard]] VideoOutputSettings videoOutputSettings(const VideoGeometry& geometry,
                                                      const QRectF& crop,
                                                      const CropVideoColor& color);

[[nodiscard]] VideoInputSettings videoInputSettings(const MovieTrack& track, const QRectF& crop,
                                                    const EncodingSettings& settings,
                                                    const CropVideoColor& color);

/// All that a copied audio track keeps of the source.
[[nodiscard]] AudioInputSettings audioInputSettings(const MovieTrack& track);

}  // namespace vantrel::VideoExporter
