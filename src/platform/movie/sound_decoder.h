#pragma once

#include <cstdint>
#include <stop_token>

#include "platform/movie/av_ptr.h"
#include "platform/movie/demuxer.h"

namespace vantrel {

/// The decoded frames of an audio track with the times of its media. One thread at a time.
class SoundDecoder final {
 public:
  /// Throws what Demuxer throws, and MovieError if nothing decodes the track.
  SoundDecoder(const Movie& movie, const MovieTrack& track, const std::stop_token& stop);

  [[nodiscard]] const AVStream& stream() const { return m_demuxer.stream(); }

  /// The next frame, with a `pts`; null at the end. What cannot be decoded is left out. Throws what
  /// Demuxer::read throws.
  [[nodiscard]] AvFramePtr next();

  /// `next` then begins at or before a time of the stream, if there is sound, and early enough for
  /// the decoder to have settled by then.
  void seek(int64_t time);

 private:
  [[nodiscard]] AvFramePtr receive();
  [[nodiscard]] bool send();
  void restart();

  Demuxer m_demuxer;
  AvCodecContextPtr m_decoder;
  AvPacketPtr m_packet = makePacket();
  /// Read ahead while seeking.
  AvFramePtr m_ahead;
  bool m_isDraining = false;
  /// Where the next frame begins if it does not say; AV_NOPTS_VALUE if unknown.
  int64_t m_nextTime = AV_NOPTS_VALUE;
};

}  // namespace vantrel
