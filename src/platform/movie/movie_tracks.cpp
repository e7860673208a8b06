#include "platform/movie/movie_tracks.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <string>

#include "platform/movie/coded_format.h"
#include "platform/movie/display_matrix.h"
#include "platform/movie/stream_side_data.h"

namespace vantrel {
namespace {

/// What QuickTime movies hold so that players play it.
bool fitsQuickTime(AVCodecID codec) {
  static constexpr AVCodecID kFitting[] = {
      AV_CODEC_ID_AAC,       AV_CODEC_ID_ALAC,      AV_CODEC_ID_MP3,       AV_CODEC_ID_MP2,
      AV_CODEC_ID_AC3,       AV_CODEC_ID_EAC3,      AV_CODEC_ID_DTS,       AV_CODEC_ID_PCM_S8,
      AV_CODEC_ID_PCM_U8,    AV_CODEC_ID_PCM_S16LE, AV_CODEC_ID_PCM_S16BE, AV_CODEC_ID_PCM_S24LE,
      AV_CODEC_ID_PCM_S24BE, AV_CODEC_ID_PCM_S32LE, AV_CODEC_ID_PCM_S32BE, AV_CODEC_ID_PCM_F32LE,
      AV_CODEC_ID_PCM_F32BE, AV_CODEC_ID_PCM_F64LE, AV_CODEC_ID_PCM_F64BE, AV_CODEC_ID_PCM_MULAW,
      AV_CODEC_ID_PCM_ALAW};
  return std::find(std::begin(kFitting), std::end(kFitting), codec) != std::end(kFitting);
}

bool isPicture(const AVStream& stream) {
  constexpr int kPictures =
      AV_DISPOSITION_ATTACHED_PIC | AV_DISPOSITION_TIMED_THUMBNAILS | AV_DISPOSITION_STILL_IMAGE;
  return (stream.disposition & kPictures) != 0;
}

bool isVideoTrack(const AVStream& stream) {
  const AVCodecParameters& parameters = *stream.codecpar;
  return parameters.codec_type == AVMEDIA_TYPE_VIDEO && !isPicture(stream) &&
         parameters.width > 0 && parameters.height > 0 && avcodec_find_decoder(parameters.codec_id);
}

std::string tag(const AVStream& stream, const char* key) {
  const AVDictionaryEntry* entry = av_dict_get(stream.metadata, key, nullptr, 0);
  return entry ? entry->value : "";
}

std::string languageCode(const AVStream& stream) {
  const std::string code = tag(stream, "language");
  const bool isCode = code.size() == 3 && std::all_of(code.begin(), code.end(),
                                                      [](char c) { return c >= 'a' && c <= 'z'; });
  return isCode && code != "und" ? code : "";
}

double asNumber(AVRational value) {
  return value.num > 0 && value.den > 0 ? av_q2d(value) : 0;
}

PictureSize squarePixelSize(const AVStream& stream, const AVCodecParameters& parameters) {
  double aspect = asNumber(stream.sample_aspect_ratio);
  if (aspect == 0) aspect = asNumber(parameters.sample_aspect_ratio);
  const double width = std::round(parameters.width * (aspect == 0 ? 1 : aspect));
  return {std::max(1.0, width), static_cast<double>(parameters.height)};
}

AffineTransform preferredTransform(const AVStream& stream) {
  DisplayMatrix matrix{};
  const uint8_t* data = streamSideData(stream, AV_PKT_DATA_DISPLAYMATRIX, sizeof matrix);
  if (!data) return {};
  std::memcpy(matrix.data(), data, sizeof matrix);
  return nearestQuarterTurn(matrix);
}

void describeVideo(MovieTrack& track, const AVStream& stream) {
  const AVCodecParameters& parameters = *stream.codecpar;
  track.naturalSize = squarePixelSize(stream, parameters);
  track.storedSize = {static_cast<double>(parameters.width),
                      static_cast<double>(parameters.height)};
  track.preferredTransform = preferredTransform(stream);
  track.nominalFrameRate = asNumber(stream.avg_frame_rate);
  if (track.nominalFrameRate == 0) track.nominalFrameRate = asNumber(stream.r_frame_rate);
  track.formatDescriptions = {
      {parameters.color_primaries, parameters.color_trc, parameters.color_space}};
}

MovieTrack makeTrack(const AVStream& stream, MovieTrack::Kind kind) {
  auto format = std::make_shared<CodedFormat>();
  format->parameters = owned<AvCodecParametersPtr>(avcodec_parameters_alloc());
  if (avcodec_parameters_copy(format->parameters.get(), stream.codecpar) < 0) {
    throw std::bad_alloc();
  }
  format->timeBase = stream.time_base;
  MovieTrack track;
  track.kind = kind;
  track.streamIndex = stream.index;
  track.id = stream.id;
  track.languageCode = languageCode(stream);
  track.title = tag(stream, "title");
  track.estimatedDataRate = static_cast<double>(std::max<int64_t>(0, stream.codecpar->bit_rate));
  track.timescale = stream.time_base.den;
  track.format = std::move(format);
  track.hasFormatDescription = stream.codecpar->codec_id != AV_CODEC_ID_NONE;
  if (kind == MovieTrack::Kind::Video) {
    describeVideo(track, stream);
  } else {
    track.fitsQuickTime = fitsQuickTime(stream.codecpar->codec_id);
  }
  return track;
}

}  // namespace

std::vector<MovieTrack> movieTracks(MovieInput& input) {
  const AVFormatContext& context = input.context();
  std::vector<MovieTrack> tracks;
  for (unsigned index = 0; index < context.nb_streams; ++index) {
    const AVStream& stream = *context.streams[index];
    if (isVideoTrack(stream)) {
      tracks.push_back(makeTrack(stream, MovieTrack::Kind::Video));
    } else if (stream.codecpar->codec_type == AVMEDIA_TYPE_AUDIO) {
      tracks.push_back(makeTrack(stream, MovieTrack::Kind::Audio));
    }
  }
  return tracks;
}

}  // namespace vantrel
