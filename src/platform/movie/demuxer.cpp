#include "platform/movie/demuxer.h"

#include <QtGlobal>
#include <algorithm>
#include <string_view>

#include "platform/movie/container_extent.h"
#include "platform/movie/movie_error.h"
#include "platform/movie/quicktime_extent.h"

namespace vantrel {
namespace {

constexpr const char* kIsDamaged = QT_TRANSLATE_NOOP("Failure", "Some of it is damaged");

AVMediaType mediaTypeOf(MovieTrack::Kind kind) {
  return kind == MovieTrack::Kind::Video ? AVMEDIA_TYPE_VIDEO : AVMEDIA_TYPE_AUDIO;
}

}  // namespace

Demuxer::Demuxer(const Movie& movie, const MovieTrack& track, const std::stop_token& stop)
    : m_path(movie.path()),
      m_input(MovieInput::open(m_path, stop, {.ignoresEditLists = true, .isDescribed = true})) {
  AVFormatContext& context = m_input.context();
  const auto index = static_cast<unsigned>(track.streamIndex);
  if (track.streamIndex < 0 || index >= context.nb_streams ||
      context.streams[index]->codecpar->codec_type != mediaTypeOf(track.kind)) {
    fail(QT_TRANSLATE_NOOP("Failure", "The track is no longer there"));
  }
  for (unsigned i = 0; i < context.nb_streams; ++i) {
    if (i != index) context.streams[i]->discard = AVDISCARD_ALL;
  }
  m_stream = context.streams[index];
  m_isTransmittedSound = m_input.isTransmission() && track.kind == MovieTrack::Kind::Audio;
  m_nextEntry = 0;
  m_walk = ContainerWalk::open(m_path);
}

void Demuxer::requireWholeFile() {
  if (!isWholeFile()) failAtEarlyEnd();
}

bool Demuxer::isWholeFile() {
  if (!containerIsWhole(m_path)) return false;
  const bool isTransport = std::string_view(m_input.context().iformat->name) == "mpegts";
  if (isTransport && !transportIsWhole(m_path)) return false;
  // The boxes that are missing may be the very ones that tell of a movie.
  const auto extent = QuickTimeExtent::read(m_path);
  if (!extent) return true;
  const QuickTimeExtent::Track* track = extent->track(static_cast<uint32_t>(m_stream->id));
  // Packets of sound may hold any number of samples.
  const bool isVideo = m_stream->codecpar->codec_type == AVMEDIA_TYPE_VIDEO;
  if (isVideo && m_input.boxes() && track) m_sampleCount = track->sampleCount;
  return extent->boxesAreWhole && (!track || track->isWhole);
}

bool Demuxer::readOwn(AVPacket& packet) {
  while (m_input.readPacket(packet)) {
    if (packet.stream_index == m_stream->index) return true;
  }
  return false;
}

bool Demuxer::read(AVPacket& packet) {
  if (m_isTransmittedSound) return readTransmittedSound(packet);
  if (!readOwn(packet)) {
    requireAllPackets();
    return false;
  }
  if ((packet.flags & AV_PKT_FLAG_CORRUPT) != 0 && !m_input.isTransmission()) failAtEarlyEnd();
  countPacket(packet);
  requireSoundUpTo(packet);
  const bool isKeyFrame = (packet.flags & AV_PKT_FLAG_KEY) != 0;
  m_readUpTo = std::max({m_readUpTo, packet.dts, isKeyFrame ? packet.pts : AV_NOPTS_VALUE});
  return true;
}

void Demuxer::requireSoundUpTo(const AVPacket& packet) {
  if (!m_walk || packet.pos < 0) return;
  if (!m_walk->isSoundUpTo(static_cast<uint64_t>(packet.pos))) fail(kIsDamaged);
}

bool Demuxer::readTransmittedSound(AVPacket& packet) {
  if (!m_ahead) {
    m_ahead = makePacket();
    readAhead();
  }
  if (!m_hasAhead) return false;
  av_packet_move_ref(&packet, m_ahead.get());
  readAhead();
  return m_hasAhead || !m_isCut;
}

void Demuxer::readAhead() {
  m_hasAhead = readOwn(*m_ahead);
  if (!m_hasAhead) return;
  if ((m_ahead->flags & AV_PKT_FLAG_CORRUPT) != 0) {
    m_isCut = true;
    m_packetsBehindCut = 0;
  } else if (m_isCut && ++m_packetsBehindCut > 1) {
    fail(QT_TRANSLATE_NOOP("Failure", "Some of its sound is missing"));
  }
}

std::optional<int> Demuxer::entryOf(const AVPacket& packet) const {
  const int flags = AVSEEK_FLAG_ANY | AVSEEK_FLAG_BACKWARD;
  const int found = av_index_search_timestamp(m_stream, packet.dts, flags);
  const int count = avformat_index_get_entries_count(m_stream);
  for (int entry = found; entry >= 0 && entry < count; ++entry) {
    // Several entries may have one time, but not one place.
    if (avformat_index_get_entry(m_stream, entry)->pos == packet.pos) return entry;
  }
  return {};
}

void Demuxer::countPacket(const AVPacket& packet) {
  if (!m_input.boxes()) return;
  const AVCodecParserContext* parser = av_stream_get_parser(m_stream);
  // At the end of the file the parser goes before its last packet comes.
  m_isParsed = m_isParsed || (parser && (parser->flags & PARSER_FLAG_COMPLETE_FRAMES) == 0);
  if (m_isParsed) return;
  if (!m_nextEntry) m_nextEntry = entryOf(packet);
  if (m_nextEntry) ++*m_nextEntry;
}

void Demuxer::requireAllPackets() {
  if (m_walk && !m_walk->isSound()) fail(kIsDamaged);
  if (!m_input.boxes() || m_isParsed || !m_nextEntry) return;
  const int count = avformat_index_get_entries_count(m_stream);
  if (*m_nextEntry < count || static_cast<uint64_t>(count) < m_sampleCount) failAtEarlyEnd();
}

void Demuxer::leavePlace() {
  m_nextEntry.reset();
  m_readUpTo = AV_NOPTS_VALUE;
  m_walk.reset();
  m_ahead.reset();
  m_isCut = false;
}

bool Demuxer::seek(int64_t time) {
  leavePlace();
  return av_seek_frame(&m_input.context(), m_stream->index, time, AVSEEK_FLAG_BACKWARD) >= 0;
}

bool Demuxer::rewind() {
  leavePlace();
  if (m_input.isTransmission()) {
    return av_seek_frame(&m_input.context(), -1, 0, AVSEEK_FLAG_BYTE) >= 0;
  }
  const AVIndexEntry* first = avformat_index_get_entry(m_stream, 0);
  const int64_t start = m_stream->start_time == AV_NOPTS_VALUE ? 0 : m_stream->start_time;
  // The first packet need not be marked as a key frame.
  return av_seek_frame(&m_input.context(), m_stream->index, first ? first->timestamp : start,
                       AVSEEK_FLAG_BACKWARD | AVSEEK_FLAG_ANY) >= 0;
}

std::optional<bool> Demuxer::isSeekShorter(int64_t time) const {
  // Seeking in a transmission leaves entries that are no key frames.
  const int count = m_input.isTransmission() ? 0 : avformat_index_get_entries_count(m_stream);
  if (count == 0 || m_readUpTo == AV_NOPTS_VALUE) return {};
  if (avformat_index_get_entry(m_stream, count - 1)->timestamp < time) return {};
  const int key = av_index_search_timestamp(m_stream, time, AVSEEK_FLAG_BACKWARD);
  return key >= 0 && avformat_index_get_entry(m_stream, key)->timestamp > m_readUpTo;
}

void Demuxer::fail(const std::string& words) const {
  throw MovieError(m_path, FileAction::Read, words);
}

}  // namespace vantrel
