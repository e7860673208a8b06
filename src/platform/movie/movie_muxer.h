#pragma once

#include <cstdint>
#include <filesystem>
#include <memory>
#include <mutex>

#include "platform/movie/av_ptr.h"
#include "platform/movie/movie_file.h"

namespace vantrel {

/// Puts packets into a QuickTime movie. Errors are std::system_error where the system gave one, as
/// for a full disk, and MovieError otherwise.
class MovieMuxer final {
 public:
  /// Makes the file, empty. Throws std::system_error. `name` stands for it in all errors.
  MovieMuxer(const std::filesystem::path& file, std::filesystem::path name);

  /// Whether a QuickTime movie has a place for packets of this kind.
  [[nodiscard]] static bool takes(const AVCodecParameters& parameters);

  // From one thread, in this order:

  /// Adds a stream; its track ID is one more than its index. Its side data may be added before the
  /// header is written.
  [[nodiscard]] AVStream& addStream(const AVCodecParameters& parameters);
  /// Ticks per second of all video tracks, and of the movie.
  void writeHeader(int32_t videoTimescale, int32_t movieTimescale);
  /// Ends the movie and closes the file, flushed to the disk if `flushes`.
  void close(bool flushes);

  /// Between header and end, from any thread. Packets of one stream in the order of their decoding
  /// times, which count in the time base that the stream has since the header.
  void write(AVPacket& packet, int stream);

 private:
  struct FreeFormat {
    void operator()(AVFormatContext* context) const { avformat_free_context(context); }
  };
  using FormatPtr = std::unique_ptr<AVFormatContext, FreeFormat>;

  [[nodiscard]] static FormatPtr makeFormat();
  static AVStream& addStream(AVFormatContext& format, const AVCodecParameters& parameters);

  std::mutex m_mutex;
  // Under m_mutex between header and end.
  MovieFile m_file;
  FormatPtr m_format;
};

}  // namespace vantrel
