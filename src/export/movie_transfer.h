#pragma once

#include <cstdint>
#include <stop_token>
#include <vector>

#include "export/sample_transfer.h"

namespace vantrel::VideoExporter {

/// One track on its way from a reader to a writer that outlive it.
struct TrackTransfer {
  SampleOutput* output = nullptr;
  SampleInput* input = nullptr;
};

/// Runs a reader and a writer that are set up, from their start to the finished file, all tracks at
/// once; the first of them alone reports progress, up to 0.99. Returns the number of its samples.
///
/// Throws the error of the session that failed, Failure, or Cancelled, which a request to stop
/// makes of every error; both sessions are then cancelled. Blocking, any thread. `progress` is
/// called on this and other threads, one at a time.
int64_t transferMovie(ReadingSession& reader, WritingSession& writer,
                      const std::vector<TrackTransfer>& tracks, MediaTime duration,
                      const Progress& progress, const std::stop_token& stop,
                      const Sleep& sleep = interruptibleSleep);

}  // namespace vantrel::VideoExporter
