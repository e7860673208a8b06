#pragma once

#include <string>
#include <utility>
#include <vector>

#include "platform/movie/movie_writer.h"

namespace vantrel {

/// An encoder of FFmpeg by its name, and its private options as FFmpeg names them, in their order.
struct EncoderOptions {
  std::string encoder;
  std::vector<std::pair<std::string, std::string>> options;
};

/// How libx264 or libx265 is set up for these pictures on so many processor cores: preset, rate
/// control, key frames, HDR. The average bitrate itself goes into the codec context. A rule without
/// effects; any thread.
[[nodiscard]] EncoderOptions softwareEncoderOptions(const VideoInputSettings& settings, int cores);

}  // namespace vantrel
