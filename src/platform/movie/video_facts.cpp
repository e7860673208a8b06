#include "platform/movie/video_facts.h"

extern "C" {
#include <libavutil/mastering_display_metadata.h>
#include <libavutil/pixdesc.h>
}

#include <algorithm>
#include <cmath>
#include <cstring>

#include "platform/movie/display_matrix.h"
#include "platform/movie/planar_format.h"
#include "platform/movie/stream_side_data.h"

namespace vantrel {
namespace {

/// 0 for what is no positive number.
double asNumber(AVRational value) {
  return value.num > 0 && value.den > 0 ? av_q2d(value) : 0;
}

/// Side data of the stream or else of the frame; zeros if neither has it.
template <class Data>
Data sideData(const AVStream& stream, AVPacketSideDataType type, const AVFrame* frame,
              AVFrameSideDataType frameType) {
  Data data{};
  const uint8_t* bytes = streamSideData(stream, type, sizeof data);
  const AVFrameSideData* ofFrame =
      frame && !bytes ? av_frame_get_side_data(frame, frameType) : nullptr;
  if (ofFrame && ofFrame->size >= sizeof data) bytes = ofFrame->data;
  if (bytes) std::memcpy(&data, bytes, sizeof data);
  return data;
}

DisplayMatrix displayMatrix(const MovieTrack& track, const AVStream& stream, const AVFrame* frame) {
  // Where the track header has a say, "not turned" is said as well.
  return sideData<DisplayMatrix>(stream, AV_PKT_DATA_DISPLAYMATRIX,
                                 track.quickTime ? nullptr : frame, AV_FRAME_DATA_DISPLAYMATRIX);
}

/// Width of a stored pixel by its height. libavformat makes it up from a track's matrix and size
/// where a QuickTime file has no pixel aspect ratio; both are meant for the displayed picture,
/// which it does not heed.
double pixelAspect(const AVStream& stream, const AVFrame* frame, const DisplayMatrix& matrix,
                   bool isTurnedOver, PictureSize stored) {
  const auto isNear = [](double value, double other) {
    return std::abs(value - other) <= 0.005 * other;
  };
  double aspect = asNumber(stream.sample_aspect_ratio);
  if (aspect == 0) aspect = asNumber(stream.codecpar->sample_aspect_ratio);
  if (aspect == 0 && frame) aspect = asNumber(frame->sample_aspect_ratio);
  if (aspect == 0) return 1;
  if (!isTurnedOver || aspect == 1) return aspect;
  const double scale = std::hypot(matrix[0], matrix[3]) / std::hypot(matrix[1], matrix[4]);
  if (isNear(aspect, scale)) return 1 / aspect;
  const double swapped = stored.height / stored.width;
  return isNear(aspect, swapped * swapped) ? 1 : aspect;
}

void describePicture(MovieTrack& track, const AVStream& stream, const AVFrame* frame) {
  const AVCodecParameters& parameters = *stream.codecpar;
  track.storedSize = frame ? PictureSize{double(frame->width), double(frame->height)}
                           : PictureSize{double(parameters.width), double(parameters.height)};
  const DisplayMatrix matrix = displayMatrix(track, stream, frame);
  track.preferredTransform = nearestQuarterTurn(matrix);
  const double aspect =
      pixelAspect(stream, frame, matrix, track.preferredTransform.a == 0, track.storedSize);
  track.naturalSize = {std::max(1.0, std::round(track.storedSize.width * aspect)),
                       track.storedSize.height};
}

/// The code of the file, or of the stream where the file leaves it open.
int known(int code, int other) {
  return code == ColorTags::kUnspecified ? other : code;
}

ColorTags completed(const ColorTags& tags, const ColorTags& other) {
  return {known(tags.primaries, other.primaries), known(tags.transfer, other.transfer),
          known(tags.matrix, other.matrix)};
}

/// Zero is a matrix, but neither primaries nor a transfer function.
ColorTags tagsOf(int primaries, int transfer, int matrix) {
  constexpr int kNone = ColorTags::kUnspecified;
  return {primaries == 0 ? kNone : primaries, transfer == 0 ? kNone : transfer, matrix};
}

void describeColor(MovieTrack& track, const AVCodecParameters& parameters, const AVFrame* frame) {
  ColorTags tags = tagsOf(parameters.color_primaries, parameters.color_trc, parameters.color_space);
  if (frame) {
    tags = completed(tags, tagsOf(frame->color_primaries, frame->color_trc, frame->colorspace));
  }
  if (track.quickTime) track.formatDescriptions = track.quickTime->descriptions;
  if (track.formatDescriptions.empty()) track.formatDescriptions.emplace_back();
  track.formatDescriptions.front() = completed(track.formatDescriptions.front(), tags);
}

ChromaSiting chromaSiting(const AVCodecParameters& parameters, const AVFrame* frame) {
  const int format = frame ? frame->format : parameters.format;
  const AVPixFmtDescriptor* pixels = av_pix_fmt_desc_get(static_cast<AVPixelFormat>(format));
  if (!pixels || pixels->log2_chroma_w != 1 || pixels->log2_chroma_h != 1) {
    return ChromaSiting::Left;
  }
  const bool isOpen = parameters.chroma_location == AVCHROMA_LOC_UNSPECIFIED;
  return chromaSitingOf(isOpen && frame ? frame->chroma_location : parameters.chroma_location);
}

Fraction fraction(AVRational value) {
  return {value.num, value.den};
}

HdrMetadata hdrMetadata(const AVStream& stream, const AVFrame* frame) {
  HdrMetadata hdr;
  const auto display =
      sideData<AVMasteringDisplayMetadata>(stream, AV_PKT_DATA_MASTERING_DISPLAY_METADATA, frame,
                                           AV_FRAME_DATA_MASTERING_DISPLAY_METADATA);
  if (display.has_primaries != 0 && display.has_luminance != 0) {
    MasteringDisplay& mastering = hdr.masteringDisplay.emplace();
    for (size_t i = 0; i < 3; ++i) {
      mastering.primaries[i] = {fraction(display.display_primaries[i][0]),
                                fraction(display.display_primaries[i][1])};
    }
    mastering.whitePoint = {fraction(display.white_point[0]), fraction(display.white_point[1])};
    mastering.lowestLuminance = fraction(display.min_luminance);
    mastering.highestLuminance = fraction(display.max_luminance);
  }
  const auto light = sideData<AVContentLightMetadata>(stream, AV_PKT_DATA_CONTENT_LIGHT_LEVEL,
                                                      frame, AV_FRAME_DATA_CONTENT_LIGHT_LEVEL);
  // Both 0 is "not known" (CTA-861.3).
  if (light.MaxCLL != 0 || light.MaxFALL != 0) {
    hdr.contentLight = {static_cast<uint16_t>(std::min(light.MaxCLL, 0xFFFFU)),
                        static_cast<uint16_t>(std::min(light.MaxFALL, 0xFFFFU))};
  }
  return hdr;
}

}  // namespace

void describeVideo(MovieTrack& track, const AVStream& stream, const AVFrame* frame) {
  describePicture(track, stream, frame);
  describeColor(track, *stream.codecpar, frame);
  track.chromaSiting = chromaSiting(*stream.codecpar, frame);
  track.hdrMetadata = hdrMetadata(stream, frame);
  track.nominalFrameRate = asNumber(stream.avg_frame_rate);
  if (track.nominalFrameRate == 0) track.nominalFrameRate = asNumber(stream.r_frame_rate);
}

}  // namespace vantrel
