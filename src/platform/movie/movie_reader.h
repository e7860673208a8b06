#pragma once

#include <memory>

#include "platform/movie/movie.h"
#include "platform/movie/sample_flow.h"

namespace vantrel {

/// What pictures a video output gives: 4:2:0 of video range, three planes.
struct VideoOutputSettings {
  /// From the stored frame with square pixels (MovieTrack::naturalSize) to the output: a quarter
  /// turn or mirror and a shift by whole pixels. What falls outside the output is cropped away.
  AffineTransform transform;
  /// Size of the output in pixels, even, at least 2.
  int width = 0, height = 0;
  /// Ten bits a sample instead of eight.
  bool tenBit = false;
  /// Where the chroma samples of the output lie.
  ChromaSiting chromaSiting = ChromaSiting::Left;
  /// The matrix for sources that are RGB (ITU-T H.273).
  int matrixForRgb = 1;
};

/// Reads the chosen tracks of one movie, each with a demuxer of its own, so that none can starve
/// another. Adding outputs and starting are for one thread; status, error and cancelling for any;
/// each output for one thread, which does its work.
class MovieReader final : public ReadingSession {
 public:
  /// Opens nothing yet.
  explicit MovieReader(const Movie& movie);
  ~MovieReader() override;

  /// Whether an output for the track can be added: false if nothing decodes it, or, for video, if
  /// the settings make no sense.
  [[nodiscard]] bool canAdd(const MovieTrack& track, const VideoOutputSettings& settings) const;
  [[nodiscard]] bool canAdd(const MovieTrack& track) const;

  /// Decoded pictures, turned and cropped, each shown frame once, in the order of their times.
  /// Before `startReading`. Throws MovieError, std::system_error or, once cancelled, Cancelled.
  SampleOutput& addVideoOutput(const MovieTrack& track, const VideoOutputSettings& settings);
  /// The packets as they stand, with nothing trimmed by edit lists. Before `startReading`. Throws
  /// as addVideoOutput does.
  SampleOutput& addAudioOutput(const MovieTrack& track);

  [[nodiscard]] bool startReading() override;
  void cancelReading() override;
  /// Completed once every output has given all that the file promised. Failed when a file ends
  /// before its index does, when packets are lost, or when more than a few frames are.
  [[nodiscard]] Status status() const override;
  [[nodiscard]] std::exception_ptr error() const override;

 private:
  class Session;
  std::unique_ptr<Session> m_session;
};

}  // namespace vantrel
