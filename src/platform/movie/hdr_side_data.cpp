#include "platform/movie/hdr_side_data.h"

extern "C" {
#include <libavutil/mastering_display_metadata.h>
#include <libavutil/mem.h>
}

#include <new>

namespace vantrel {
namespace {

AVRational rational(Fraction fraction) {
  return {fraction.numerator, fraction.denominator};
}

void assign(AVMasteringDisplayMetadata& to, const MasteringDisplay& display) {
  for (size_t color = 0; color < display.primaries.size(); ++color) {
    for (size_t axis = 0; axis < 2; ++axis) {
      to.display_primaries[color][axis] = rational(display.primaries[color][axis]);
    }
  }
  for (size_t axis = 0; axis < 2; ++axis) {
    to.white_point[axis] = rational(display.whitePoint[axis]);
  }
  to.min_luminance = rational(display.lowestLuminance);
  to.max_luminance = rational(display.highestLuminance);
  to.has_primaries = to.has_luminance = 1;
}

void assign(AVContentLightMetadata& to, const ContentLight& light) {
  to.MaxCLL = light.maximum;
  to.MaxFALL = light.maximumFrameAverage;
}

/// Gives `record`, allocated by FFmpeg, to the stream.
void give(AVStream& stream, AVPacketSideDataType type, void* record, size_t size) {
#if LIBAVFORMAT_VERSION_INT >= AV_VERSION_INT(60, 15, 100)
  AVCodecParameters& parameters = *stream.codecpar;
  const bool given = av_packet_side_data_add(&parameters.coded_side_data,
                                             &parameters.nb_coded_side_data, type, record, size, 0);
#else
  const bool given =
      av_stream_add_side_data(&stream, type, static_cast<uint8_t*>(record), size) == 0;
#endif
  if (given) return;
  av_free(record);
  throw std::bad_alloc();
}

template <class Record>
Record& allocated(Record* record) {
  if (!record) throw std::bad_alloc();
  return *record;
}

}  // namespace

void addHdrSideData(AVStream& stream, const HdrMetadata& metadata) {
  if (metadata.masteringDisplay) {
    AVMasteringDisplayMetadata& record = allocated(av_mastering_display_metadata_alloc());
    assign(record, *metadata.masteringDisplay);
    give(stream, AV_PKT_DATA_MASTERING_DISPLAY_METADATA, &record, sizeof record);
  }
  if (metadata.contentLight) {
    size_t size = 0;
    AVContentLightMetadata& record = allocated(av_content_light_metadata_alloc(&size));
    assign(record, *metadata.contentLight);
    give(stream, AV_PKT_DATA_CONTENT_LIGHT_LEVEL, &record, size);
  }
}

void addHdrSideData(AVFrame& frame, const HdrMetadata& metadata) {
  if (metadata.masteringDisplay) {
    assign(allocated(av_mastering_display_metadata_create_side_data(&frame)),
           *metadata.masteringDisplay);
  }
  if (metadata.contentLight) {
    assign(allocated(av_content_light_metadata_create_side_data(&frame)), *metadata.contentLight);
  }
}

}  // namespace vantrel
