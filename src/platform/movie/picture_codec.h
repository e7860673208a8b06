#pragma once

#include <algorithm>
#include <iterator>

#include "platform/movie/av_ptr.h"

namespace vantrel {

/// Whether this is the codec of an image format.
[[nodiscard]] inline bool isPictureCodec(AVCodecID codec) {
  constexpr AVCodecID kPictureCodecs[] = {AV_CODEC_ID_MJPEG, AV_CODEC_ID_PNG,     AV_CODEC_ID_BMP,
                                          AV_CODEC_ID_GIF,   AV_CODEC_ID_TIFF,    AV_CODEC_ID_WEBP,
                                          AV_CODEC_ID_APNG,  AV_CODEC_ID_JPEG2000};
  return std::find(std::begin(kPictureCodecs), std::end(kPictureCodecs), codec) !=
         std::end(kPictureCodecs);
}

}  // namespace vantrel
