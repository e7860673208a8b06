#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <stop_token>
#include <string>

#include "platform/movie/container_walk.h"
#include "platform/movie/movie.h"
#include "platform/movie/movie_input.h"

namespace vantrel {

/// The packets of one track, in the file's order and with the times of its media: edit lists are
/// not applied. A file that ends before it should is an error where reading comes to it. One thread
/// at a time.
class Demuxer final {
 public:
  /// Throws what MovieInput::open throws, and MovieError for a file that no longer has the track.
  Demuxer(const Movie& movie, const MovieTrack& track, const std::stop_token& stop);

  [[nodiscard]] const AVStream& stream() const { return *m_stream; }
  /// Throws MovieError for a file that is shorter than it says, before reading comes to its end,
  /// and has `read` hold out for every sample that fragments promise. Before the first `read`.
  void requireWholeFile();
  /// The next packet in the place of the old content of `packet`; false at the end. Pictures of a
  /// transmission may be flagged corrupt. Throws MovieError, std::system_error or Cancelled.
  [[nodiscard]] bool read(AVPacket& packet);

  /// Goes to a key frame at or before a time of the stream; some formats only come near it. False
  /// if the format cannot, which then stands anywhere.
  [[nodiscard]] bool seek(int64_t time);
  /// The same for the track's first packet.
  [[nodiscard]] bool rewind();
  /// Whether seeking to a time of the stream skips packets that reading on would come by, by what
  /// the file's index tells; absent if it tells nothing about that time.
  [[nodiscard]] std::optional<bool> isSeekShorter(int64_t time) const;

  /// Throws a MovieError about reading the file.
  [[noreturn]] void fail(const std::string& words) const;

 private:
  [[noreturn]] void failAtEarlyEnd() const { fail(kEndsTooEarly); }
  /// Learns the number of samples on the way.
  [[nodiscard]] bool isWholeFile();
  [[nodiscard]] bool readOwn(AVPacket& packet);
  [[nodiscard]] bool readTransmittedSound(AVPacket& packet);
  void readAhead();
  void leavePlace();
  /// Its place in the stream's index.
  [[nodiscard]] std::optional<int> entryOf(const AVPacket& packet) const;
  void countPacket(const AVPacket& packet);
  void requireSoundUpTo(const AVPacket& packet);
  void requireAllPackets();

  std::filesystem::path m_path;
  MovieInput m_input;
  AVStream* m_stream = nullptr;
  /// Samples of a video track, those in fragments too; 0 if unknown or nobody asked for them.
  uint64_t m_sampleCount = 0;
  /// Where the next packet is expected in the stream's index; absent after a seek.
  std::optional<int> m_nextEntry;
  /// The greatest time of the packets read since the last seek, by which the index may sort them;
  /// AV_NOPTS_VALUE before the first.
  int64_t m_readUpTo = AV_NOPTS_VALUE;
  /// Null for formats without one, and after a seek.
  std::unique_ptr<ContainerWalk> m_walk;
  /// A parser joins and splits the samples, so that packets cannot be counted.
  bool m_isParsed = false;

  // Of transmitted sound. What is flagged corrupt is several packets with one damage, the rest of
  // which is not flagged. The end of the file may be such a place; the last packet is then not
  // whole and left out.
  bool m_isTransmittedSound = false;
  AvPacketPtr m_ahead;
  bool m_hasAhead = false;
  bool m_isCut = false;
  int m_packetsBehindCut = 0;
};

}  // namespace vantrel
