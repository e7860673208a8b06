#include "platform/movie/finished_header.h"

#include <QtGlobal>
#include <algorithm>
#include <limits>
#include <string>
#include <utility>

#include "platform/movie/edit_list.h"
#include "platform/movie/timed_header.h"

namespace vantrel {
namespace {

/// In ticks of a track; more would not fit into signed numbers.
constexpr uint64_t kLongestMedia = std::numeric_limits<int64_t>::max();

/// Makes the samples of a track end at `mediaEnd`: changes how long the last one in the order of
/// decoding lasts, which is the only one that no other follows. Composition times are decoding
/// times plus an offset of no less than 0, so the sum then covers the end of the last one shown.
/// Returns the sum.
uint64_t endSamplesAt(BoxTree& timeTable, int64_t mediaEnd) {
  struct Run {
    uint32_t count = 0, duration = 0;
  };
  ByteCursor cursor(timeTable.payload);
  cursor.skip(4);  // version and flags
  const uint64_t count = cursor.u32();
  if (!cursor.ok() || count > cursor.rest().size() / 8) {
    throw DamagedBoxes(QT_TRANSLATE_NOOP("Failure", "The movie header is damaged"));
  }
  std::vector<Run> runs;
  uint64_t start = 0;
  for (uint64_t i = 0; i < count; ++i) {
    const Run run{cursor.u32(), cursor.u32()};
    if (run.count == 0) continue;
    runs.push_back(run);
    const uint64_t length = uint64_t{run.count} * run.duration;
    if (length > kLongestMedia - start)
      throw DamagedBoxes(QT_TRANSLATE_NOOP("Failure", "The movie header is damaged"));
    start += length;
  }
  if (runs.empty()) return 0;
  start -= runs.back().duration;
  const int64_t end = std::max<int64_t>(mediaEnd, 0);
  const int64_t wanted = std::max<int64_t>(end - static_cast<int64_t>(start), 1);
  if (wanted > std::numeric_limits<int32_t>::max()) {
    throw DamagedBoxes(QT_TRANSLATE_NOOP("Failure", "The last picture lasts too long"));
  }
  const auto duration = static_cast<uint32_t>(wanted);
  if (runs.back().count > 1) {
    --runs.back().count;
    runs.push_back({});
  }
  runs.back() = {1, duration};

  BoxWriter writer;
  writer.u32(0);  // version and flags
  writer.u32(static_cast<uint32_t>(runs.size()));
  for (const Run& run : runs) {
    writer.u32(run.count);
    writer.u32(run.duration);
  }
  timeTable.payload = writer.release();
  return start + duration;
}

BoxTree leaf(std::span<const uint8_t> whole, uint32_t type) {
  const std::optional<BoxView> box = takeBox(whole);
  if (!box || box->type != type || !whole.empty())
    throw DamagedBoxes(QT_TRANSLATE_NOOP("Failure", "A box is damaged"));
  return {type, {box->payload.begin(), box->payload.end()}, {}};
}

/// One track while it is changed.
class Track final {
 public:
  Track(BoxTree& trak, uint32_t movieTimescale)
      : m_trak(trak),
        m_header(TimedHeader::Kind::Track, trak.need(fourCC("tkhd")).payload),
        m_media(TimedHeader::Kind::Media, trak.need(fourCC("mdia")).need(fourCC("mdhd")).payload),
        m_movieTimescale(movieTimescale) {
    if (m_media.number() == 0)
      throw DamagedBoxes(QT_TRANSLATE_NOOP("Failure", "The movie header is damaged"));
    if (BoxTree* edits = trak.child(fourCC("edts"))) {
      m_edits = parseEditList(edits->need(fourCC("elst")).payload);
    }
  }

  [[nodiscard]] uint32_t id() const { return m_header.number(); }
  /// In ticks of the movie.
  [[nodiscard]] uint64_t duration() const { return m_header.duration(); }

  void setMovieTimescale(uint32_t timescale) {
    if (timescale == m_movieTimescale) return;
    for (QuickTimeEdit& edit : m_edits) {
      edit.segmentDuration = rescaledTicks(edit.segmentDuration, m_movieTimescale, timescale);
    }
    m_movieTimescale = timescale;
    updateDuration();
  }

  void apply(const QuickTimeTrackChange& change) {
    m_header.setEnabled(change.enabled);
    if (change.language) m_media.setLanguage(*change.language);
    setLanguageTag(change.extendedLanguageTag);
    replace(fourCC("udta"), change.userData);
    replace(fourCC("meta"), change.metadata);
    if (change.edits) m_edits = *change.edits;
    if (change.mediaEnd) endAt(*change.mediaEnd, !change.edits);
    if (change.edits || change.mediaEnd) updateDuration();
    removeVendor();
  }

  void write() {
    m_trak.remove(fourCC("tapt"));
    m_trak.need(fourCC("tkhd")).payload = m_header.payload();
    m_trak.need(fourCC("mdia")).need(fourCC("mdhd")).payload = m_media.payload();
    m_trak.remove(fourCC("edts"));
    if (m_edits.empty()) return;
    BoxTree list{fourCC("elst"), editListPayload(m_edits), {}};
    m_trak.insertBehind(fourCC("tkhd"), {fourCC("edts"), {}, {std::move(list)}});
  }

 private:
  void setLanguageTag(const std::optional<std::string>& tag) {
    BoxTree& media = m_trak.need(fourCC("mdia"));
    media.remove(fourCC("elng"));
    if (!tag) return;
    BoxWriter writer;
    writer.u32(0);  // version and flags
    writer.append(*tag);
    writer.zeros(1);
    media.insertBehind(fourCC("mdhd"), {fourCC("elng"), writer.release(), {}});
  }

  void replace(uint32_t type, std::span<const uint8_t> whole) {
    m_trak.remove(type);
    if (!whole.empty()) m_trak.children.push_back(leaf(whole, type));
  }

  [[nodiscard]] BoxTree& sampleTable() {
    return m_trak.need(fourCC("mdia")).need(fourCC("minf")).need(fourCC("stbl"));
  }

  /// Which program made the samples, in the first description of pictures or sound (QuickTime File
  /// Format, "Sample Description Atoms").
  void removeVendor() {
    constexpr size_t kVendor = 28, kSize = 4;
    std::vector<uint8_t>& descriptions = sampleTable().need(fourCC("stsd")).payload;
    if (descriptions.size() < kVendor + kSize) return;
    std::fill_n(descriptions.begin() + kVendor, kSize, uint8_t{0});
  }

  void endAt(int64_t mediaEnd, bool editsFollow) {
    m_media.setDuration(endSamplesAt(sampleTable().need(fourCC("stts")), mediaEnd));
    const auto last = std::find_if(m_edits.rbegin(), m_edits.rend(),
                                   [](const QuickTimeEdit& edit) { return edit.mediaTime >= 0; });
    if (!editsFollow || last == m_edits.rend()) return;
    const int64_t shown = mediaEnd > last->mediaTime ? mediaEnd - last->mediaTime : 0;
    last->segmentDuration = rescaledTicks(shown, m_media.number(), m_movieTimescale);
  }

  void updateDuration() {
    if (m_edits.empty()) {
      const auto media = static_cast<int64_t>(knownDuration());
      const int64_t duration = rescaledTicks(media, m_media.number(), m_movieTimescale);
      m_header.setDuration(static_cast<uint64_t>(duration));
      return;
    }
    uint64_t sum = 0;
    for (const QuickTimeEdit& edit : m_edits) {
      if (edit.segmentDuration < 0)
        throw DamagedBoxes(QT_TRANSLATE_NOOP("Failure", "An edit has a negative length"));
      sum += static_cast<uint64_t>(edit.segmentDuration);
    }
    m_header.setDuration(sum);
  }

  [[nodiscard]] uint64_t knownDuration() const {
    return std::min<uint64_t>(m_media.duration(), std::numeric_limits<int64_t>::max());
  }

  BoxTree& m_trak;
  TimedHeader m_header, m_media;
  uint32_t m_movieTimescale;
  std::vector<QuickTimeEdit> m_edits;
};

/// Changes all but where the chunks are.
void change(BoxTree& moov, const QuickTimeFinish& finish) {
  TimedHeader header(TimedHeader::Kind::Movie, moov.need(fourCC("mvhd")).payload);
  if (header.number() == 0)
    throw DamagedBoxes(QT_TRANSLATE_NOOP("Failure", "The movie header is damaged"));
  moov.remove(fourCC("udta"));
  moov.remove(fourCC("meta"));
  std::vector<Track> tracks;
  for (BoxTree& trak : moov.children) {
    if (trak.type == fourCC("trak")) tracks.emplace_back(trak, header.number());
  }
  if (finish.movieTimescale != 0) {
    header.setNumber(finish.movieTimescale);
    for (Track& track : tracks)
      track.setMovieTimescale(finish.movieTimescale);
  }
  for (const QuickTimeTrackChange& each : finish.tracks) {
    const auto found = std::find_if(tracks.begin(), tracks.end(), [&each](const Track& track) {
      return track.id() == each.trackID;
    });
    if (found == tracks.end())
      throw DamagedBoxes(QT_TRANSLATE_NOOP("Failure", "A track is missing"));
    found->apply(each);
  }
  uint64_t duration = 0;
  for (Track& track : tracks) {
    track.write();
    duration = std::max(duration, track.duration());
  }
  header.setDuration(duration);
  moov.need(fourCC("mvhd")).payload = header.payload();
}

}  // namespace

std::vector<uint8_t> finishedMovieHeader(std::span<const uint8_t> moov,
                                         const QuickTimeFinish& finish, uint64_t headerOffset,
                                         std::span<const MediaStretch> media) {
  const std::optional<BoxView> box = findBox(moov, fourCC("moov"));
  if (!box) throw DamagedBoxes(QT_TRANSLATE_NOOP("Failure", "The movie header is missing"));
  BoxTree tree = BoxTree::parse(*box);
  change(tree, finish);
  moveChunks(tree, headerOffset, media);
  if (tree.size() > std::numeric_limits<uint32_t>::max()) {
    throw DamagedBoxes(QT_TRANSLATE_NOOP("Failure", "The movie header is too long"));
  }
  BoxWriter writer;
  tree.write(writer);
  return writer.release();
}

}  // namespace vantrel
