#pragma once

#include <QObject>
#include <exception>
#include <functional>
#include <memory>
#include <optional>
#include <stop_token>
#include <thread>
#include <type_traits>
#include <utility>

namespace vantrel {

/// One piece of blocking work on a thread of its own, with its outcome delivered to the thread that
/// started it. Lives on that thread, which must run an event loop. The destructor cancels, joins,
/// and drops an outcome that has not been delivered, so that no outcome reaches a dead owner.
template <class Result>
class BackgroundTask final {
 public:
  /// What became of the work: a value, or the exception that it threw.
  class Outcome {
   public:
    /// The value, or throws the work's exception.
    Result get() {
      if (m_error) std::rethrow_exception(m_error);
      if constexpr (!std::is_void_v<Result>) return std::move(*m_value);
    }

   private:
    friend class BackgroundTask;
    using Value = std::conditional_t<std::is_void_v<Result>, bool, Result>;
    std::optional<Value> m_value;
    std::exception_ptr m_error;
  };

  using Work = std::function<Result(std::stop_token)>;
  using Delivery = std::function<void(Outcome)>;

  /// Starts `work` at once. `deliver` is called later from the event loop, once; it may destroy the
  /// task.
  BackgroundTask(Work work, Delivery deliver)
      : m_context(std::make_unique<QObject>()),
        m_deliver(std::make_shared<Delivery>(std::move(deliver))),
        m_thread([work = std::move(work), context = m_context.get(),
                  deliver = m_deliver](const std::stop_token& stop) {
          auto outcome = std::make_shared<Outcome>();
          try {
            if constexpr (std::is_void_v<Result>) {
              work(stop);
            } else {
              outcome->m_value.emplace(work(stop));
            }
          } catch (...) {
            outcome->m_error = std::current_exception();
          }
          QMetaObject::invokeMethod(
              context,
              [deliver, outcome] {
                const Delivery once = std::exchange(*deliver, nullptr);
                if (once) once(std::move(*outcome));
              },
              Qt::QueuedConnection);
        }) {}

  BackgroundTask(const BackgroundTask&) = delete;
  BackgroundTask& operator=(const BackgroundTask&) = delete;

  /// Asks the work to stop; its outcome is still delivered.
  void cancel() { m_thread.request_stop(); }
  [[nodiscard]] bool isCancelled() const { return m_thread.get_stop_token().stop_requested(); }

 private:
  // Destroyed last to first: the thread is cancelled and joined while the context still stands; an
  // outcome that waits in the event queue dies with the context.
  std::unique_ptr<QObject> m_context;
  std::shared_ptr<Delivery> m_deliver;
  std::jthread m_thread;
};

}  // namespace vantrel
