#include "platform/movie/reading_state.h"

#include <utility>

namespace vantrel {

ReadingState::Status ReadingState::status() const {
  const std::lock_guard lock(m_mutex);
  return m_status;
}

std::exception_ptr ReadingState::error() const {
  const std::lock_guard lock(m_mutex);
  return m_error;
}

bool ReadingState::begin(size_t outputs) {
  const std::lock_guard lock(m_mutex);
  if (m_status != Status::unknown) return false;
  m_status = outputs == 0 ? Status::completed : Status::reading;
  m_openOutputs = outputs;
  return true;
}

void ReadingState::completeOutput() {
  const std::lock_guard lock(m_mutex);
  if (m_status == Status::reading && --m_openOutputs == 0) m_status = Status::completed;
}

void ReadingState::fail(std::exception_ptr error) {
  end(Status::failed, std::move(error));
}

void ReadingState::cancel() {
  end(Status::cancelled, nullptr);
}

void ReadingState::end(Status outcome, std::exception_ptr error) {
  {
    const std::lock_guard lock(m_mutex);
    if (m_status != Status::unknown && m_status != Status::reading) return;
    m_status = outcome;
    m_error = std::move(error);
  }
  // Wakes what waits, outside the lock.
  m_stop.request_stop();
}

}  // namespace vantrel
