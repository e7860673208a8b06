#pragma once

#include <exception>
#include <mutex>
#include <stop_token>

#include "platform/movie/sample_flow.h"

namespace vantrel {

/// How far the reading of a movie is, shared by its outputs. The first outcome stays. Any thread.
class ReadingState final {
 public:
  using Status = ReadingSession::Status;

  [[nodiscard]] Status status() const;
  [[nodiscard]] bool isReading() const { return status() == Status::reading; }
  [[nodiscard]] std::exception_ptr error() const;
  /// Stops once reading has failed or was cancelled.
  [[nodiscard]] std::stop_token stopToken() const { return m_stop.get_token(); }

  /// So many outputs are to come to their ends. False if it is too late.
  [[nodiscard]] bool begin(size_t outputs);
  /// One output has given all.
  void completeOutput();
  void fail(std::exception_ptr error);
  void cancel();

 private:
  void end(Status outcome, std::exception_ptr error);

  mutable std::mutex m_mutex;
  // Under m_mutex.
  Status m_status = Status::unknown;
  std::exception_ptr m_error;
  size_t m_openOutputs = 0;
  // Any thread.
  std::stop_source m_stop;
};

}  // namespace vantrel
