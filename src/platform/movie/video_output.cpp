#include "platform/movie/video_output.h"

#include <utility>

#include "platform/movie/sample_content.h"

namespace vantrel {

VideoOutput::VideoOutput(ReadingState& state, const Movie& movie, const MovieTrack& track,
                         const VideoOutputSettings& settings)
    : m_state(state),
      m_pictures(movie, track, state.stopToken()),
      m_cropper(settings, track.naturalSize) {
  m_pictures.requireWholeFile();
}

std::optional<MovieSample> VideoOutput::copyNextSample() {
  if (!m_state.isReading() || m_isCompleted) return {};
  std::optional<MovieSample> sample;
  try {
    sample = next();
  } catch (...) {
    m_state.fail(std::current_exception());
    return {};
  }
  // What is ready is not given any more either.
  if (!m_state.isReading()) return {};
  if (!sample) {
    m_isCompleted = true;
    m_state.completeOutput();
  }
  return sample;
}

std::optional<MovieSample> VideoOutput::next() {
  const std::optional<DecodedPicture> picture = m_pictures.next();
  if (!picture) return {};
  auto content = std::make_unique<MovieSample::Content>();
  content->frame = m_cropper.crop(*picture->frame);
  content->timeBase = {1, picture->time.timescale};
  return MovieSample(picture->time, picture->duration, std::move(content));
}

}  // namespace vantrel
