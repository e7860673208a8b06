#pragma once

#include <algorithm>
#include <filesystem>
#include <stdexcept>
#include <string>
#include <vector>

#include "support/image_makers.h"
#include "support/movie_maker.h"
#include "support/temporary_folder.h"

namespace vantrel::testing {

/// Makes a film of one second, 320 by 240 pixels, 25 frames a second, with a tone; H.264 and AAC
/// unless `options` for the ffmpeg command say otherwise.
inline void makeFilm(const std::filesystem::path& path,
                     const std::vector<std::string>& options = {}) {
  std::vector<std::string> arguments = {
      "-f",      "lavfi",    "-i", "testsrc2=size=320x240:rate=25:duration=1",
      "-f",      "lavfi",    "-i", "sine=frequency=440:sample_rate=48000:duration=1",
      "-preset", "ultrafast"};
  arguments.insert(arguments.end(), options.begin(), options.end());
  arguments.push_back(path.string());
  runFfmpeg(arguments);
}

/// Copies the streams of a film into another container.
inline void remux(const std::filesystem::path& from, const std::filesystem::path& to,
                  const std::vector<std::string>& options = {}) {
  std::vector<std::string> arguments = {"-i", from.string(), "-c", "copy"};
  arguments.insert(arguments.end(), options.begin(), options.end());
  arguments.push_back(to.string());
  runFfmpeg(arguments);
}

/// Where the type of the first box of a QuickTime movie called `type` stands behind `from`.
inline size_t findBox(const Bytes& movie, const std::string& type, size_t from = 0) {
  const auto found = std::search(movie.begin() + static_cast<std::ptrdiff_t>(from), movie.end(),
                                 type.begin(), type.end());
  if (found == movie.end()) throw std::runtime_error("no box " + type);
  return static_cast<size_t>(found - movie.begin());
}

inline void put32(Bytes& bytes, size_t at, uint32_t value) {
  for (size_t i = 0; i < 4; ++i)
    bytes.at(at + i) = static_cast<uint8_t>(value >> (24 - 8 * i));
}

}  // namespace vantrel::testing
