#pragma once

#include <algorithm>
#include <condition_variable>
#include <cstdint>
#include <exception>
#include <map>
#include <mutex>
#include <optional>
#include <thread>
#include <utility>
#include <vector>

namespace vantrel {

/// Makes results 0, 1, 2, … on several threads and hands them out in this order. At most `ahead`
/// of them are being made or waiting at any time, so that memory stays bounded. The first
/// exception on any thread ends the work and leaves through next().
template <typename Result>
class OrderedWork {
 public:
  /// Starts `threads` threads. `makeWorker` is called once on each of them; what it returns makes
  /// the result of a number.
  template <typename MakeWorker>
  OrderedWork(int64_t count, int threads, int64_t ahead, MakeWorker makeWorker)
      : m_count(count), m_ahead(std::max<int64_t>(ahead, 1)) {
    try {
      for (int i = 0; i < threads; ++i) {
        m_threads.emplace_back([this, makeWorker] { run(makeWorker); });
      }
    } catch (...) {
      if (m_threads.empty()) throw;  // with fewer threads than wanted the work still gets done
    }
  }

  /// Gives up what is not made yet and waits for the threads.
  ~OrderedWork() {
    end(nullptr);
    for (std::thread& thread : m_threads)
      thread.join();
  }
  OrderedWork(const OrderedWork&) = delete;
  OrderedWork& operator=(const OrderedWork&) = delete;

  /// The next result, as soon as it is there. To be called `count` times on one thread.
  [[nodiscard]] Result next() {
    std::unique_lock lock(m_mutex);
    m_changed.wait(lock, [this] { return m_error || m_ready.contains(m_taken); });
    if (m_error) std::rethrow_exception(m_error);
    Result result = std::move(m_ready.extract(m_taken++).mapped());
    m_changed.notify_all();
    return result;
  }

 private:
  template <typename MakeWorker>
  void run(MakeWorker makeWorker) {
    try {
      auto worker = makeWorker();
      while (const std::optional<int64_t> number = claim())
        deliver(*number, worker(*number));
    } catch (...) {
      end(std::current_exception());
    }
  }

  std::optional<int64_t> claim() {
    std::unique_lock lock(m_mutex);
    m_changed.wait(
        lock, [this] { return m_ended || m_claimed == m_count || m_claimed - m_taken < m_ahead; });
    if (m_ended || m_claimed == m_count) return std::nullopt;
    return m_claimed++;
  }

  void deliver(int64_t number, Result result) {
    const std::scoped_lock lock(m_mutex);
    m_ready.emplace(number, std::move(result));
    m_changed.notify_all();
  }

  void end(std::exception_ptr error) {
    const std::scoped_lock lock(m_mutex);
    if (!m_error) m_error = std::move(error);
    m_ended = true;
    m_changed.notify_all();
  }

  const int64_t m_count, m_ahead;

  std::mutex m_mutex;
  std::condition_variable m_changed;
  // Under the lock.
  int64_t m_claimed = 0, m_taken = 0;
  std::map<int64_t, Result> m_ready;
  std::exception_ptr m_error;
  bool m_ended = false;

  // Last, so that everything above is there when they start.
  std::vector<std::thread> m_threads;
};

}  // namespace vantrel
