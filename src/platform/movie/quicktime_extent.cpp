#include "platform/movie/quicktime_extent.h"

#include <algorithm>
#include <array>

#include "platform/movie/box_bytes.h"
#include "platform/movie/box_file.h"
#include "platform/movie/fragment_runs.h"
#include "platform/movie/sample_tables.h"

namespace vantrel {
namespace {

/// A number at a fixed place of a box that starts with version and flags; 0 if it is too short.
uint32_t numberIn(BoxFile& file, const FileBox& box, uint64_t at) {
  std::array<uint8_t, 4> bytes{};
  if (box.end - box.payload < at + bytes.size() || !file.read(box.payload + at, bytes)) return 0;
  return ByteCursor(bytes).u32();
}

class ExtentScan {
 public:
  explicit ExtentScan(const std::filesystem::path& path) : m_file(path) {}

  std::optional<QuickTimeExtent> run() {
    if (!m_file.isQuickTime()) return std::nullopt;
    uint64_t offset = 0;
    while (const std::optional<FileBox> box = m_file.boxAt(offset, m_file.size())) {
      if (m_isFragmented && !isPlausibleType(box->type)) m_extent.boxesAreWhole = false;
      if (box->end > m_file.size()) {
        if (matters(box->type)) m_extent.boxesAreWhole = false;
        offset = m_file.size();
        break;
      }
      if (box->type == fourCC("moov")) scanMovie(*box);
      if (box->type == fourCC("moof")) scanFragment(*box);
      offset = box->end;
    }
    // What is no box may have been the next fragment.
    if (m_isFragmented && offset < m_file.size()) m_extent.boxesAreWhole = false;
    return std::move(m_extent);
  }

 private:
  static bool matters(uint32_t type) {
    return type == fourCC("mdat") || type == fourCC("moov") || type == fourCC("moof");
  }

  QuickTimeExtent::Track* track(uint32_t trackID) {
    const auto found =
        std::find_if(m_extent.tracks.begin(), m_extent.tracks.end(),
                     [trackID](const auto& each) { return each.trackID == trackID; });
    return found == m_extent.tracks.end() ? nullptr : &*found;
  }

  void scanMovie(const FileBox& moov) {
    if (!m_extent.tracks.empty()) return;
    m_isFragmented = m_file.child(moov, fourCC("mvex")).has_value();
    for (auto trak = m_file.child(moov, fourCC("trak"));
         trak && m_extent.tracks.size() < kMostTracks;
         trak = m_file.find(fourCC("trak"), trak->end, moov.end)) {
      if (const auto header = m_file.child(*trak, fourCC("tkhd"))) scanTrack(*trak, *header);
    }
  }

  void scanTrack(const FileBox& trak, const FileBox& header) {
    QuickTimeExtent::Track& result = m_extent.tracks.emplace_back();
    const bool wide = numberIn(m_file, header, 0) >> 24 == 1;
    result.trackID = numberIn(m_file, header, wide ? 20 : 12);
    std::optional<FileBox> table = trak;
    for (const char* type : {"mdia", "minf", "stbl"}) {
      if (table) table = m_file.child(*table, fourCC(type));
    }
    if (!table) return;
    const SampleTableExtent extent = sampleTableExtent(m_file, *table);
    result.sampleCount = extent.sampleCount;
    result.isWhole = extent.isSound && extent.end <= m_file.size();
  }

  /// Whether the boxes in a box of a fragment follow each other to its end, and are not those that
  /// stand beside it.
  bool isFilled(const FileBox& parent) {
    uint64_t offset = parent.payload;
    while (const std::optional<FileBox> box = m_file.boxAt(offset, parent.end)) {
      const bool isInside = box->end <= parent.end && !matters(box->type);
      if (!isInside || !isPlausibleType(box->type)) return false;
      offset = box->end;
    }
    return offset == parent.end;
  }

  void scanFragment(const FileBox& moof) {
    if (!isFilled(moof)) m_extent.boxesAreWhole = false;
    for (auto traf = m_file.child(moof, fourCC("traf")); traf;
         traf = m_file.find(fourCC("traf"), traf->end, moof.end)) {
      const auto header = m_file.child(*traf, fourCC("tfhd"));
      const bool isOwned = header && track(numberIn(m_file, *header, 4));
      if (!isOwned || !isFilled(*traf)) m_extent.boxesAreWhole = false;
    }
    forEachRun(m_file, moof, [this](const FragmentRun& run) {
      QuickTimeExtent::Track* owner = track(run.trackID);
      if (!owner) return;
      if (!run.isWhole()) owner->isWhole = false;
      owner->sampleCount += run.sampleCount;
    });
  }

  BoxFile m_file;
  QuickTimeExtent m_extent;
  bool m_isFragmented = false;
};

}  // namespace

const QuickTimeExtent::Track* QuickTimeExtent::track(uint32_t trackID) const {
  const auto found = std::find_if(tracks.begin(), tracks.end(),
                                  [trackID](const Track& each) { return each.trackID == trackID; });
  return found == tracks.end() ? nullptr : &*found;
}

std::optional<QuickTimeExtent> QuickTimeExtent::read(const std::filesystem::path& path) {
  return ExtentScan(path).run();
}

}  // namespace vantrel
