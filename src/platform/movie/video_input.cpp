#include "platform/movie/video_input.h"

extern "C" {
#include <libavutil/mathematics.h>
}

#include <algorithm>
#include <cmath>
#include <utility>

#include "base/cancelled.h"
#include "platform/movie/hdr_side_data.h"
#include "platform/movie/movie_error.h"
#include "platform/movie/sample_content.h"
#include "platform/movie/shown_span.h"

namespace vantrel {
namespace {

/// Damage alone explains more ticks.
constexpr int64_t kMostTicks = int64_t{1} << 55;

bool isBelievable(int64_t ticks) {
  return -kMostTicks < ticks && ticks < kMostTicks;
}

}  // namespace

VideoInput::VideoInput(std::filesystem::path file, const VideoInputSettings& settings,
                       WritingState& state, TrackPace& pace)
    : m_file(std::move(file)),
      m_settings(settings),
      m_state(state),
      m_pace(pace),
      m_track(pace.add()) {}

VideoInput::~VideoInput() {
  waitForEnd();
}

void VideoInput::addStream(MovieMuxer& muxer) {
  if (!m_encoder)
    m_encoder.emplace(VideoEncoder::open(m_file, m_settings, encoderCandidates(m_settings)));
  m_muxer = &muxer;
  m_stream = &muxer.addStream(m_encoder->parameters());
  if (m_settings.isHdr) addHdrSideData(*m_stream, m_settings.hdrMetadata);
}

void VideoInput::startEncoding() {
  m_thread = std::thread([this] {
    try {
      encodeAll();
    } catch (const Cancelled&) {
      // Whoever cancelled knows.
    } catch (...) {
      m_state.fail(std::current_exception());
    }
  });
}

void VideoInput::waitForEnd() {
  if (m_thread.joinable()) m_thread.join();
}

std::string VideoInput::encoderName() const {
  return m_encoder ? m_encoder->name() : std::string();
}

bool VideoInput::isReadyForMoreMediaData() const {
  std::unique_lock lock(m_mutex);
  const auto hasRoom = [this] { return !m_isFull; };
  if (!m_changed.wait_for(lock, m_state.stopToken(), TrackPace::kPatience, hasRoom)) return false;
  lock.unlock();
  return m_pace.waitToAdvance(m_track, m_state.stopToken());
}

bool VideoInput::append(MovieSample sample) {
  if (!m_state.isWriting()) return false;
  try {
    if (!enqueue(accepted(sample))) return false;
  } catch (...) {
    m_state.fail(std::current_exception());
    return false;
  }
  m_pace.reached(m_track, sample.presentationTime().seconds());
  return true;
}

AvFramePtr VideoInput::accepted(MovieSample& sample) {
  MovieSample::Content* content = sample.content();
  const AVPixelFormat format = m_settings.isHdr ? AV_PIX_FMT_YUV420P10 : AV_PIX_FMT_YUV420P;
  if (!content || !content->frame || content->frame->format != format ||
      content->frame->width != m_settings.width || content->frame->height != m_settings.height) {
    throw MovieError(m_file, FileAction::Save, AVERROR(EINVAL));
  }
  AvFramePtr picture = std::move(content->frame);
  const AVRational ticks{1, m_settings.timescale};
  const int64_t time = av_rescale_q(picture->pts, content->timeBase, ticks);
  picture->pts = isBelievable(time) ? time - inTicks(m_sessionStart) : AV_NOPTS_VALUE;
  if (!isBelievable(picture->pts) || (m_lastTime && picture->pts <= *m_lastTime)) {
    throw MovieError(m_file, FileAction::Save, AVERROR_INVALIDDATA);
  }
  if (!m_firstTime) m_firstTime = picture->pts;
  if (m_lastTime) m_lastGap = picture->pts - *m_lastTime;
  m_lastTime = picture->pts;
  m_lastDuration = isBelievable(inTicks(sample.duration())) ? inTicks(sample.duration()) : 0;
  return picture;
}

bool VideoInput::enqueue(AvFramePtr picture) {
  std::unique_lock lock(m_mutex);
  const bool hasRoom = m_changed.wait(lock, m_state.stopToken(), [this] { return !m_isFull; });
  if (!hasRoom || m_isFinished) return false;
  m_queue.push_back(std::move(picture));
  m_isFull = m_queue.size() == kQueueLength;
  if (m_isEmpty && m_queue.size() >= kBatch) {
    m_isEmpty = false;
    m_changed.notify_all();
  }
  return true;
}

void VideoInput::markAsFinished() {
  m_pace.finish(m_track);
  const std::lock_guard lock(m_mutex);
  m_isFinished = true;
  m_changed.notify_all();
}

AvFramePtr VideoInput::dequeue() {
  std::unique_lock lock(m_mutex);
  m_isEmpty = m_isEmpty || m_queue.empty();
  m_changed.wait(lock, m_state.stopToken(), [this] { return !m_isEmpty || m_isFinished; });
  throwIfCancelled(m_state.stopToken());
  if (m_queue.empty()) return nullptr;
  AvFramePtr picture = std::move(m_queue.front());
  m_queue.pop_front();
  if (m_isFull && m_queue.size() + kBatch <= kQueueLength) {
    m_isFull = false;
    m_changed.notify_all();
  }
  return picture;
}

void VideoInput::encodeAll() {
  KeyFrameRule rule(std::llround(m_settings.maxKeyFrameInterval * m_settings.timescale));
  AvFramePtr picture = dequeue();
  if (!picture) return;
  while (picture) {
    AvFramePtr next = dequeue();
    const bool isKeyFrame =
        rule.isKeyFrame(picture->pts, next ? std::optional(next->pts) : std::nullopt);
    m_encoder->send(std::move(picture), isKeyFrame);
    writePackets();
    picture = std::move(next);
  }
  m_encoder->sendEnd();
  writePackets();
}

void VideoInput::writePackets() {
  while (const AvPacketPtr packet = m_encoder->receive()) {
    throwIfCancelled(m_state.stopToken());
    if (!m_origin) m_origin = packet->dts;
    av_packet_rescale_ts(packet.get(), m_encoder->timeBase(), m_stream->time_base);
    m_muxer->write(*packet, m_stream->index);
  }
}

std::optional<QuickTimeTrackChange> VideoInput::change(MediaTime end,
                                                       int32_t movieTimescale) const {
  if (!m_origin) return std::nullopt;
  QuickTimeTrackChange change;
  change.trackID = static_cast<uint32_t>(m_stream->id);
  change.metadata = quickTimeMetadataBox(m_settings.metadata);
  const int64_t shown = shownEnd(end);
  change.mediaEnd = shown - *m_origin;
  change.edits = editsShowing(*m_firstTime, shown, *m_origin, m_settings.timescale, movieTimescale);
  return change;
}

int64_t VideoInput::shownEnd(MediaTime end) const {
  if (m_lastDuration > 0) return *m_lastTime + m_lastDuration;
  const int64_t toMovieEnd = inTicks(end) - inTicks(m_sessionStart) - *m_lastTime;
  return *m_lastTime + std::max<int64_t>(toMovieEnd > 0 ? toMovieEnd : m_lastGap, 1);
}

int64_t VideoInput::inTicks(MediaTime time) const {
  return time.isValid() ? av_rescale(time.ticks, m_settings.timescale, time.timescale) : 0;
}

}  // namespace vantrel
