#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

#include "support/movie_maker.h"
#include "support/quicktime_maker.h"
#include "support/temporary_folder.h"

namespace vantrel::testing {

/// A folder of small films: 160 by 120 pixels, a second at 25 frames a second, with a tone.
class FilmFolder final {
 public:
  [[nodiscard]] const std::filesystem::path& path() const { return m_folder.path(); }
  [[nodiscard]] std::filesystem::path operator/(const std::filesystem::path& name) const {
    return m_folder / name;
  }

  /// H.264 and AAC, unless `options` of ffmpeg's say otherwise.
  void make(const std::string& name, const std::vector<std::string>& options = {}) const {
    std::vector<std::string> arguments = {
        "-f",      "lavfi",       "-i",       "testsrc2=size=160x120:rate=25:duration=1",
        "-f",      "lavfi",       "-i",       "sine=frequency=440:sample_rate=48000:duration=1",
        "-preset", "ultrafast",   "-pix_fmt", "yuv420p",
        "-strict", "experimental"};
    arguments.insert(arguments.end(), options.begin(), options.end());
    arguments.push_back((m_folder / name).string());
    runFfmpeg(arguments);
  }

  /// The film `from` to be shown turned by 90 degrees to the right.
  void makeTurned(const std::string& from, const std::string& name) const {
    std::filesystem::copy_file(m_folder / from, m_folder / name);
    setMatrix(m_folder / name, 1, {0, 1, -1, 0, kHeight, 0});
  }

  /// The pictures of `from` as many times one after the other.
  void makeRepeated(const std::string& from, const std::string& name, int times) const {
    runFfmpeg({"-stream_loop", std::to_string(times - 1), "-i", (m_folder / from).string(), "-an",
               "-c", "copy", (m_folder / name).string()});
  }

  /// Ten bits with this transfer function, named as ffmpeg does.
  void makeHdr(const std::string& name, const std::string& transfer) const {
    make(name, {"-c:v", "libx265", "-x265-params", "log-level=none", "-pix_fmt", "yuv420p10le",
                "-vf", "format=yuv420p10le," + colorFilter("bt2020", transfer, "bt2020nc"), "-an"});
  }

  /// Sound with a picture of its cover.
  void makeCoverArt(const std::string& name) const {
    runFfmpeg({"-f", "lavfi", "-i", "sine=duration=1", "-f", "lavfi", "-i",
               "testsrc2=size=160x120:rate=1:duration=1", "-map", "0", "-map", "1", "-c:v", "mjpeg",
               "-disposition:v:0", "attached_pic", (m_folder / name).string()});
  }

 private:
  static constexpr int16_t kHeight = 120;

  TemporaryFolder m_folder;
};

}  // namespace vantrel::testing
