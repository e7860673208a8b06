#pragma once

#include <atomic>
#include <stop_token>
#include <thread>

namespace vantrel {

/// Within its life SIGINT and SIGTERM request a stop instead of ending the process. To be made
/// before any other thread, which then inherit that these signals go elsewhere.
class StopOnSignals final {
 public:
  StopOnSignals();
  ~StopOnSignals();
  StopOnSignals(const StopOnSignals&) = delete;
  StopOnSignals& operator=(const StopOnSignals&) = delete;

  [[nodiscard]] std::stop_token token() const { return m_source.get_token(); }

 private:
  void wait();

  std::stop_source m_source;
  std::atomic<bool> m_isOver = false;
  std::thread m_thread;
};

}  // namespace vantrel
