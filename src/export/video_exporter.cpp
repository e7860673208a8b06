#include "export/video_exporter.h"

#include <QtGlobal>
#include <string>
#include <vector>

#include "base/cancelled.h"
#include "base/failure.h"
#include "export/file_size_poll.h"
#include "export/finished_export.h"
#include "export/movie_transfer.h"
#include "export/video_export_settings.h"
#include "export/working_folder.h"
#include "platform/desktop/file_destination.h"
#include "platform/desktop/this_computer.h"
#include "platform/desktop/user_text.h"
#include "platform/movie/movie_reader.h"
#include "platform/movie/movie_writer.h"

namespace vantrel::VideoExporter {
namespace {

constexpr const char* kWorkingName = "Export.mov";
/// How a video is to be exported, found to make sense.
struct Plan {
  MovieTrack track;
  VideoOutputSettings output;
  VideoInputSettings input;
};

Plan planOf(const Movie& movie, const QRectF& crop, const EncodingSettings& settings) {
  const VideoGeometry found = geometry(movie);
  if (!isLegalCrop(crop, found.bounds)) {
    throw Failure(QT_TRANSLATE_NOOP(
        "Failure",
        "The crop must fit inside the video and have even dimensions of at least two pixels."));
  }
  const CropVideoColor color = colorInfo(found.track);
  if (color.isHDR() && settings.codec != EncodingSettings::Codec::hevc) {
    throw Failure(QT_TRANSLATE_NOOP(
        "Failure", "HDR video requires HEVC. Select HEVC to preserve the video's dynamic range."));
  }
  if (!settings.isValid())
    throw Failure(QT_TRANSLATE_NOOP("Failure", "Choose a positive supported video bitrate."));
  return {found.track, videoOutputSettings(found, crop, color),
          videoInputSettings(found.track, crop, settings, color)};
}

TrackTransfer addVideo(MovieReader& reader, MovieWriter& writer, const Plan& plan) {
  if (!writer.canApply(plan.input)) {
    throw Failure(failureText(
        QT_TRANSLATE_NOOP("Failure", "This codec or encoding configuration is unavailable on %1."),
        failureText(thisComputer())));
  }
  if (!reader.canAdd(plan.track, plan.output) || !writer.canAdd(plan.input)) {
    throw Failure(QT_TRANSLATE_NOOP("Failure", "Cannot configure the video pipeline."));
  }
  return {&reader.addVideoOutput(plan.track, plan.output), &writer.addVideoInput(plan.input)};
}

TrackTransfer addAudio(MovieReader& reader, MovieWriter& writer, const MovieTrack& track) {
  if (!track.hasFormatDescription)
    throw Failure(QT_TRANSLATE_NOOP("Failure", "Cannot read the original audio format."));
  const AudioInputSettings settings = audioInputSettings(track);
  if (!reader.canAdd(track) || !writer.canAdd(settings)) {
    throw Failure(
        QT_TRANSLATE_NOOP("Failure", "The original audio cannot be copied into a MOV file."));
  }
  return {&reader.addAudioOutput(track), &writer.addAudioInput(settings)};
}

/// Writes with `writer`; returns the number of the movie's pictures.
int64_t encode(const Movie& movie, const Plan& plan, MovieWriter& writer, const Progress& progress,
               const std::stop_token& stop) {
  writer.setShouldOptimizeForNetworkUse(true);
  writer.setMovieTimescale(movie.timescale());
  MovieReader reader(movie);
  std::vector<TrackTransfer> tracks{addVideo(reader, writer, plan)};
  for (const MovieTrack& track : movie.tracks(MovieTrack::Kind::Audio))
    tracks.push_back(addAudio(reader, writer, track));
  return transferMovie(reader, writer, tracks, movie.duration(), progress, stop);
}

VideoExportReport writePlanned(const Movie& movie, const Plan& plan,
                               const FileDestination& destination, const FileSize& fileSize,
                               const Progress& progress, const std::stop_token& stop) {
  const WorkingFolder folder(destination);
  const std::filesystem::path file = folder.path() / kWorkingName;
  VideoExportReport report;
  {
    MovieWriter writer(file, destination.name());
    const FileSizePoll poll(folder.path(), fileSize);
    report.frames = encode(movie, plan, writer, progress, stop);
  }
  throwIfCancelled(stop);
  destination.take(file, destination.oldPermissions());
  if (fileSize) fileSize(fileSizeOf(destination.path()));
  if (progress) progress(1);
  return report;
}

}  // namespace

VideoExportReport write(const Movie& source, const std::filesystem::path& destination,
                        const QRectF& crop, const EncodingSettings& settings,
                        const FileSize& fileSize, const Progress& progress,
                        const std::stop_token& stop, const std::filesystem::path& name) {
  throwIfCancelled(stop);
  try {
    const Plan plan = planOf(source, crop, settings);
    return writePlanned(source, plan, FileDestination(destination, name), fileSize, progress, stop);
  } catch (...) {
    throwIfCancelled(stop);
    throw;
  }
}

VideoExportReport write(const std::filesystem::path& source,
                        const std::filesystem::path& destination, const QRectF& crop,
                        const EncodingSettings& settings, const FileSize& fileSize,
                        const Progress& progress, const std::stop_token& stop,
                        const std::filesystem::path& name) {
  return write(Movie::open(source, stop), destination, crop, settings, fileSize, progress, stop,
               name);
}

}  // namespace vantrel::VideoExporter
