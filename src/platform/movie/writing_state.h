#pragma once

#include <exception>
#include <mutex>
#include <stop_token>

#include "platform/movie/sample_flow.h"

namespace vantrel {

/// How far the writing of a movie is, shared by all that take part in it. The first outcome stays.
/// Any thread.
class WritingState final {
 public:
  using Status = WritingSession::Status;

  [[nodiscard]] Status status() const;
  [[nodiscard]] bool isWriting() const { return status() == Status::writing; }
  [[nodiscard]] std::exception_ptr error() const;
  /// Stops once writing has failed or was cancelled.
  [[nodiscard]] std::stop_token stopToken() const { return m_stop.get_token(); }

  /// False if it is too late.
  [[nodiscard]] bool begin();
  void complete();
  void fail(std::exception_ptr error);
  void cancel();

 private:
  /// False if there is an outcome already.
  bool end(Status outcome, std::exception_ptr error);

  mutable std::mutex m_mutex;
  // Under m_mutex.
  Status m_status = Status::unknown;
  std::exception_ptr m_error;
  // Any thread.
  std::stop_source m_stop;
};

}  // namespace vantrel
