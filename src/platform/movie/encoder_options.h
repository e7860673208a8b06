#pragma once

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "platform/movie/movie_writer.h"

namespace vantrel {

/// How an encoder of FFmpeg is opened. A hardware encoder may need less than all of it.
struct EncoderOptions {
  /// FFmpeg's name of the encoder.
  std::string encoder;
  /// Its private options as FFmpeg names them, in their order.
  std::vector<std::pair<std::string, std::string>> options;

  // Fields of the codec context; the rate is not kept unless all four are set.

  /// `bit_rate` and `rc_max_rate`, in bits per second.
  int64_t averageRate = 0, maxRate = 0;
  /// `rc_buffer_size`, in bits.
  int bufferSize = 0;
  /// `framerate`, in frames per second; never 0. libx265 shares its bits out by it, not by the
  /// times of the frames.
  double frameRate = 0;
};

/// How libx264 or libx265 is set up for these pictures on so many processor cores: preset, rate
/// control, key frames only where a frame is marked as one or a scene begins, HDR. Threads are left
/// to the encoder. A rule without effects; any thread.
[[nodiscard]] EncoderOptions softwareEncoderOptions(const VideoInputSettings& settings, int cores);

}  // namespace vantrel
