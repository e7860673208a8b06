#include "platform/movie/quicktime_finish.h"

#include <QtGlobal>

#include <fcntl.h>
#include <unistd.h>

#include "base/cancelled.h"
#include "platform/desktop/file_copy.h"
#include "platform/desktop/file_error.h"
#include "platform/movie/box_file.h"
#include "platform/movie/box_tree.h"
#include "platform/movie/finished_header.h"
#include "platform/movie/movie_error.h"

namespace vantrel {
namespace {

/// Bytes of a movie header that may be loaded: a day of film needs a quarter of it.
constexpr uint64_t kLongestHeader = uint64_t{1} << 30;
constexpr mode_t kEverybodyReadsAndWrites = 0666;

/// What the written file is made of.
struct WrittenMovie {
  std::vector<uint8_t> fileType, header;
  /// Whole boxes of media.
  std::vector<MediaStretch> media;
};

std::vector<uint8_t> load(BoxFile& file, const FileBox& box) {
  std::optional<std::vector<uint8_t>> bytes = file.load(box.begin, box.end);
  if (!bytes) throw DamagedBoxes(QT_TRANSLATE_NOOP("Failure", "The movie header is too long"));
  return std::move(*bytes);
}

void copyStretch(FileCopy& copy, const MediaStretch& stretch, const std::filesystem::path& source,
                 const std::stop_token& stop) {
  uint64_t from = stretch.begin;
  while (from < stretch.end) {
    throwIfCancelled(stop);
    const size_t copied = copy.copySome(from, stretch.end - from);
    // Somebody else has cut it since it was opened.
    if (copied == 0)
      throw MovieError(source, FileAction::Read,
                       QT_TRANSLATE_NOOP("Failure", "The file ends too early"));
    from += copied;
  }
}

WrittenMovie readWritten(BoxFile& file) {
  WrittenMovie movie;
  uint64_t offset = 0;
  while (const std::optional<FileBox> box = file.boxAt(offset, file.size())) {
    if (box->end > file.size()) break;
    if (box->type == fourCC("ftyp")) movie.fileType = load(file, *box);
    if (box->type == fourCC("moov")) movie.header = load(file, *box);
    if (box->type == fourCC("mdat")) movie.media.push_back({box->begin, box->end});
    if (box->type == fourCC("moof"))
      throw DamagedBoxes(QT_TRANSLATE_NOOP("Failure", "The movie is in fragments"));
    offset = box->end;
  }
  if (offset != file.size())
    throw DamagedBoxes(QT_TRANSLATE_NOOP("Failure", "The file ends too early"));
  if (movie.header.empty())
    throw DamagedBoxes(QT_TRANSLATE_NOOP("Failure", "The movie header is missing"));
  return movie;
}

}  // namespace

void finishQuickTimeMovie(const std::filesystem::path& source,
                          const std::filesystem::path& destination, const QuickTimeFinish& finish,
                          const std::stop_token& stop) try {
  throwIfCancelled(stop);
  BoxFile file(source, kLongestHeader);
  WrittenMovie movie = readWritten(file);
  movie.header = finishedMovieHeader(movie.header, finish, movie.fileType.size(), movie.media);

  const FileDescriptor output(::open(destination.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC,
                                     kEverybodyReadsAndWrites));
  if (!output.isOpen()) throw fileError(destination, FileAction::Save);
  FileCopy copy({file.descriptor(), source}, {output.get(), destination});
  copy.write(movie.fileType);
  copy.write(movie.header);
  for (const MediaStretch& stretch : movie.media)
    copyStretch(copy, stretch, source, stop);
  throwIfCancelled(stop);
  if (::fsync(output.get()) != 0) throw fileError(destination, FileAction::Save);
} catch (const DamagedBoxes& damage) {
  throw MovieError(source, FileAction::Read, damage.what());
}

}  // namespace vantrel
