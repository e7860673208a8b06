#pragma once

#include <QtGlobal>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <stop_token>

#include "platform/movie/av_ptr.h"
#include "platform/movie/composition_delay.h"
#include "platform/movie/quicktime_atoms.h"

namespace vantrel {

/// What a MovieError says of a file that ends before it should.
inline constexpr const char* kEndsTooEarly =
    QT_TRANSLATE_NOOP("Failure", "The file ends too early");

/// How a file is demuxed.
struct MovieInputOptions {
  /// Every packet in the order and with the times of the track's media, as if a QuickTime file had
  /// no edit lists.
  bool ignoresEditLists = false;
  /// The streams are known from an earlier look; where the file's header is enough to read packets,
  /// nothing is decoded to learn about them again.
  bool isDescribed = false;
};

/// An opened file behind libavformat, which reads no other file than this one: playlists and other
/// lists of files are refused, references of a movie to further files are not followed. The stop
/// token ends whatever it does. One thread at a time.
class MovieInput final {
 public:
  /// Pictures with more pixels than this are not decoded; for AVCodecContext::max_pixels.
  static constexpr int64_t kMaxPixels = int64_t{1} << 28;

  /// Opens a file and finds its streams. Throws std::system_error for what is no file or cannot be
  /// read, MovieError for what is no movie, or Cancelled. Blocking.
  [[nodiscard]] static MovieInput open(const std::filesystem::path& path,
                                       const std::stop_token& stop = {},
                                       const MovieInputOptions& options = {});
  MovieInput(MovieInput&&) noexcept;
  MovieInput& operator=(MovieInput&&) noexcept;
  ~MovieInput();

  [[nodiscard]] AVFormatContext& context() const;
  /// The movie header of a QuickTime or ISO base media file; absent for all others.
  [[nodiscard]] const std::optional<QuickTimeMovie>& boxes() const { return m_boxes; }
  /// Whether the format is made for transmission: such a file may begin anywhere and end with any
  /// packet, and what was lost on the way is lost.
  [[nodiscard]] bool isTransmission() const;
  /// Bytes of the file.
  [[nodiscard]] int64_t fileSize() const;

  /// The next packet of a stream that is not discarded, in the place of the old content of
  /// `packet`, its presentation time as the file has it; false at the end. Throws MovieError,
  /// std::system_error or Cancelled.
  [[nodiscard]] bool readPacket(AVPacket& packet);

  /// Goes back to the start. False if the format cannot.
  [[nodiscard]] bool rewind();

 private:
  class File;
  explicit MovieInput(std::unique_ptr<File> file);
  void readBoxes(const AVInputFormat& format);
  void findStreams();
  void readLowestOffsets();
  void correctTime(AVPacket& packet) const;

  /// Outlives the context, which reads through it.
  std::unique_ptr<File> m_file;
  AvInputPtr m_context;
  std::optional<QuickTimeMovie> m_boxes;
  FragmentTimes m_fragmentTimes;
};

}  // namespace vantrel
