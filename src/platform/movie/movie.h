#pragma once

#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <stop_token>
#include <string>
#include <vector>

#include "platform/movie/media_time.h"
#include "platform/movie/movie_metadata.h"
#include "platform/movie/quicktime_atoms.h"
#include "platform/movie/video_color.h"

namespace vantrel {

/// Maps (x, y) to (a·x + c·y + tx, b·x + d·y + ty); y grows downward.
struct AffineTransform {
  double a = 1, b = 0, c = 0, d = 1, tx = 0, ty = 0;
  friend bool operator==(const AffineTransform&, const AffineTransform&) = default;
};

/// A width and a height in pixels.
struct PictureSize {
  double width = 0, height = 0;
  friend bool operator==(const PictureSize&, const PictureSize&) = default;
};

/// How the samples of a track are coded, known to platform/movie alone.
struct CodedFormat;

/// One video or audio track of a file, as it describes itself. A value; any thread.
struct MovieTrack {
  enum class Kind { Video, Audio };

  Kind kind = Kind::Video;
  /// Position among all streams of the file, as the demuxer counts.
  int streamIndex = 0;
  /// The container's own number for the track (QuickTime: the track ID).
  int64_t id = 0;
  bool isEnabled = true;
  /// ISO 639-2 code such as "eng"; empty if unknown.
  std::string languageCode;
  std::optional<std::string> extendedLanguageTag;
  /// Bits per second, as the container tells or its packets show; 0 if nothing does.
  double estimatedDataRate = 0;
  /// Ticks per second of the times of its samples.
  int32_t timescale = 0;
  /// Never null in a track of an opened movie.
  std::shared_ptr<const CodedFormat> format;
  /// Where its last sample ends, on the demuxer's time line, where the container says so otherwise
  /// than by that sample itself; not valid if it does not. Only for files without boxes.
  MediaTime mediaEnd;
  /// Its boxes, where the file is a QuickTime or ISO base media file.
  std::optional<QuickTimeTrack> quickTime;
  /// The container's name for the track; empty if it has none. Only for files without boxes.
  std::string title;

  /// Whether the codec of an audio track can stand in a QuickTime movie; true for video.
  bool fitsQuickTime = true;
  /// False when the file names no codec for the track.
  bool hasFormatDescription = true;

  // Of a video track:

  /// The stored frame with its pixels made square: as wide as it is displayed, as high as it is
  /// stored, before any turn. Whole numbers.
  PictureSize naturalSize;
  /// The stored frame as it is decoded.
  PictureSize storedSize;
  /// From the stored frame with square pixels to the displayed picture: a quarter turn or a mirror
  /// of one, whatever else the file asks for; the picture may come to lie at negative coordinates.
  AffineTransform preferredTransform;
  /// Frames per second, averaged; 0 if unknown.
  double nominalFrameRate = 0;
  /// The colour of each description, in their order; of files that know only one, one.
  std::vector<ColorTags> formatDescriptions;
  /// Where its chroma samples lie; Left where the file does not say, and for other than 4:2:0.
  ChromaSiting chromaSiting = ChromaSiting::Left;
  /// Static HDR metadata of the container or, where it has none, of the first frame.
  HdrMetadata hdrMetadata;
  /// `meta` items of the track.
  std::vector<MovieMetadataItem> metadata;
};

/// A file with moving pictures or sound, opened to see what it holds; it keeps no file open.
class Movie final {
 public:
  /// Reads what the file says of itself, and decodes one frame where that is needed. Everything
  /// that FFmpeg reads may be opened; streams that are pictures in disguise (cover art, thumbnails,
  /// a still posing as a track beside a real one) are no video tracks. Throws MovieError,
  /// std::system_error or Cancelled. Blocking, any thread.
  [[nodiscard]] static Movie open(const std::filesystem::path& path,
                                  const std::stop_token& stop = {});

  [[nodiscard]] const std::filesystem::path& path() const { return m_path; }
  /// Length of the movie, the longest of its tracks, on its own time line that starts at 0. Not
  /// valid if the file does not tell it.
  [[nodiscard]] MediaTime duration() const { return m_duration; }
  /// Ticks per second of the movie's own time line; that of the first video track for files that
  /// have none.
  [[nodiscard]] int32_t timescale() const { return m_timescale; }
  /// The tracks of one kind in the file's order.
  [[nodiscard]] std::vector<MovieTrack> tracks(MovieTrack::Kind kind) const;
  /// What is added to the demuxer's times, in microseconds, to count them from the movie's start:
  /// not 0 for streams that begin anywhere, such as MPEG transport streams.
  [[nodiscard]] int64_t startOffset() const { return m_startOffset; }

 private:
  Movie() = default;

  std::filesystem::path m_path;
  MediaTime m_duration;
  int32_t m_timescale = 0;
  int64_t m_startOffset = 0;
  std::vector<MovieTrack> m_tracks;
};

}  // namespace vantrel
