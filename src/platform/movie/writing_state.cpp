#include "platform/movie/writing_state.h"

#include <utility>

namespace vantrel {

WritingState::Status WritingState::status() const {
  const std::lock_guard lock(m_mutex);
  return m_status;
}

std::exception_ptr WritingState::error() const {
  const std::lock_guard lock(m_mutex);
  return m_error;
}

bool WritingState::begin() {
  const std::lock_guard lock(m_mutex);
  if (m_status != Status::unknown) return false;
  m_status = Status::writing;
  return true;
}

void WritingState::complete() {
  end(Status::completed, nullptr);
}

void WritingState::fail(std::exception_ptr error) {
  if (end(Status::failed, std::move(error))) m_stop.request_stop();
}

void WritingState::cancel() {
  if (end(Status::cancelled, nullptr)) m_stop.request_stop();
}

bool WritingState::end(Status outcome, std::exception_ptr error) {
  const std::lock_guard lock(m_mutex);
  if (m_status != Status::unknown && m_status != Status::writing) return false;
  m_status = outcome;
  m_error = std::move(error);
  return true;
}

}  // namespace vantrel
