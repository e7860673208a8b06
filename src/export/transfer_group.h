#pragma once

#include <exception>
#include <functional>
#include <mutex>
#include <stop_token>
#include <thread>
#include <vector>

namespace vantrel {

/// Pieces of work, each on a thread of its own, that stand or fall together: the first error asks
/// the others to stop. One thread adds and waits; the destructor stops and joins.
class TransferGroup final {
 public:
  /// May throw anything.
  using Work = std::function<void(const std::stop_token&)>;

  /// A stop of `parent` stops the work. `onFailure` is called on the thread of the first piece that
  /// throws, for what a token cannot wake; it must not throw.
  TransferGroup(const std::stop_token& parent, std::function<void()> onFailure);
  ~TransferGroup();
  TransferGroup(const TransferGroup&) = delete;
  TransferGroup& operator=(const TransferGroup&) = delete;

  /// Starts at once. Throws std::system_error where there is no thread to be had.
  void add(Work work);

  /// Waits for all. Throws what was thrown first.
  void wait();

 private:
  void run(const Work& work);

  std::stop_source m_stop;
  std::stop_callback<std::function<void()>> m_parentStops;
  std::function<void()> m_onFailure;

  std::mutex m_mutex;
  // Guarded by the mutex until all are joined.
  std::exception_ptr m_firstError;

  std::vector<std::jthread> m_threads;
};

}  // namespace vantrel
