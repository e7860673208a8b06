#pragma once

#include <cstddef>
#include <cstdint>

#include "platform/movie/av_ptr.h"

namespace vantrel {

/// What a demuxer attached to a stream; null if there is none, or less than `size` bytes of it.
[[nodiscard]] inline const uint8_t* streamSideData(const AVStream& stream,
                                                   AVPacketSideDataType type, size_t size) {
#if LIBAVFORMAT_VERSION_INT >= AV_VERSION_INT(60, 15, 100)
  const AVCodecParameters& parameters = *stream.codecpar;
  const AVPacketSideData* found =
      av_packet_side_data_get(parameters.coded_side_data, parameters.nb_coded_side_data, type);
  return found && found->size >= size ? found->data : nullptr;
#else
  size_t found = 0;
  const uint8_t* data = av_stream_get_side_data(&stream, type, &found);
  return found >= size ? data : nullptr;
#endif
}

}  // namespace vantrel
