#include "platform/movie/frame_decoder.h"

#include <QtGlobal>
#include <algorithm>
#include <cstdlib>

#include "platform/movie/coded_format.h"
#include "platform/movie/movie_error.h"

namespace vantrel {
namespace {

/// Lost pictures that are tolerated: a part of all packets, and in short films this many.
constexpr int64_t kTolerablePart = 100;
constexpr int64_t kTolerableCount = 8;
/// Decoders hold back fewer pictures than this (H.264 and HEVC: 16, and one for each thread).
constexpr size_t kMostPending = 1024;
/// Times beyond are damage. Keeps sums and products of times within 64 bits.
constexpr int64_t kLatestTime = int64_t{1} << 52;
/// Packets in front of the first key frame that are passed over; some streams mark none.
constexpr int kMostBeforeKeyFrame = 600;
/// Seconds that are decoded rather than sought past where the file has no index.
constexpr int64_t kNotWorthSeeking = 1;
/// How far before the wanted time a seek begins once more, in seconds.
constexpr int64_t kFirstStepBack = 2;

bool isTime(int64_t time) {
  return time != AV_NOPTS_VALUE && std::abs(time) <= kLatestTime;
}

/// Whether libavcodec's decoder knows which pictures no other needs: what HEVC marks as such may
/// still be needed by its higher temporal layers, whose number the decoder configuration tells
/// (ISO/IEC 14496-15, 8.3.3.1.2).
bool canPassOver(const AVCodecParameters& parameters) {
  if (parameters.codec_id != AV_CODEC_ID_HEVC) return true;
  constexpr int kLayersAt = 21, kConfigurationSize = 23;
  if (parameters.extradata_size < kConfigurationSize || parameters.extradata[0] != 1) return false;
  return (parameters.extradata[kLayersAt] >> 3 & 7) == 1;
}

AvCodecContextPtr openDecoder(const Demuxer& demuxer, const AVCodecParameters& parameters) {
  const AVCodec* codec = avcodec_find_decoder(parameters.codec_id);
  if (!codec) demuxer.fail(QT_TRANSLATE_NOOP("Failure", "Nothing decodes its pictures"));
  auto context = owned<AvCodecContextPtr>(avcodec_alloc_context3(codec));
  if (avcodec_parameters_to_context(context.get(), &parameters) < 0) throw std::bad_alloc();
  context->max_pixels = MovieInput::kMaxPixels;
  context->pkt_timebase = demuxer.stream().time_base;
  context->thread_count = 0;
  context->thread_type = FF_THREAD_FRAME | FF_THREAD_SLICE;
  // Else the decoder rounds the left edge of its crop down for the sake of speed.
  context->flags |= AV_CODEC_FLAG_UNALIGNED;
  // Else H.264's decoder, which drops the pictures in front of a key frame that need the one
  // before, ends at such a picture when it is drained soon after a seek.
  if (parameters.codec_id == AV_CODEC_ID_H264) context->flags |= AV_CODEC_FLAG_OUTPUT_CORRUPT;
  if (avcodec_open2(context.get(), codec, nullptr) < 0) {
    demuxer.fail(QT_TRANSLATE_NOOP("Failure", "Its pictures cannot be decoded"));
  }
  return context;
}

}  // namespace

FrameDecoder::FrameDecoder(const Movie& movie, const MovieTrack& track, const std::stop_token& stop)
    : m_demuxer(movie, track, stop),
      m_decoder(openDecoder(m_demuxer, *track.format->parameters)),
      m_canPassOver(canPassOver(*track.format->parameters)) {}

int64_t FrameDecoder::durationOf(const AVFrame& frame) {
#if LIBAVUTIL_VERSION_INT >= AV_VERSION_INT(57, 30, 100)
  const int64_t duration = frame.duration;
#else
  const int64_t duration = frame.pkt_duration;
#endif
  return std::clamp<int64_t>(duration, 0, kLatestTime);
}

AvFramePtr FrameDecoder::next() {
  if (m_ahead) return std::move(m_ahead);
  while (true) {
    if (AvFramePtr frame = receive()) {
      setTime(*frame);
      if (frame->pts < m_earliestTime) continue;
      ++m_pictures;
      return frame;
    }
    if (send()) continue;
    if (m_failure) std::rethrow_exception(m_failure);
    return nullptr;
  }
}

AvFramePtr FrameDecoder::receive() {
  AvFramePtr frame = makeFrame();
  // Each failure takes a packet with it; a decoder that fails without end is as good as empty.
  for (size_t attempt = 0; attempt < kMostPending; ++attempt) {
    const int code = avcodec_receive_frame(m_decoder.get(), frame.get());
    if (code >= 0) return frame;
    if (code == AVERROR(EAGAIN) || code == AVERROR_EOF) break;
    if (code == AVERROR(ENOMEM)) throw std::bad_alloc();
    ++m_lost;
    if (!m_decodingTimes.empty()) m_decodingTimes.pop_front();
  }
  return nullptr;
}

bool FrameDecoder::send() {
  if (m_isDraining) return false;
  if (!readWanted()) {
    m_isDraining = true;
    avcodec_send_packet(m_decoder.get(), nullptr);
    return true;
  }
  m_hasPacket = false;
  ++m_packets;
  countLost(*m_packet);
  noteTimeOf(*m_packet);
  chooseDiscard(*m_packet);
  // What `receive` has emptied takes a packet; any failure is about the packet's content.
  const int code = avcodec_send_packet(m_decoder.get(), m_packet.get());
  if (code == AVERROR(ENOMEM)) throw std::bad_alloc();
  if (code < 0) {
    ++m_lost;
    if (!m_decodingTimes.empty()) m_decodingTimes.pop_front();
  }
  return true;
}

bool FrameDecoder::readWanted() {
  try {
    while (!m_hasPacket && m_demuxer.read(*m_packet))
      m_hasPacket = isWanted(*m_packet);
  } catch (const MovieError&) {
    m_failure = std::current_exception();
  }
  return m_hasPacket;
}

bool FrameDecoder::isWanted(const AVPacket& packet) {
  if (!m_awaitsKeyFrame) return true;
  const bool isKeyFrame = (packet.flags & AV_PKT_FLAG_KEY) != 0;
  if (!isKeyFrame && m_passesOver && ++m_passedOver < kMostBeforeKeyFrame) return false;
  m_awaitsKeyFrame = false;
  if (isKeyFrame && isTime(packet.pts) && m_decoder->codec_id == AV_CODEC_ID_H264) {
    m_earliestTime = packet.pts;
  }
  return true;
}

void FrameDecoder::countLost(const AVPacket& packet) {
  const bool isCorrupt = (packet.flags & AV_PKT_FLAG_CORRUPT) != 0;
  if (isCorrupt) ++m_lost;
  m_sinceCorrupt = isCorrupt ? 0 : std::min(m_sinceCorrupt + 1, kFarFromDamage);
  const bool isTimed = isTime(packet.dts) && packet.duration > 0 && isTime(packet.duration);
  if (m_sinceCorrupt < kFarFromDamage && isTimed && m_decodingEnd != AV_NOPTS_VALUE) {
    m_lost += std::max<int64_t>(0, (packet.dts - m_decodingEnd) / packet.duration);
  }
  m_decodingEnd = isTimed ? packet.dts + packet.duration : AV_NOPTS_VALUE;
}

void FrameDecoder::noteTimeOf(const AVPacket& packet) {
  if (m_times == Times::Unknown) {
    m_times = isTime(packet.pts) ? Times::OfPresentation : Times::OfDecoding;
  }
  if (m_times == Times::OfPresentation) return;
  const int64_t time = isTime(packet.dts) ? packet.dts : m_nextDecodingTime;
  m_nextDecodingTime = time + std::clamp<int64_t>(packet.duration, 1, kLatestTime);
  m_decodingTimes.push_back(time);
  if (m_decodingTimes.size() > kMostPending) m_decodingTimes.pop_front();
}

void FrameDecoder::chooseDiscard(const AVPacket& packet) {
  const bool isTimed = m_times == Times::OfPresentation && isTime(packet.pts) &&
                       packet.duration > 0 && isTime(packet.duration);
  const bool mayGo = isTimed && m_passOver.mayLeaveOut(packet.pts, packet.duration);
  m_decoder->skip_frame = mayGo ? AVDISCARD_NONREF : AVDISCARD_DEFAULT;
}

void FrameDecoder::setTime(AVFrame& frame) {
  int64_t time = frame.pts;
  if (m_times == Times::OfDecoding) {
    time = AV_NOPTS_VALUE;
    if (!m_decodingTimes.empty()) {
      time = m_decodingTimes.front();
      m_decodingTimes.pop_front();
    }
  }
  if (!isTime(time)) time = frame.best_effort_timestamp;
  if (!isTime(time)) time = m_nextTime;
  if (m_lastTime != AV_NOPTS_VALUE) time = std::max(time, m_lastTime + 1);
  frame.pts = time;
  m_lastTime = time;
  m_nextTime = time + std::max<int64_t>(1, durationOf(frame));
}

void FrameDecoder::restart() {
  avcodec_flush_buffers(m_decoder.get());
  m_ahead.reset();
  m_isDraining = m_hasPacket = false;
  m_failure = nullptr;
  m_decodingTimes.clear();
  m_lastTime = AV_NOPTS_VALUE;
  m_earliestTime = INT64_MIN;
  m_awaitsKeyFrame = m_passesOver = true;
  m_passedOver = 0;
  m_sinceCorrupt = kFarFromDamage;
  m_decodingEnd = AV_NOPTS_VALUE;
  m_passOver.restart();
}

void FrameDecoder::seek(int64_t time) {
  const AVRational timeBase = stream().time_base;
  const int64_t start = stream().start_time;
  int64_t from = time;
  for (int64_t step = 0; time - from <= kLatestTime && m_demuxer.seek(from);) {
    restart();
    if (beginsBy(time)) return;
    if (start == AV_NOPTS_VALUE || from <= start) break;
    // A picture that comes before its key frame needs the key frame before that one.
    const int64_t keyTime = m_hasPacket ? m_packet->dts : AV_NOPTS_VALUE;
    const bool isBehindKeyFrame = step == 0 && isTime(keyTime) && keyTime <= from;
    step = isBehindKeyFrame ? 1 : std::max(kFirstStepBack, step * 2);
    from = isBehindKeyFrame ? keyTime - 1
                            : std::min(from - 1, time - av_rescale_q(step, {1, 1}, timeBase));
  }
  // A format that cannot go back is still where it was.
  (void)m_demuxer.rewind();
  restart();
}

bool FrameDecoder::beginsBy(int64_t time) {
  if (readWanted() && isTime(m_packet->pts) && m_packet->pts > time) return false;
  m_ahead = next();
  return m_ahead && m_ahead->pts <= time;
}

void FrameDecoder::passOverUntil(int64_t time) {
  m_passOver.passOverUntil(m_canPassOver ? time : INT64_MIN);
}

bool FrameDecoder::isSeekShorter(int64_t from, int64_t to) const {
  if (const auto known = m_demuxer.isSeekShorter(to)) return *known;
  return av_compare_ts(to - from, stream().time_base, kNotWorthSeeking, {1, 1}) > 0;
}

void FrameDecoder::requireFewLost() const {
  if (m_packets == 0) m_demuxer.fail(QT_TRANSLATE_NOOP("Failure", "It shows no pictures"));
  if (m_pictures == 0)
    m_demuxer.fail(QT_TRANSLATE_NOOP("Failure", "None of its pictures can be decoded"));
  if (m_lost > std::max(kTolerableCount, m_packets / kTolerablePart)) {
    m_demuxer.fail(QT_TRANSLATE_NOOP("Failure", "Too many of its pictures are damaged"));
  }
}

}  // namespace vantrel
