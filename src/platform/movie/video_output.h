#pragma once

#include <condition_variable>
#include <deque>
#include <mutex>
#include <optional>
#include <thread>

#include "platform/movie/frame_cropper.h"
#include "platform/movie/picture_decoder.h"
#include "platform/movie/reading_state.h"

namespace vantrel {

/// Decodes and crops on a thread of its own, a few pictures ahead. `state` outlives it, and must
/// have ended, or all samples be taken, when it is destroyed: the destructor joins.
class VideoOutput final : public SampleOutput {
 public:
  /// Throws what PictureDecoder throws, and MovieError for a file that is shorter than it says.
  VideoOutput(ReadingState& state, const Movie& movie, const MovieTrack& track,
              const VideoOutputSettings& settings);

  /// Once. Throws std::system_error.
  void start();
  [[nodiscard]] std::optional<MovieSample> copyNextSample() override;

 private:
  /// Pictures that wait to be taken.
  static constexpr size_t kQueueLength = 1;

  void decode();
  /// False when reading has ended.
  [[nodiscard]] bool append(MovieSample sample);

  ReadingState& m_state;
  // The thread's own once it runs.
  PictureDecoder m_pictures;
  FrameCropper m_cropper;
  // Both threads.
  std::mutex m_mutex;
  std::condition_variable_any m_changed;
  // Under m_mutex.
  std::deque<MovieSample> m_queue;
  bool m_hasAll = false;
  // The taking thread's own.
  bool m_isCompleted = false;

  /// Last, so that it is joined before anything goes.
  std::jthread m_thread;
};

}  // namespace vantrel
