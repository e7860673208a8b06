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

void VideoOutput::start() {
  m_thread = std::jthread([this] { decode(); });
}

void VideoOutput::decode() {
  try {
    while (auto picture = m_pictures.next()) {
      auto content = std::make_unique<MovieSample::Content>();
      content->frame = m_cropper.crop(*picture->frame);
      content->timeBase = {1, picture->time.timescale};
      if (!append({picture->time, picture->duration, std::move(content)})) return;
    }
  } catch (...) {
    m_state.fail(std::current_exception());
    return;
  }
  const std::lock_guard lock(m_mutex);
  m_hasAll = true;
  m_changed.notify_all();
}

bool VideoOutput::append(MovieSample sample) {
  std::unique_lock lock(m_mutex);
  const auto hasRoom = [this] { return m_queue.size() < kQueueLength; };
  if (!m_changed.wait(lock, m_state.stopToken(), hasRoom)) return false;
  m_queue.push_back(std::move(sample));
  m_changed.notify_all();
  return true;
}

std::optional<MovieSample> VideoOutput::copyNextSample() {
  std::unique_lock lock(m_mutex);
  if (!m_state.isReading()) return {};
  const auto isReady = [this] { return !m_queue.empty() || m_hasAll; };
  // What is ready is not given any more either.
  if (!m_changed.wait(lock, m_state.stopToken(), isReady) || !m_state.isReading()) return {};
  if (m_queue.empty()) {
    if (!std::exchange(m_isCompleted, true)) m_state.completeOutput();
    return {};
  }
  std::optional<MovieSample> sample(std::move(m_queue.front()));
  m_queue.pop_front();
  m_changed.notify_all();
  return sample;
}

}  // namespace vantrel
