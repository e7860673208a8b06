#include "platform/movie/movie_muxer.h"

extern "C" {
#include <libavutil/mem.h>
}

#include <new>
#include <string>
#include <utility>

namespace vantrel {
namespace {

/// Microseconds that packets of one track wait for those of another: bounds what is in memory when
/// a track ends early or has a gap.
constexpr int64_t kLongestWait = 2'000'000;

/// The source's tag where QuickTime movies know it for this codec; 0 leaves the choice to FFmpeg.
uint32_t tagFor(const AVOutputFormat& format, const AVCodecParameters& parameters) {
  const AVCodecID named = av_codec_get_id(format.codec_tag, parameters.codec_tag);
  return named == parameters.codec_id ? parameters.codec_tag : 0;
}

}  // namespace

MovieMuxer::MovieMuxer(const std::filesystem::path& file, std::filesystem::path name)
    : m_file(file, std::move(name)), m_format(makeFormat()) {
  m_format->pb = m_file.context();
}

MovieMuxer::FormatPtr MovieMuxer::makeFormat() {
  AVFormatContext* context = nullptr;
  if (avformat_alloc_output_context2(&context, nullptr, "mov", nullptr) < 0) throw std::bad_alloc();
  FormatPtr format(context);
  format->flags |= AVFMT_FLAG_BITEXACT | AVFMT_FLAG_CUSTOM_IO;
  format->avoid_negative_ts = AVFMT_AVOID_NEG_TS_DISABLED;
  format->max_interleave_delta = kLongestWait;
  return format;
}

bool MovieMuxer::takes(const AVCodecParameters& parameters) {
  const FormatPtr format = makeFormat();
  (void)addStream(*format, parameters);
  if (avio_open_dyn_buf(&format->pb) < 0) throw std::bad_alloc();
  const bool taken = avformat_write_header(format.get(), nullptr) >= 0;
  uint8_t* bytes = nullptr;
  avio_close_dyn_buf(format->pb, &bytes);
  av_free(bytes);
  return taken;
}

AVStream& MovieMuxer::addStream(const AVCodecParameters& parameters) {
  return addStream(*m_format, parameters);
}

AVStream& MovieMuxer::addStream(AVFormatContext& format, const AVCodecParameters& parameters) {
  AVStream* stream = avformat_new_stream(&format, nullptr);
  if (!stream || avcodec_parameters_copy(stream->codecpar, &parameters) < 0) throw std::bad_alloc();
  stream->codecpar->codec_tag = tagFor(*format.oformat, parameters);
  stream->sample_aspect_ratio = parameters.sample_aspect_ratio;
  stream->id = stream->index + 1;
  return *stream;
}

void MovieMuxer::writeHeader(int32_t videoTimescale, int32_t movieTimescale) {
  AVDictionary* options = nullptr;
  av_dict_set(&options, "use_stream_ids_as_track_ids", "1", 0);
  if (videoTimescale > 0) av_dict_set_int(&options, "video_track_timescale", videoTimescale, 0);
  if (movieTimescale > 0) av_dict_set_int(&options, "movie_timescale", movieTimescale, 0);
  const int written = avformat_write_header(m_format.get(), &options);
  av_dict_free(&options);
  avio_flush(m_file.context());
  m_file.check(written);
}

void MovieMuxer::write(AVPacket& packet, int stream) {
  const std::lock_guard lock(m_mutex);
  packet.stream_index = stream;
  packet.pos = -1;
  m_file.check(av_interleaved_write_frame(m_format.get(), &packet));
}

void MovieMuxer::close(bool flushes) {
  const int written = av_write_trailer(m_format.get());
  m_file.check(written);
  m_file.close(flushes);
}

}  // namespace vantrel
