#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace vantrel::testing {

/// Runs the `ffmpeg` command with `arguments` behind "-v error -nostdin -y". Throws what it printed
/// if it fails.
void runFfmpeg(const std::vector<std::string>& arguments);

/// A filter of ffmpeg's that tags the pictures with their colour, named as ffmpeg does. Options of
/// the encoder do so in versions before 7 only.
[[nodiscard]] std::string colorFilter(const std::string& primaries, const std::string& transfer,
                                      const std::string& matrix);

/// What the `ffprobe` command prints for `arguments` behind "-v error". Throws what it printed on
/// standard error if it fails.
[[nodiscard]] std::string runFfprobe(const std::vector<std::string>& arguments);

}  // namespace vantrel::testing
