#pragma once

#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/movie/movie.h"
#include "platform/movie/sample_flow.h"

namespace vantrel {

enum class VideoCodec { H264, Hevc };

/// How the pictures of a video input are encoded and described.
struct VideoInputSettings {
  VideoCodec codec = VideoCodec::Hevc;
  /// Pixels, even, at least 2.
  int width = 0, height = 0;
  /// Average over the film.
  int64_t bitsPerSecond = 0;
  /// Longest time between two key frames, in seconds of the film.
  double maxKeyFrameInterval = 2.0;
  /// All three specified.
  ColorTags color;
  ChromaSiting chromaSiting = ChromaSiting::Left;
  /// High dynamic range: ten bits, HEVC's Main 10, with `hdrMetadata` in stream and container.
  bool isHdr = false;
  HdrMetadata hdrMetadata;
  /// Ticks per second of the track; every sample time is a whole number of them.
  int32_t timescale = 0;
  /// Frames per second that the rate control may expect; 0 if unknown.
  double expectedFrameRate = 0;
  /// The items of the track's `meta`.
  std::vector<MovieMetadataItem> metadata;

  friend bool operator==(const VideoInputSettings&, const VideoInputSettings&) = default;
};

/// How the packets of an audio input are described.
struct AudioInputSettings {
  /// Where the packets come from: their format, their time line and their edits.
  MovieTrack source;
  /// ISO 639-2; empty if unknown.
  std::string languageCode;
  std::optional<std::string> extendedLanguageTag;
  /// Whole `udta` and `meta` boxes; empty if there are none.
  std::vector<uint8_t> userData, metadata;
  bool marksOutputTrackAsEnabled = true;
};

/// Writes one QuickTime movie with one video track and any number of audio tracks. Setting up,
/// starting and finishing are for one thread; status, error and cancelling for any; each input for
/// one thread. Encoding runs on a thread of its own behind a queue of a few frames. An input is
/// ready while its queue has room and its track is less than a second ahead of the others that are
/// not finished. The destructor cancels and joins; it leaves files to the caller.
class MovieWriter final : public WritingSession {
 public:
  /// Makes the file, empty. Throws std::system_error. `name` stands for the file in all errors, for
  /// one that is to be known by another name.
  MovieWriter(std::filesystem::path file, std::filesystem::path name);
  explicit MovieWriter(const std::filesystem::path& file) : MovieWriter(file, file) {}
  ~MovieWriter() override;

  /// Movie header in front of the data when finished; the finished file is then rewritten beside
  /// itself once. On by default: without it the file lacks what only rewriting puts in, namely
  /// carried boxes and edits, disabled tracks and the last picture's duration.
  void setShouldOptimizeForNetworkUse(bool optimize);
  /// Ticks per second of the movie header, in which the edits of audio sources count.
  void setMovieTimescale(int32_t timescale);

  /// Whether an encoder takes these settings here and now: one is opened, which an input of the
  /// same settings then uses.
  [[nodiscard]] bool canApply(const VideoInputSettings& settings) const;
  [[nodiscard]] bool canAdd(const VideoInputSettings& settings) const;
  [[nodiscard]] bool canAdd(const AudioInputSettings& settings) const;

  /// Before `startWriting`. Throws MovieError.
  SampleInput& addVideoInput(const VideoInputSettings& settings);
  SampleInput& addAudioInput(const AudioInputSettings& settings);

  [[nodiscard]] bool startWriting() override;
  void startSession(MediaTime time) override;
  void endSession(MediaTime time) override;
  void finishWriting() override;
  void cancelWriting() override;

  [[nodiscard]] Status status() const override;
  [[nodiscard]] std::exception_ptr error() const override;

  /// The name of the encoder at work, for example "libx264"; empty before `startWriting`.
  [[nodiscard]] std::string encoderName() const;

 private:
  class Session;
  std::unique_ptr<Session> m_session;
};

}  // namespace vantrel
