#pragma once

#include <cstdint>
#include <deque>
#include <exception>

#include "platform/movie/av_ptr.h"
#include "platform/movie/demuxer.h"
#include "platform/movie/pass_over_rule.h"

namespace vantrel {

/// The decoded pictures of a video track in the order of their times, which count as the stream
/// does. One thread at a time.
class FrameDecoder final {
 public:
  /// Throws what Demuxer throws, and MovieError if nothing decodes the track.
  FrameDecoder(const Movie& movie, const MovieTrack& track, const std::stop_token& stop);

  [[nodiscard]] const AVStream& stream() const { return m_demuxer.stream(); }
  /// As Demuxer does.
  void requireWholeFile() { m_demuxer.requireWholeFile(); }

  /// The next picture, with a `pts` that is greater than that of the picture before; null at the
  /// end. A picture whose time is not greater is moved behind the one before by a tick: none is
  /// dropped. Damaged pictures are given, but not those that need others from before the start.
  /// Packets that cannot be decoded are passed over. Throws what Demuxer::read throws.
  [[nodiscard]] AvFramePtr next();

  /// `next` then begins with a picture at or before a time of the stream, if there is one.
  void seek(int64_t time);

  /// Pictures that end at or before this time of the stream, as their packets say, may be left out
  /// from now on where no other needs them.
  void passOverUntil(int64_t time);
  /// The latest start, as the stream counts, of the pictures that were allowed to be left out since
  /// the last `passOverUntil`; AV_NOPTS_VALUE, which is before all, if there was none.
  [[nodiscard]] int64_t latestPassedOver() const { return m_passOver.latest(); }
  /// Whether going to a later time by `seek` decodes less than going on; `from` is about where
  /// `next` stands.
  [[nodiscard]] bool isSeekShorter(int64_t from, int64_t to) const;

  /// How long a picture is shown, in ticks of the stream, as its packet says; 0 if unknown.
  [[nodiscard]] static int64_t durationOf(const AVFrame& frame);

  /// Throws MovieError when nothing was or could be decoded, or more was lost than a viewer
  /// overlooks.
  void requireFewLost() const;

 private:
  /// Null when the decoder needs more packets, or has ended.
  [[nodiscard]] AvFramePtr receive();
  /// False at the end of the track.
  [[nodiscard]] bool send();
  /// The same.
  [[nodiscard]] bool readWanted();
  /// Whether the first picture from here comes at or before that time; decodes it if it must.
  [[nodiscard]] bool beginsBy(int64_t time);
  [[nodiscard]] bool isWanted(const AVPacket& packet);
  void countLost(const AVPacket& packet);
  void noteTimeOf(const AVPacket& packet);
  void chooseDiscard(const AVPacket& packet);
  void setTime(AVFrame& frame);
  void restart();

  /// A packet flagged corrupt may stand for a gap as many packets behind it: parsers hand such a
  /// flag on with a packet before.
  static constexpr int kFarFromDamage = 4;

  Demuxer m_demuxer;
  AvCodecContextPtr m_decoder;
  AvPacketPtr m_packet = makePacket();
  /// Whether the packet waits to be decoded.
  bool m_hasPacket = false;
  /// Read ahead while seeking.
  AvFramePtr m_ahead;
  bool m_isDraining = false;
  /// What kept it from reading on, to be thrown behind the pictures read by then.
  std::exception_ptr m_failure;
  /// Until the first packet; or, where decoding may begin anywhere, until a key frame comes, and
  /// so many packets are passed over so far.
  bool m_awaitsKeyFrame = true;
  bool m_passesOver = false;
  int m_passedOver = 0;
  /// Pictures before this time need others from before the key frame that decoding began with.
  int64_t m_earliestTime = INT64_MIN;

  /// Whether the decoder can tell which pictures no other needs.
  bool m_canPassOver = false;
  PassOverRule m_passOver;

  enum class Times { Unknown, OfPresentation, OfDecoding };
  Times m_times = Times::Unknown;
  /// Of packets whose pictures have not come out, where the file has no other times: as many
  /// pictures come out as go in, so that the n-th of them gets the n-th time.
  std::deque<int64_t> m_decodingTimes;
  /// Where the next packet, or the next picture, is expected.
  int64_t m_nextDecodingTime = 0, m_nextTime = 0;
  /// Of the last picture; AV_NOPTS_VALUE before the first.
  int64_t m_lastTime = AV_NOPTS_VALUE;

  int64_t m_packets = 0, m_pictures = 0, m_lost = 0;
  /// Packets since one was flagged corrupt.
  int m_sinceCorrupt = kFarFromDamage;
  /// Of the packet before.
  int64_t m_decodingEnd = AV_NOPTS_VALUE;
};

}  // namespace vantrel
