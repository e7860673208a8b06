#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "platform/movie/video_picture.h"
#include "support/movie_maker.h"

namespace vantrel::testing {

/// Bits of a picture's number, each a bar of so many pixels.
inline constexpr int kBars = 10, kBarWidth = 8;

/// Makes a film without sound at 25 pictures a second, each with its number in bars. `options` hold
/// the codec and more; `filter` begins with a comma.
inline void makeBarcodedFilm(const std::filesystem::path& file, int pictures,
                             const std::vector<std::string>& options,
                             const std::string& filter = "") {
  const std::string bars = "if(mod(floor(N/pow(2,floor(X/8))),2),200,40)";
  std::vector<std::string> arguments{
      "-f",
      "lavfi",
      "-i",
      "nullsrc=s=80x64:r=25,format=yuv420p,geq=lum='" + bars + "':cb=128:cr=128" + filter,
      "-frames:v",
      std::to_string(pictures)};
  arguments.insert(arguments.end(), options.begin(), options.end());
  arguments.push_back(file.string());
  runFfmpeg(arguments);
}

/// H.264 with B pictures and a key picture every `group`.
inline std::vector<std::string> h264(int group) {
  return {"-c:v",
          "libx264",
          "-preset",
          "ultrafast",
          "-crf",
          "20",
          "-bf",
          "3",
          "-g",
          std::to_string(group),
          "-keyint_min",
          std::to_string(group),
          "-sc_threshold",
          "0",
          "-pix_fmt",
          "yuv420p"};
}

/// The number in the bars; −1 without a picture.
inline int barcodeOf(const VideoPicture* picture) {
  if (!picture) return -1;
  const PlaneView& luma = picture->planes[0];
  const uint8_t* row = luma.row(luma.height / 2);
  int number = 0;
  for (int bar = 0; bar < kBars; ++bar) {
    const int x = bar * kBarWidth + kBarWidth / 2;
    const int value = luma.bytesPerSample == 1
                          ? row[x]
                          : (row[2 * x] | row[2 * x + 1] << 8) >> (picture->depth - 8);
    number |= (value > 120 ? 1 : 0) << bar;
  }
  return number;
}

}  // namespace vantrel::testing
