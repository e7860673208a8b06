#include "platform/movie/video_encoder.h"

extern "C" {
#include <libavutil/hwcontext.h>
#include <libavutil/opt.h>
}

#include <algorithm>
#include <optional>
#include <utility>

#include "platform/movie/hdr_side_data.h"
#include "platform/movie/movie_error.h"
#include "platform/movie/picture_layout.h"
#include "platform/movie/planar_format.h"

namespace vantrel {
namespace {

/// Key frames are forced by time; an encoder's own count of frames must not come before it, nor
/// pass the 16 bits that some keep it in.
constexpr int kLongestGroup = 32767;
constexpr int kLargestRateDenominator = 100'000;
/// As many surfaces as pictures may wait within an encoder.
constexpr int kSurfaces = 20;
/// libx265 leaves decoding times of so few pictures unset.
constexpr int64_t kTooFewForTimes = 2;
/// Hides all messages but those before a crash: what fails is an error of the film or a reason to
/// try the next encoder.
constexpr int kLogOffset = AV_LOG_TRACE;

/// What the encoders refuse or leave out is written into their stream afterwards.
bool isUnknownToEncoders(int primaries) {
  return primaries == AVCOL_PRI_EBU3213;
}

AVPixelFormat planarFormat(const VideoInputSettings& settings) {
  return settings.isHdr ? AV_PIX_FMT_YUV420P10 : AV_PIX_FMT_YUV420P;
}
AVPixelFormat interleavedFormat(const VideoInputSettings& settings) {
  return settings.isHdr ? AV_PIX_FMT_P010 : AV_PIX_FMT_NV12;
}

/// A whole number of the encoder's blocks, so that it needs no cropping of its own, which ours
/// would replace.
int paddedSide(int side, int least) {
  return (side + least - 1) / least * least;
}

AvFramePtr greyPicture(const VideoInputSettings& settings) {
  AvFramePtr picture = makeFrame();
  picture->format = planarFormat(settings);
  picture->width = settings.width;
  picture->height = settings.height;
  if (av_frame_get_buffer(picture.get(), 0) < 0) throw std::bad_alloc();
  for (int plane = 0; plane < 3; ++plane) {
    const int rows = plane == 0 ? picture->height : picture->height / 2;
    const auto size = static_cast<size_t>(picture->linesize[plane]) * static_cast<size_t>(rows);
    // 128 of 256, and 514 of 1024.
    std::fill_n(picture->data[plane], size, settings.isHdr ? uint8_t{2} : uint8_t{128});
  }
  picture->pts = 0;
  return picture;
}

}  // namespace

VideoEncoder VideoEncoder::open(const std::filesystem::path& file,
                                const VideoInputSettings& settings,
                                const std::vector<EncoderCandidate>& candidates) {
  std::optional<MovieError> reason;
  for (const EncoderCandidate& candidate : candidates) {
    if (candidate.isHardware && !works(settings, candidate)) continue;
    try {
      return {file, settings, candidate};
    } catch (const MovieError& error) {
      reason = error;
    }
  }
  throw reason.value_or(MovieError(file, FileAction::Save, AVERROR_ENCODER_NOT_FOUND));
}

bool VideoEncoder::works(const VideoInputSettings& settings, const EncoderCandidate& candidate) {
  try {
    VideoEncoder encoder({}, settings, candidate);
    encoder.send(greyPicture(settings), true);
    encoder.sendEnd();
    return encoder.receive() != nullptr;
  } catch (const MovieError&) {
    return false;
  }
}

VideoEncoder::VideoEncoder(std::filesystem::path file, const VideoInputSettings& settings,
                           EncoderCandidate candidate)
    : m_file(std::move(file)),
      m_settings(settings),
      m_candidate(std::move(candidate)),
      m_width(settings.width),
      m_height(settings.height) {
  if (std::min(m_width, m_height) < m_candidate.leastSide) {
    m_width = paddedSide(m_width, m_candidate.leastSide);
    m_height = paddedSide(m_height, m_candidate.leastSide);
  }
  const AVCodec* codec = avcodec_find_encoder_by_name(name().c_str());
  if (!codec) checked(AVERROR_ENCODER_NOT_FOUND);
  m_context = owned<AvCodecContextPtr>(avcodec_alloc_context3(codec));
  setUp(*m_context);
  attachDevice(*m_context);
  AVDictionary* options = nullptr;
  for (const auto& [key, value] : m_candidate.setup.options) {
    av_dict_set(&options, key.c_str(), value.c_str(), 0);
  }
  const int opened = avcodec_open2(m_context.get(), codec, &options);
  av_dict_free(&options);
  checked(opened);
  // Without the parameter sets the container cannot be written.
  if (m_context->extradata_size <= 0) checked(AVERROR_EXTERNAL);
  openFilter();
}

void VideoEncoder::setUp(AVCodecContext& context) const {
  context.log_level_offset = kLogOffset;
  context.width = m_width;
  context.height = m_height;
  context.pix_fmt =
      m_candidate.isHardware ? interleavedFormat(m_settings) : planarFormat(m_settings);
  context.sample_aspect_ratio = {1, 1};
  context.time_base = timeBase();
  context.framerate = av_d2q(m_candidate.setup.frameRate, kLargestRateDenominator);
  context.bit_rate = m_candidate.setup.averageRate;
  context.rc_max_rate = m_candidate.setup.maxRate;
  context.rc_buffer_size = m_candidate.setup.bufferSize;
  context.gop_size = kLongestGroup;
  if (m_candidate.bFrames >= 0) context.max_b_frames = m_candidate.bFrames;
  context.flags |= AV_CODEC_FLAG_GLOBAL_HEADER | AV_CODEC_FLAG_CLOSED_GOP;
  context.thread_count = 0;
  const int primaries = m_settings.color.primaries;
  context.color_primaries = isUnknownToEncoders(primaries)
                                ? AVCOL_PRI_UNSPECIFIED
                                : static_cast<AVColorPrimaries>(primaries);
  context.color_trc = static_cast<AVColorTransferCharacteristic>(m_settings.color.transfer);
  context.colorspace = static_cast<AVColorSpace>(m_settings.color.matrix);
  context.color_range = AVCOL_RANGE_MPEG;
  context.chroma_sample_location = chromaLocationOf(m_settings.chromaSiting);
}

void VideoEncoder::attachDevice(AVCodecContext& context) {
  if (m_candidate.device == AV_HWDEVICE_TYPE_NONE) return;
  AVBufferRef* device = nullptr;
  checked(av_hwdevice_ctx_create(&device, m_candidate.device, nullptr, nullptr, 0));
  const AvBufferPtr owner(device);
  if (m_candidate.deviceFormat != AV_PIX_FMT_NONE) attachSurfaces(context, device);
}

void VideoEncoder::attachSurfaces(AVCodecContext& context, AVBufferRef* device) const {
  AvBufferPtr surfaces = owned<AvBufferPtr>(av_hwframe_ctx_alloc(device));
  auto& description = *reinterpret_cast<AVHWFramesContext*>(surfaces->data);
  description.format = m_candidate.deviceFormat;
  description.sw_format = interleavedFormat(m_settings);
  description.width = m_width;
  description.height = m_height;
  description.initial_pool_size = kSurfaces;
  checked(av_hwframe_ctx_init(surfaces.get()));
  context.pix_fmt = m_candidate.deviceFormat;
  context.hw_frames_ctx = surfaces.release();
}

void VideoEncoder::openFilter() {
  AVBSFContext* filter = nullptr;
  checked(av_bsf_list_parse_str(filterChain().c_str(), &filter));
  m_filter.reset(filter);
  checked(avcodec_parameters_from_context(m_filter->par_in, m_context.get()));
  m_filter->time_base_in = m_context->time_base;
  checked(av_bsf_init(m_filter.get()));
  AVCodecParameters& parameters = *m_filter->par_out;
  parameters.color_primaries = static_cast<AVColorPrimaries>(m_settings.color.primaries);
  parameters.width = m_settings.width;
  parameters.height = m_settings.height;
  parameters.codec_tag = m_settings.codec == VideoCodec::Hevc ? MKTAG('h', 'v', 'c', '1') : 0;
}

std::string VideoEncoder::filterChain() const {
  const bool isHevc = m_settings.codec == VideoCodec::Hevc;
  // Parameter sets, and bytes that only fill up a constant rate.
  std::string chain =
      isHevc ? "filter_units=remove_types=32-34|38" : "filter_units=remove_types=7-8|12";
  const std::string metadata = isHevc ? ",hevc_metadata=" : ",h264_metadata=";
  if (m_width != m_settings.width || m_height != m_settings.height) {
    chain += metadata + "crop_right=" + std::to_string(m_width - m_settings.width) +
             ":crop_bottom=" + std::to_string(m_height - m_settings.height);
  }
  if (isUnknownToEncoders(m_settings.color.primaries)) {
    chain += metadata + "colour_primaries=" + std::to_string(m_settings.color.primaries);
  }
  return chain;
}

void VideoEncoder::send(AvFramePtr picture, bool isKeyFrame) {
  if (m_width != picture->width || m_height != picture->height) {
    picture = paddedPicture(*picture, m_width, m_height);
  }
  // What the decoder says of its picture would bind the encoder.
  picture->pict_type = isKeyFrame ? AV_PICTURE_TYPE_I : AV_PICTURE_TYPE_NONE;
  if (m_candidate.isHardware) {
    picture = interleavedPicture(*picture);
    addHdrSideData(*picture, m_settings.hdrMetadata);
    if (m_context->hw_frames_ctx) picture = uploaded(*picture);
  }
  checked(avcodec_send_frame(m_context.get(), picture.get()));
  ++m_pictures;
}

AvFramePtr VideoEncoder::uploaded(const AVFrame& picture) const {
  AvFramePtr surface = makeFrame();
  checked(av_hwframe_get_buffer(m_context->hw_frames_ctx, surface.get(), 0));
  checked(av_hwframe_transfer_data(surface.get(), &picture, 0));
  checked(av_frame_copy_props(surface.get(), &picture));
  return surface;
}

void VideoEncoder::sendEnd() {
  m_hasEnded = true;
  checked(avcodec_send_frame(m_context.get(), nullptr));
}

AvPacketPtr VideoEncoder::receive() {
  AvPacketPtr packet = makePacket();
  for (;;) {
    const int filtered = av_bsf_receive_packet(m_filter.get(), packet.get());
    if (filtered >= 0) {
      // They are decoded as they are shown.
      if (m_hasEnded && m_pictures <= kTooFewForTimes) packet->dts = packet->pts;
      return packet;
    }
    if (filtered != AVERROR(EAGAIN)) checked(filtered);
    const int received = avcodec_receive_packet(m_context.get(), packet.get());
    if (received == AVERROR(EAGAIN) || received == AVERROR_EOF) return nullptr;
    checked(received);
    checked(av_bsf_send_packet(m_filter.get(), packet.get()));
  }
}

int VideoEncoder::checked(int code) const {
  if (code < 0) throw MovieError(m_file, FileAction::Save, code);
  return code;
}

}  // namespace vantrel
