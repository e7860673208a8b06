#include "platform/movie/first_frames.h"

#include <algorithm>

#include "platform/movie/movie_error.h"

namespace vantrel {
namespace {

/// Of one stream: more than any decoder holds back, and a few damaged ones.
constexpr int kMaxPackets = 64;
/// Of all streams.
constexpr int kMaxPacketsInAll = 2000;
constexpr int64_t kMaxBytes = int64_t{256} << 20;

/// The decoder of one stream until it gave a picture.
class FirstFrame final {
 public:
  explicit FirstFrame(const AVStream& stream) : m_index(stream.index) {
    const AVCodec* codec = avcodec_find_decoder(stream.codecpar->codec_id);
    m_decoder = owned<AvCodecContextPtr>(avcodec_alloc_context3(codec));
    // With one thread the first picture comes out without those that follow being decoded.
    m_decoder->thread_count = 1;
    m_decoder->max_pixels = MovieInput::kMaxPixels;
    m_decoder->skip_loop_filter = AVDISCARD_ALL;
    m_decoder->pkt_timebase = stream.time_base;
    if (avcodec_parameters_to_context(m_decoder.get(), stream.codecpar) < 0 ||
        avcodec_open2(m_decoder.get(), codec, nullptr) < 0) {
      m_decoder.reset();
    }
  }

  [[nodiscard]] int index() const { return m_index; }
  [[nodiscard]] bool isDone() const { return m_frame || !m_decoder || m_packets >= kMaxPackets; }
  [[nodiscard]] AvFramePtr take() { return std::move(m_frame); }

  /// Null is the end of the stream.
  void decode(const AVPacket* packet) {
    ++m_packets;
    // An error is of this packet alone; the next may do.
    (void)avcodec_send_packet(m_decoder.get(), packet);
    AvFramePtr frame = makeFrame();
    if (avcodec_receive_frame(m_decoder.get(), frame.get()) >= 0) m_frame = std::move(frame);
  }

 private:
  int m_index;
  AvCodecContextPtr m_decoder;
  AvFramePtr m_frame;
  int m_packets = 0;
};

/// A damaged part of a file ends it here.
bool readPacket(MovieInput& input, AVPacket& packet) {
  try {
    return input.readPacket(packet);
  } catch (const MovieError&) {
    return false;
  }
}

void feed(MovieInput& input, std::vector<FirstFrame>& waiting) {
  const auto isDone = [](const FirstFrame& first) { return first.isDone(); };
  const AvPacketPtr packet = makePacket();
  int64_t bytes = 0;
  for (int count = 0; count < kMaxPacketsInAll && bytes < kMaxBytes; ++count) {
    if (std::all_of(waiting.begin(), waiting.end(), isDone)) return;
    if (!readPacket(input, *packet)) break;
    bytes += packet->size;
    for (FirstFrame& first : waiting) {
      if (first.index() != packet->stream_index || first.isDone()) continue;
      first.decode(packet.get());
    }
  }
  for (FirstFrame& first : waiting) {
    if (!first.isDone()) first.decode(nullptr);
  }
}

}  // namespace

std::map<int, AvFramePtr> decodeFirstFrames(MovieInput& input, const std::vector<int>& streams) {
  std::vector<FirstFrame> waiting;
  waiting.reserve(streams.size());
  for (const int index : streams)
    waiting.emplace_back(*input.context().streams[index]);
  feed(input, waiting);
  std::map<int, AvFramePtr> frames;
  for (FirstFrame& first : waiting) {
    if (AvFramePtr frame = first.take()) frames[first.index()] = std::move(frame);
  }
  return frames;
}

}  // namespace vantrel
