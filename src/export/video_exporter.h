#pragma once

#include <QRectF>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <stop_token>

#include "export/sample_transfer.h"
#include "export/video_geometry.h"
#include "model/encoding_settings.h"
#include "platform/movie/movie.h"

namespace vantrel {

/// What a finished export knows of itself.
struct VideoExportReport {
  /// Pictures in the written movie.
  int64_t frames = 0;
};

namespace VideoExporter {

/// Size of the output so far, in bytes.
using FileSize = std::function<void(int64_t)>;

/// Encodes the part `crop` (pixels of the upright picture) of a movie anew, copies its sound as it
/// is, and puts the finished QuickTime movie at `destination`, which until then stands untouched.
/// It may be the source itself.
///
/// `fileSize` is told about five times a second and at the end, `progress` at every percent at
/// most; both from several threads, and neither may throw. Either may ask `stop` to stop. `name`
/// stands for the destination in errors, if it is to be known by another name.
///
/// Blocking, any thread. Throws Failure, MovieError, std::system_error or Cancelled; a request to
/// stop that comes before the destination is replaced always ends in Cancelled. Nothing is left
/// behind then.
VideoExportReport write(const Movie& source, const std::filesystem::path& destination,
                        const QRectF& crop, const EncodingSettings& settings,
                        const FileSize& fileSize = {}, const Progress& progress = {},
                        const std::stop_token& stop = {}, const std::filesystem::path& name = {});

/// The same for a file that is not yet open.
VideoExportReport write(const std::filesystem::path& source,
                        const std::filesystem::path& destination, const QRectF& crop,
                        const EncodingSettings& settings, const FileSize& fileSize = {},
                        const Progress& progress = {}, const std::stop_token& stop = {},
                        const std::filesystem::path& name = {});

}  // namespace VideoExporter
}  // namespace vantrel
