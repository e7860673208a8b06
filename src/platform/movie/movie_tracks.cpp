#include "platform/movie/movie_tracks.h"

#include <algorithm>
#include <cstdio>
#include <iterator>
#include <map>
#include <string>
#include <string_view>

#include "platform/movie/coded_format.h"
#include "platform/movie/first_frames.h"
#include "platform/movie/picture_codec.h"
#include "platform/movie/video_facts.h"

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

/// Seconds; 0 if not known.
double lengthOf(const AVStream& stream) {
  return stream.duration > 0 ? static_cast<double>(stream.duration) * av_q2d(stream.time_base) : 0;
}

/// Whether a file of this kind never holds more than pictures.
bool isPictureFile(const AVFormatContext& context) {
  const std::string_view name = context.iformat->name;
  if (name.substr(0, 6) == "image2" || name == "ico") return true;
  if (name.size() > 5 && name.substr(name.size() - 5) == "_pipe") return true;
  const AVDictionaryEntry* brand = av_dict_get(context.metadata, "major_brand", nullptr, 0);
  constexpr std::string_view kPictureBrands[] = {"avif", "heic", "heix", "heim", "heis", "mif1"};
  return brand && std::find(std::begin(kPictureBrands), std::end(kPictureBrands), brand->value) !=
                      std::end(kPictureBrands);
}

bool isVideo(const AVStream& stream) {
  constexpr int kPictures =
      AV_DISPOSITION_ATTACHED_PIC | AV_DISPOSITION_TIMED_THUMBNAILS | AV_DISPOSITION_STILL_IMAGE;
  const AVCodecParameters& parameters = *stream.codecpar;
  return parameters.codec_type == AVMEDIA_TYPE_VIDEO && (stream.disposition & kPictures) == 0 &&
         parameters.width > 0 && parameters.height > 0 && avcodec_find_decoder(parameters.codec_id);
}

/// Whether this video stream is one still picture beside a stream that lasts longer: cover art that
/// the container does not mark.
bool isCover(const AVFormatContext& context, const AVStream& stream) {
  if (stream.nb_frames != 1 || !isPictureCodec(stream.codecpar->codec_id)) return false;
  for (unsigned i = 0; i < context.nb_streams; ++i) {
    const AVStream& other = *context.streams[i];
    const bool isReal = isVideo(other) || other.codecpar->codec_type == AVMEDIA_TYPE_AUDIO;
    if (&other != &stream && isReal && lengthOf(other) > lengthOf(stream)) return true;
  }
  return false;
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

/// Nanoseconds in "01:23:45.678900000", which is how Matroska's DURATION tags are written; 0 for
/// anything else.
int64_t nanoseconds(const std::string& text) {
  int hours = 0, minutes = 0, seconds = 0, fraction = 0, end = 0;
  const int fields =
      std::sscanf(text.c_str(), "%5d:%2d:%2d.%9d%n", &hours, &minutes, &seconds, &fraction, &end);
  const bool isWhole = fields == 4 && static_cast<size_t>(end) == text.size() && text[0] != '-';
  constexpr size_t kLength = sizeof "00:00:00.000000000" - 1;
  if (!isWhole || text.size() < kLength || std::min({minutes, seconds, fraction}) < 0) return 0;
  return ((hours * int64_t{60} + minutes) * 60 + seconds) * 1'000'000'000 + fraction;
}

/// MovieTrack::mediaEnd. AVI counts a stream's samples in its header; Matroska tells a track's end
/// in a tag, and the segment's, which is the end of the only track.
MediaTime mediaEnd(const AVFormatContext& context, const AVStream& stream) {
  const std::string_view format = context.iformat->name;
  const AVRational base = stream.time_base;
  if (format == "avi" && stream.duration > 0 && stream.duration < INT64_MAX / base.num) {
    return {stream.duration * base.num, base.den};
  }
  if (format.substr(0, 8) != "matroska" || context.duration <= 0) return {};
  if (context.nb_streams == 1) return {context.duration, AV_TIME_BASE};
  const int64_t told = nanoseconds(tag(stream, "DURATION"));
  // A tag that went stale says more than the segment.
  if (told <= 0 || told / 1000 > context.duration) return {};
  return {told, 1'000'000'000};
}

std::shared_ptr<const CodedFormat> codedFormat(const AVStream& stream) {
  auto format = std::make_shared<CodedFormat>();
  format->parameters = owned<AvCodecParametersPtr>(avcodec_parameters_alloc());
  if (avcodec_parameters_copy(format->parameters.get(), stream.codecpar) < 0) {
    throw std::bad_alloc();
  }
  format->timeBase = stream.time_base;
  return format;
}

/// What the boxes say beyond what libavformat hands on.
void describeBoxes(MovieTrack& track, const QuickTimeTrack* boxes) {
  if (!boxes) return;
  track.quickTime = *boxes;
  track.isEnabled = boxes->enabled;
  track.extendedLanguageTag = boxes->extendedLanguageTag;
  track.metadata = boxes->items;
  track.title.clear();
}

MovieTrack makeTrack(const MovieInput& input, const AVStream& stream, const AVFrame* frame) {
  const AVCodecParameters& parameters = *stream.codecpar;
  MovieTrack track;
  const bool isAudio = parameters.codec_type == AVMEDIA_TYPE_AUDIO;
  track.kind = isAudio ? MovieTrack::Kind::Audio : MovieTrack::Kind::Video;
  track.streamIndex = stream.index;
  track.id = stream.id;
  track.languageCode = languageCode(stream);
  track.title = tag(stream, "title");
  track.estimatedDataRate = static_cast<double>(std::max<int64_t>(0, parameters.bit_rate));
  track.timescale = stream.time_base.den;
  track.format = codedFormat(stream);
  track.mediaEnd = mediaEnd(input.context(), stream);
  track.hasFormatDescription = parameters.codec_id != AV_CODEC_ID_NONE;
  const auto& boxes = input.boxes();
  describeBoxes(track, boxes ? boxes->track(static_cast<uint32_t>(stream.id)) : nullptr);
  if (isAudio) {
    track.fitsQuickTime = fitsQuickTime(parameters.codec_id);
  } else {
    describeVideo(track, stream, frame);
  }
  return track;
}

/// Whether the look at a stream's first packets has left open what its first frame may tell.
bool isLeftOpen(const AVCodecParameters& parameters) {
  const bool isHdr =
      parameters.color_trc == AVCOL_TRC_SMPTE2084 || parameters.color_trc == AVCOL_TRC_ARIB_STD_B67;
  return isHdr || parameters.format == AV_PIX_FMT_NONE ||
         parameters.chroma_location == AVCHROMA_LOC_UNSPECIFIED ||
         parameters.color_primaries == AVCOL_PRI_UNSPECIFIED ||
         parameters.color_trc == AVCOL_TRC_UNSPECIFIED ||
         parameters.color_space == AVCOL_SPC_UNSPECIFIED;
}

/// The streams that are video tracks.
std::vector<int> videoStreams(const AVFormatContext& context) {
  std::vector<int> found;
  if (isPictureFile(context)) return found;
  for (unsigned i = 0; i < context.nb_streams; ++i) {
    const AVStream& stream = *context.streams[i];
    if (isVideo(stream) && !isCover(context, stream)) found.push_back(stream.index);
  }
  return found;
}

}  // namespace

std::vector<MovieTrack> movieTracks(MovieInput& input) {
  const AVFormatContext& context = input.context();
  const std::vector<int> video = videoStreams(context);
  std::vector<int> leftOpen;
  std::copy_if(video.begin(), video.end(), std::back_inserter(leftOpen), [&](int index) {
    // Outside QuickTime files a frame may also say how it is turned.
    return !input.boxes() || isLeftOpen(*context.streams[index]->codecpar);
  });
  const std::map<int, AvFramePtr> frames = decodeFirstFrames(input, leftOpen);
  std::vector<MovieTrack> tracks;
  for (unsigned i = 0; i < context.nb_streams; ++i) {
    const AVStream& stream = *context.streams[i];
    const bool isVideoTrack = std::find(video.begin(), video.end(), stream.index) != video.end();
    if (!isVideoTrack && stream.codecpar->codec_type != AVMEDIA_TYPE_AUDIO) continue;
    const auto frame = frames.find(stream.index);
    tracks.push_back(
        makeTrack(input, stream, frame == frames.end() ? nullptr : frame->second.get()));
  }
  return tracks;
}

}  // namespace vantrel
