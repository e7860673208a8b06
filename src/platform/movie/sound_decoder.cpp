#include "platform/movie/sound_decoder.h"

#include <QtGlobal>
#include <array>

#include "platform/movie/coded_format.h"

namespace vantrel {
namespace {

/// Codecs that overlap their frames need those before (AAC two, Opus 80 ms: RFC 7845, section 4.6).
constexpr AVRational kSettling{1, 10};
/// How far before that the attempts of a seek begin, in seconds, for formats that only come near.
constexpr std::array kStepsBack{0, 2, 10};

AvCodecContextPtr openDecoder(const Demuxer& demuxer, const AVCodecParameters& parameters) {
  const AVCodec* codec = avcodec_find_decoder(parameters.codec_id);
  if (!codec) demuxer.fail(QT_TRANSLATE_NOOP("Failure", "Nothing decodes its sound"));
  auto context = owned<AvCodecContextPtr>(avcodec_alloc_context3(codec));
  if (avcodec_parameters_to_context(context.get(), &parameters) < 0) throw std::bad_alloc();
  context->pkt_timebase = demuxer.stream().time_base;
  if (avcodec_open2(context.get(), codec, nullptr) < 0) {
    demuxer.fail(QT_TRANSLATE_NOOP("Failure", "Its sound cannot be decoded"));
  }
  return context;
}

}  // namespace

SoundDecoder::SoundDecoder(const Movie& movie, const MovieTrack& track, const std::stop_token& stop)
    : m_demuxer(movie, track, stop), m_decoder(openDecoder(m_demuxer, *track.format->parameters)) {}

AvFramePtr SoundDecoder::next() {
  if (m_ahead) return std::move(m_ahead);
  while (true) {
    if (AvFramePtr frame = receive()) return frame;
    if (!send()) return nullptr;
  }
}

AvFramePtr SoundDecoder::receive() {
  AvFramePtr frame = makeFrame();
  while (true) {
    const int code = avcodec_receive_frame(m_decoder.get(), frame.get());
    if (code == AVERROR(ENOMEM)) throw std::bad_alloc();
    if (code < 0) return nullptr;
    if (frame->pts == AV_NOPTS_VALUE) frame->pts = m_nextTime;
    if (frame->pts == AV_NOPTS_VALUE || frame->sample_rate <= 0 || frame->nb_samples <= 0) continue;
    const AVRational timeBase = stream().time_base;
    m_nextTime = av_sat_add64(frame->pts,
                              av_rescale_q(frame->nb_samples, {1, frame->sample_rate}, timeBase));
    return frame;
  }
}

bool SoundDecoder::send() {
  if (m_isDraining) return false;
  const bool isEnd = !m_demuxer.read(*m_packet);
  m_isDraining = isEnd;
  // Any failure is about the packet's content.
  const int code = avcodec_send_packet(m_decoder.get(), isEnd ? nullptr : m_packet.get());
  if (code == AVERROR(ENOMEM)) throw std::bad_alloc();
  return true;
}

void SoundDecoder::seek(int64_t time) {
  const AVRational timeBase = stream().time_base;
  const int64_t settled = av_sat_sub64(time, av_rescale_q(1, kSettling, timeBase));
  for (const int seconds : kStepsBack) {
    restart();
    if (!m_demuxer.seek(av_sat_sub64(settled, av_rescale_q(seconds, {1, 1}, timeBase)))) break;
    m_ahead = next();
    if (m_ahead && m_ahead->pts <= time) return;
  }
  restart();
  if (!m_demuxer.rewind()) m_isDraining = true;
}

void SoundDecoder::restart() {
  avcodec_flush_buffers(m_decoder.get());
  m_ahead.reset();
  m_isDraining = false;
  m_nextTime = AV_NOPTS_VALUE;
}

}  // namespace vantrel
