#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <filesystem>
#include <string>
#include <utility>
#include <vector>

#include "support/movie_maker.h"
#include "support/temporary_folder.h"

namespace vantrel::testing {

/// Films of 160 by 120 pixels at 25 pictures a second, whose pictures tell their number and where
/// they were cut: waves that do not repeat, with the bits of the number as bars across the middle.
namespace NumberedWaves {

inline constexpr int kWidth = 160, kHeight = 120;
inline constexpr int kBits = 6, kBarWidth = 8;
// Where the bars lie.
inline constexpr int kLeft = 56, kTop = 52, kBottom = 68;

inline bool isBar(int x, int y) {
  return x >= kLeft && x < kLeft + kBits * kBarWidth && y >= kTop && y < kBottom;
}

/// The luma of a pixel of picture `number`.
inline int luma(int x, int y, int number) {
  if (isBar(x, y)) return number >> (x - kLeft) / kBarWidth & 1 ? 200 : 40;
  return static_cast<int>(
      std::lround(126 + 45 * std::sin(x * x / 400.0 + y / 5.0) + 45 * std::cos(y * y / 300.0)));
}

/// Writes a film with a tone.
inline void make(const std::filesystem::path& film, int pictures) {
  std::string raw;
  for (int number = 0; number < pictures; ++number) {
    for (int y = 0; y < kHeight; ++y) {
      for (int x = 0; x < kWidth; ++x)
        raw.push_back(static_cast<char>(luma(x, y, number)));
    }
    raw.append(size_t{kWidth} * kHeight / 2, static_cast<char>(128));
  }
  const std::filesystem::path pixels = film.string() + ".yuv";
  writeFile(pixels, raw);
  runFfmpeg({"-f",        "rawvideo",
             "-s",        "160x120",
             "-r",        "25",
             "-pix_fmt",  "yuv420p",
             "-i",        pixels.string(),
             "-f",        "lavfi",
             "-i",        "sine=frequency=440:sample_rate=48000",
             "-shortest", "-c:v",
             "libx264",   "-preset",
             "ultrafast", "-crf",
             "4",         "-c:a",
             "aac",       film.string()});
  std::filesystem::remove(pixels);
}

/// The luma of all pictures of a film, one after the other.
inline std::vector<std::vector<uint8_t>> lumaOf(const std::filesystem::path& film, int width,
                                                int height) {
  const TemporaryFolder folder;
  const std::filesystem::path pixels = folder / "pixels.yuv";
  runFfmpeg({"-i", film.string(), "-map", "0:v", "-fps_mode", "passthrough", "-f", "rawvideo",
             "-pix_fmt", "yuv420p", pixels.string()});
  const std::string raw = readFile(pixels);
  const size_t samples = size_t(width) * size_t(height);
  std::vector<std::vector<uint8_t>> pictures;
  for (size_t start = 0; start + samples * 3 / 2 <= raw.size(); start += samples * 3 / 2)
    pictures.emplace_back(raw.begin() + long(start), raw.begin() + long(start + samples));
  return pictures;
}

/// How near the picture comes to what lies at (left, top) in picture `number`: PSNR in decibels.
inline double likeness(const std::vector<uint8_t>& picture, int width, int left, int top,
                       int number) {
  double sum = 0;
  for (size_t index = 0; index < picture.size(); ++index) {
    const int x = static_cast<int>(index) % width, y = static_cast<int>(index) / width;
    const double miss = picture[index] - luma(x + left, y + top, number);
    sum += miss * miss;
  }
  return 10 * std::log10(255.0 * 255.0 * static_cast<double>(picture.size()) / std::max(sum, 1.0));
}

/// The film is the one that `make` made, every picture of it in order, cut to this rectangle.
inline void expectCut(const std::filesystem::path& film, int pictures, int left, int top, int width,
                      int height) {
  const auto found = lumaOf(film, width, height);
  ASSERT_EQ(found.size(), static_cast<size_t>(pictures));
  for (int number = 0; number < pictures; ++number) {
    const std::vector<uint8_t>& picture = found[static_cast<size_t>(number)];
    const double here = likeness(picture, width, left, top, number);
    ASSERT_GT(here, 34) << number;
    ASSERT_GT(here, likeness(picture, width, left, top, number ^ 1) + 6) << number;
    for (const auto& [x, y] : {std::pair{-1, 0}, {1, 0}, {0, -1}, {0, 1}})
      ASSERT_GT(here, likeness(picture, width, left + x, top + y, number) + 6) << number;
  }
}

}  // namespace NumberedWaves
}  // namespace vantrel::testing
