#pragma once

#include <chrono>
#include <cstdint>
#include <exception>
#include <functional>
#include <stop_token>
#include <string>

#include "platform/movie/sample_flow.h"

namespace vantrel::VideoExporter {

/// Waits, and throws Cancelled as soon as the token has been requested to stop.
using Sleep = std::function<void(std::chrono::milliseconds, const std::stop_token&)>;

/// Sleep on a steady clock.
void interruptibleSleep(std::chrono::milliseconds duration, const std::stop_token& stop);

/// A fraction from 0 to 1; may be empty.
using Progress = std::function<void(double)>;

/// Throws `error`, or a Failure with `message` if it is null.
[[noreturn]] void throwError(const std::exception_ptr& error, const std::string& message);

/// Moves samples from one output to one input until the output runs dry, then marks the input as
/// finished; returns how many samples there were. Whether the reader has all it wanted is for the
/// caller to see. Looks at the token and at both sessions before each sample, and every 2 ms while
/// the input is not ready.
///
/// `duration` is the movie's, in seconds. Where it is greater than 0, `progress` is told, on this
/// thread, the presentation time as a fraction of it: in steps of at least 0.01, never above 0.99.
///
/// Throws Cancelled, the error of a session that failed, or Failure. Blocking; one thread for each
/// input, any number of them at a time.
int64_t transfer(SampleOutput& output, SampleInput& input, const ReadingSession& reader,
                 const WritingSession& writer, double duration, const Progress& progress,
                 const std::stop_token& stop, const Sleep& sleep = interruptibleSleep);

}  // namespace vantrel::VideoExporter
