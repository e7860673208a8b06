#pragma once

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <ostream>
#include <string>
#include <vector>

#include "platform/movie/picture_decoder.h"
#include "support/movie_maker.h"

namespace vantrel::testing {

/// Pictures in a film of numbered pictures, at `kRate` a second where nothing else is said.
inline constexpr int kPictures = 25;
inline constexpr int kRate = 25;
/// Ticks per second of QuickTime tracks, and of one picture.
inline constexpr int kTicks = 12800;
inline constexpr int kPictureTicks = kTicks / kRate;

/// Makes a film whose pictures have their number as brightness. `options` stand in front of the
/// file's name. Three B pictures in a row, a key picture every ten.
inline void makeNumberedFilm(const std::filesystem::path& file,
                             const std::vector<std::string>& options = {},
                             const std::string& filter = "", int pictures = kPictures) {
  std::string source = "nullsrc=s=64x48:r=" + std::to_string(kRate) +
                       ",geq=lum='20+mod(N,25)*8':cb=128:cr=128" + filter;
  std::vector<std::string> arguments{"-f",   "lavfi",     "-i",
                                     source, "-frames:v", std::to_string(pictures)};
  const bool hasCodec = std::find(options.begin(), options.end(), "-c:v") != options.end();
  if (!hasCodec) {
    for (const char* option : {"-c:v", "libx264", "-preset", "ultrafast", "-crf", "10", "-bf", "3",
                               "-b_strategy", "0", "-g", "10", "-sc_threshold", "0"}) {
      arguments.emplace_back(option);
    }
  }
  arguments.insert(arguments.end(), {"-pix_fmt", "yuv420p"});
  const std::string extension = file.extension();
  if (extension == ".mov" || extension == ".mp4") {
    arguments.insert(arguments.end(), {"-video_track_timescale", std::to_string(kTicks)});
  }
  arguments.insert(arguments.end(), options.begin(), options.end());
  arguments.push_back(file.string());
  runFfmpeg(arguments);
}

/// A picture that a movie shows: which of the film, when, and how long.
struct Shown {
  int number = 0;
  int64_t time = 0, duration = 0;
  friend bool operator==(const Shown&, const Shown&) = default;
  friend std::ostream& operator<<(std::ostream& out, const Shown& shown) {
    return out << shown.number << " at " << shown.time << " for " << shown.duration;
  }
};

inline int numberOf(const AVFrame& frame) {
  const uint8_t luma = frame.data[0][frame.height / 2 * frame.linesize[0] + frame.width / 2];
  return static_cast<int>(std::lround((luma - 20) / 8.0));
}

inline Shown shown(const DecodedPicture& picture) {
  return {numberOf(*picture.frame), picture.time.ticks, picture.duration.ticks};
}

inline std::vector<Shown> shownPictures(const std::filesystem::path& file) {
  const Movie movie = Movie::open(file);
  PictureDecoder decoder(movie, movie.tracks(MovieTrack::Kind::Video).at(0), {});
  std::vector<Shown> result;
  while (const auto picture = decoder.next())
    result.push_back(shown(*picture));
  return result;
}

/// Pictures `first` to `last` in their order, each for `ticks`, from time `start` on.
inline std::vector<Shown> steadily(int first, int last, int64_t start = 0,
                                   int64_t ticks = kPictureTicks) {
  std::vector<Shown> result;
  for (int number = first; number <= last; ++number)
    result.push_back({number, start + (number - first) * ticks, ticks});
  return result;
}

}  // namespace vantrel::testing
