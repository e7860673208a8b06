#include "export/movie_transfer.h"

#include <QtGlobal>

#include "base/cancelled.h"
#include "export/transfer_group.h"

namespace vantrel::VideoExporter {
namespace {

constexpr MediaTime kStart{0, 1};
/// All samples are through; what is left is the finishing of the file.
constexpr double kFinishing = 0.99;

void start(ReadingSession& reader, WritingSession& writer) {
  if (!writer.startWriting())
    throwError(writer.error(), QT_TRANSLATE_NOOP("Failure", "Cannot start encoding."));
  writer.startSession(kStart);
  if (!reader.startReading()) {
    writer.cancelWriting();
    throwError(reader.error(), QT_TRANSLATE_NOOP("Failure", "Cannot start decoding."));
  }
}

}  // namespace

int64_t transferMovie(ReadingSession& reader, WritingSession& writer,
                      const std::vector<TrackTransfer>& tracks, MediaTime duration,
                      const Progress& progress, const std::stop_token& stop, const Sleep& sleep) {
  start(reader, writer);
  const auto cancel = [&] {
    reader.cancelReading();
    writer.cancelWriting();
  };
  try {
    // Wakes what waits within a session, where nobody looks at the token.
    const std::stop_callback wake(stop, cancel);
    throwIfCancelled(stop);
    int64_t count = 0;
    TransferGroup group(stop, cancel);
    for (const TrackTransfer& track : tracks) {
      const bool isFirst = &track == &tracks.front();
      group.add([&, isFirst](const std::stop_token& groupStop) {
        const int64_t samples =
            transfer(*track.output, *track.input, reader, writer, isFirst ? duration.seconds() : 0,
                     isFirst ? progress : Progress(), groupStop, sleep);
        if (isFirst) count = samples;
      });
    }
    group.wait();
    throwIfCancelled(stop);
    if (reader.status() != ReadingSession::Status::completed) {
      throwError(reader.error(), QT_TRANSLATE_NOOP("Failure", "Decoding did not complete."));
    }
    if (progress) progress(kFinishing);
    writer.endSession(duration);
    writer.finishWriting();
    if (writer.status() != WritingSession::Status::completed) {
      throwError(writer.error(), QT_TRANSLATE_NOOP("Failure", "Encoding did not complete."));
    }
    return count;
  } catch (...) {
    cancel();
    throwIfCancelled(stop);
    throw;
  }
}

}  // namespace vantrel::VideoExporter
