#pragma once

#include <vector>

#include "platform/movie/av_ptr.h"
#include "platform/movie/encoder_options.h"

namespace vantrel {

/// An encoder that may or may not work on this machine.
struct EncoderCandidate {
  EncoderOptions setup;
  /// Takes pictures with interleaved chroma, and HDR metadata from them.
  bool isHardware = false;
  /// The device whose memory its pictures must lie in.
  AVHWDeviceType device = AV_HWDEVICE_TYPE_NONE;
  /// Its private memory's format; AV_PIX_FMT_NONE if it takes pictures from main memory.
  AVPixelFormat deviceFormat = AV_PIX_FMT_NONE;
  /// Pictures between two that others refer to; negative leaves it to the encoder's options.
  int bFrames = -1;
  /// Narrower or lower pictures are padded to this and cropped again by the bitstream.
  int leastSide = 2;
};

/// The encoders that can make these pictures, in the order in which they are to be tried: hardware
/// first, software behind it.
[[nodiscard]] std::vector<EncoderCandidate> encoderCandidates(const VideoInputSettings& settings);

}  // namespace vantrel
