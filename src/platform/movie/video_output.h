#pragma once

#include <optional>

#include "platform/movie/frame_cropper.h"
#include "platform/movie/picture_decoder.h"
#include "platform/movie/reading_state.h"

namespace vantrel {

/// Decodes and crops on the thread that takes the samples, behind the threads of the decoder, which
/// work a few pictures ahead. `state` outlives it.
class VideoOutput final : public SampleOutput {
 public:
  /// Throws what PictureDecoder throws, and MovieError for a file that is shorter than it says.
  VideoOutput(ReadingState& state, const Movie& movie, const MovieTrack& track,
              const VideoOutputSettings& settings);

  [[nodiscard]] std::optional<MovieSample> copyNextSample() override;

 private:
  /// None at the end of the track.
  [[nodiscard]] std::optional<MovieSample> next();

  ReadingState& m_state;
  PictureDecoder m_pictures;
  FrameCropper m_cropper;
  bool m_isCompleted = false;
};

}  // namespace vantrel
