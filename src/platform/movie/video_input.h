#pragma once

#include <condition_variable>
#include <deque>
#include <exception>
#include <filesystem>
#include <mutex>
#include <optional>
#include <thread>

#include "platform/movie/key_frame_rule.h"
#include "platform/movie/movie_muxer.h"
#include "platform/movie/movie_writer.h"
#include "platform/movie/quicktime_finish.h"
#include "platform/movie/track_pace.h"
#include "platform/movie/video_encoder.h"
#include "platform/movie/writing_state.h"

namespace vantrel {

/// Encodes pictures on a thread of its own, behind a short queue, and hands the packets on to the
/// muxer. Once writing has failed or was cancelled, queued pictures are not encoded any more.
class VideoInput final : public SampleInput {
 public:
  /// Pictures that wait for the encoder at most.
  static constexpr size_t kQueueLength = 4;
  /// Whoever finds the queue full or empty sleeps until there is this much to do, in pictures:
  /// waking a thread for each of them costs more processor time.
  static constexpr size_t kBatch = 2;

  /// `file` is named in errors.
  VideoInput(std::filesystem::path file, const VideoInputSettings& settings, WritingState& state,
             TrackPace& pace);
  ~VideoInput() override;

  [[nodiscard]] const VideoInputSettings& settings() const { return m_settings; }

  // Of the writer's thread:

  /// Takes an unused encoder of these settings, so that none need be opened. Before `addStream`.
  void useEncoder(VideoEncoder encoder) { m_encoder.emplace(std::move(encoder)); }
  /// Opens the encoder, before the header is written. Throws MovieError.
  void addStream(MovieMuxer& muxer);
  /// Behind the header.
  void startEncoding();
  /// Waits until everything that was appended is written, or writing has ended.
  void waitForEnd();
  /// Whether there is a picture in the file. After `waitForEnd`.
  [[nodiscard]] bool hasWritten() const { return m_origin.has_value(); }
  [[nodiscard]] std::string encoderName() const;
  /// Where the movie starts on the samples' time line.
  void setStart(MediaTime start) { m_sessionStart = start; }
  /// What rewriting is to make of the track; absent if nothing was written. `end` of the movie
  /// stands in for a last picture's duration that nobody knows. After `waitForEnd`.
  [[nodiscard]] std::optional<QuickTimeTrackChange> change(MediaTime end,
                                                           int32_t movieTimescale) const;

  [[nodiscard]] bool isReadyForMoreMediaData() const override;
  [[nodiscard]] bool append(MovieSample sample) override;
  void markAsFinished() override;

 private:
  /// Takes the sample's picture, with its `pts` in ticks of the track. Throws MovieError for one
  /// that does not fit.
  [[nodiscard]] AvFramePtr accepted(MovieSample& sample);
  [[nodiscard]] bool enqueue(AvFramePtr picture);
  void encodeAll();
  /// The next picture, waiting for it; null when there are no more. Throws Cancelled.
  [[nodiscard]] AvFramePtr dequeue();
  void writePackets();
  [[nodiscard]] int64_t shownEnd(MediaTime end) const;
  [[nodiscard]] int64_t inTicks(MediaTime time) const;

  std::filesystem::path m_file;
  VideoInputSettings m_settings;
  WritingState& m_state;
  TrackPace& m_pace;
  size_t m_track = 0;
  MediaTime m_sessionStart;
  MovieMuxer* m_muxer = nullptr;
  /// The muxer's.
  AVStream* m_stream = nullptr;

  // Of the thread that appends, in ticks:
  std::optional<int64_t> m_firstTime, m_lastTime;
  int64_t m_lastGap = 0, m_lastDuration = 0;

  mutable std::mutex m_mutex;
  mutable std::condition_variable_any m_changed;
  // Under m_mutex:
  std::deque<AvFramePtr> m_queue;
  bool m_isFinished = false;
  /// From when it was found so until a batch has gone, or has come.
  bool m_isFull = false, m_isEmpty = true;

  // Of the encoding thread while it runs:
  std::optional<VideoEncoder> m_encoder;
  /// Decoding time of the first packet.
  std::optional<int64_t> m_origin;

  std::thread m_thread;
};

}  // namespace vantrel
