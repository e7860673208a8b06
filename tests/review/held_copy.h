#pragma once

#include <condition_variable>
#include <cstdint>
#include <deque>
#include <filesystem>
#include <functional>
#include <memory>
#include <mutex>
#include <stop_token>

#include "platform/desktop/atomic_file.h"
#include "review/file_save.h"

namespace vantrel::testing {

/// A copy that takes as long as the test wants, and is a real one in the end.
class HeldCopy final {
 public:
  [[nodiscard]] CopyFile copy() const {
    return [state = m_state](const std::filesystem::path& source,
                             const std::filesystem::path& destination, const std::stop_token& stop,
                             const std::function<void(int64_t)>& progress) {
      while (const int64_t told = state->next(stop))
        progress(told);
      atomicCopy(source, destination, stop, progress);
    };
  }
  /// Has it tell that so many bytes are copied; more than none.
  void tell(int64_t bytes) const { m_state->add(bytes); }
  void finish() const { m_state->add(0); }

 private:
  struct State {
    void add(int64_t step) {
      const std::scoped_lock lock(mutex);
      steps.push_back(step);
      changed.notify_all();
    }
    /// 0 when it is to finish, asked to or cancelled.
    int64_t next(const std::stop_token& stop) {
      std::unique_lock lock(mutex);
      if (!changed.wait(lock, stop, [this] { return !steps.empty(); })) return 0;
      const int64_t step = steps.front();
      steps.pop_front();
      return step;
    }

    std::mutex mutex;
    std::condition_variable_any changed;
    std::deque<int64_t> steps;
  };

  std::shared_ptr<State> m_state = std::make_shared<State>();
};

}  // namespace vantrel::testing
