#include "export/sample_transfer.h"

#include <QtGlobal>
#include <algorithm>
#include <cmath>
#include <condition_variable>
#include <mutex>
#include <optional>
#include <utility>

#include "base/cancelled.h"
#include "base/failure.h"

namespace vantrel::VideoExporter {
namespace {

constexpr std::chrono::milliseconds kWait{2};
/// The last percent belongs to the finishing of the file.
constexpr double kHighestProgress = 0.99;
constexpr double kProgressStep = 0.01;
/// Evenly spaced samples must not miss the step by the last bit of a difference.
constexpr double kRounding = 1e-12;

void throwUnlessRunning(const ReadingSession& reader, const WritingSession& writer) {
  const ReadingSession::Status reading = reader.status();
  if (reading == ReadingSession::Status::failed || reading == ReadingSession::Status::cancelled) {
    throwError(reader.error(), QT_TRANSLATE_NOOP("Failure", "Reading was interrupted."));
  }
  if (writer.status() != WritingSession::Status::writing) {
    throwError(writer.error(), QT_TRANSLATE_NOOP("Failure", "Encoding was interrupted."));
  }
}

double fractionOf(MediaTime time, double duration) {
  const double seconds = time.seconds();
  if (!std::isfinite(seconds)) return 0;
  return std::min(std::max(seconds / duration, 0.0), kHighestProgress);
}

}  // namespace

void interruptibleSleep(std::chrono::milliseconds duration, const std::stop_token& stop) {
  std::mutex mutex;
  std::condition_variable_any never;
  std::unique_lock lock(mutex);
  never.wait_for(lock, stop, duration, [] { return false; });
  throwIfCancelled(stop);
}

void throwError(const std::exception_ptr& error, const std::string& message) {
  if (error) std::rethrow_exception(error);
  throw Failure(message);
}

int64_t transfer(SampleOutput& output, SampleInput& input, const ReadingSession& reader,
                 const WritingSession& writer, double duration, const Progress& progress,
                 const std::stop_token& stop, const Sleep& sleep) {
  double reported = 0;
  for (int64_t count = 0;;) {
    throwIfCancelled(stop);
    throwUnlessRunning(reader, writer);
    if (!input.isReadyForMoreMediaData()) {
      sleep(kWait, stop);
      continue;
    }
    std::optional<MovieSample> sample = output.copyNextSample();
    if (!sample) {
      input.markAsFinished();
      return count;
    }
    const MediaTime time = sample->presentationTime();
    if (!input.append(std::move(*sample))) {
      throwError(writer.error(), QT_TRANSLATE_NOOP("Failure", "Cannot append an encoded sample."));
    }
    ++count;
    if (!progress || !(duration > 0)) continue;
    const double fraction = fractionOf(time, duration);
    if (fraction - reported < kProgressStep - kRounding) continue;
    reported = fraction;
    progress(fraction);
  }
}

}  // namespace vantrel::VideoExporter
