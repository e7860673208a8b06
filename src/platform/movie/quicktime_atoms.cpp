#include "platform/movie/quicktime_atoms.h"

#include <algorithm>

#include "platform/movie/box_bytes.h"
#include "platform/movie/box_file.h"
#include "platform/movie/quicktime_track.h"

namespace vantrel {
namespace {

/// False if there is none that makes sense.
bool readMovieHeader(BoxFile& file, const FileBox& moov, QuickTimeMovie& movie) {
  const std::optional<FileBox> box = file.child(moov, fourCC("mvhd"));
  if (!box) return false;
  const auto bytes = file.load(box->payload, box->end);
  if (!bytes) return false;
  ByteCursor cursor(*bytes);
  const bool wide = cursor.u32() >> 24 == 1;
  cursor.skip(wide ? 16 : 8);  // creation and modification time
  movie.timescale = cursor.u32();
  movie.duration = knownDuration(cursor.word(wide), wide);
  return cursor.ok() && movie.timescale != 0;
}

void readExtends(BoxFile& file, const FileBox& moov, QuickTimeMovie& movie) {
  const std::optional<FileBox> extends = file.child(moov, fourCC("mvex"));
  movie.isFragmented = extends.has_value();
  const auto header = extends ? file.child(*extends, fourCC("mehd")) : std::nullopt;
  const auto bytes = header ? file.load(header->payload, header->end) : std::nullopt;
  if (!bytes) return;
  ByteCursor cursor(*bytes);
  const bool wide = cursor.u32() >> 24 == 1;
  movie.duration = std::max(movie.duration, knownDuration(cursor.word(wide), wide));
}

}  // namespace

std::optional<QuickTimeMovie> QuickTimeMovie::read(const std::filesystem::path& path) {
  BoxFile file(path);
  if (!file.isQuickTime()) return std::nullopt;
  const std::optional<FileBox> moov = file.find(fourCC("moov"), 0, file.size());
  QuickTimeMovie movie;
  if (!moov || !readMovieHeader(file, *moov, movie)) return std::nullopt;
  readExtends(file, *moov, movie);
  auto trak = file.child(*moov, fourCC("trak"));
  while (trak && movie.tracks.size() < kMostTracks) {
    if (auto track = readQuickTimeTrack(file, *trak)) movie.tracks.push_back(std::move(*track));
    trak = file.find(fourCC("trak"), trak->end, moov->end);
  }
  return movie;
}

const QuickTimeTrack* QuickTimeMovie::track(uint32_t trackID) const {
  const auto found = std::find_if(tracks.begin(), tracks.end(), [trackID](const auto& track) {
    return track.trackID == trackID;
  });
  return found == tracks.end() ? nullptr : &*found;
}

}  // namespace vantrel
