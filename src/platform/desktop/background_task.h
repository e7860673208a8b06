#pragma once

#include <QObject>
#include <exception>
#include <functional>
#include <memory>
#include <optional>
#include <stop_token>
#include <system_error>
#include <thread>
#include <type_traits>
#include <utility>

#include "base/cancelled.h"
#include "platform/desktop/background_priority.h"

namespace vantrel {

/// One piece of blocking work on a thread of its own, which gives way to windows, with its outcome
/// delivered to the thread that started it. Lives on that thread, which must run an event loop. The
/// destructor cancels, joins, and drops an outcome that has not been delivered, so that no outcome
/// reaches a dead owner.
template <class Result>
class BackgroundTask final {
 public:
  /// What became of the work: a value, or the exception that it threw.
  class Outcome {
   public:
    /// The value, or throws the work's exception. To be called once: the value moves out.
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

  /// May throw anything. What it has captured is gone before its outcome is delivered.
  using Work = std::function<Result(std::stop_token)>;
  /// Must not throw.
  using Delivery = std::function<void(Outcome)>;

  /// Starts `work` at once. `deliver` is called later from the event loop, once; it may destroy the
  /// task. Where there is no thread to be had, that is the outcome.
  BackgroundTask(Work work, Delivery deliver)
      : m_receiver(std::make_unique<QObject>()), m_mailbox(std::make_shared<Mailbox>()) {
    m_mailbox->deliver = std::move(deliver);
    m_mailbox->stop = m_stop.get_token();
    try {
      m_thread = std::jthread([work = std::move(work), stop = m_stop.get_token(),
                               receiver = m_receiver.get(), mailbox = m_mailbox]() mutable {
        giveWayToWindows();
        run(std::exchange(work, nullptr), std::move(stop), mailbox->outcome);
        post(receiver, std::move(mailbox));
      });
    } catch (const std::system_error&) {
      m_mailbox->outcome.m_error = std::current_exception();
      post(m_receiver.get(), m_mailbox);
    }
  }

  ~BackgroundTask() {
    m_stop.request_stop();
    if (m_thread.joinable()) m_thread.join();
    m_mailbox->deliver = nullptr;
    // An outcome that waits in the event queue dies with its receiver. Within the delivery the
    // receiver is still handling its event, and must outlive it.
    if (m_mailbox->isOpening) m_receiver.release()->deleteLater();
  }

  BackgroundTask(const BackgroundTask&) = delete;
  BackgroundTask& operator=(const BackgroundTask&) = delete;

  /// Asks the work to stop. Whatever becomes of it, Cancelled is delivered, also when it had ended
  /// already and its outcome was on the way.
  void cancel() { m_stop.request_stop(); }
  [[nodiscard]] bool isCancelled() const { return m_stop.stop_requested(); }

 private:
  /// Where the work leaves its outcome.
  struct Mailbox {
    // Of the work's thread until it posts the event, then of the owner's.
    Outcome outcome;
    // Of the owner's thread.
    Delivery deliver;
    std::stop_token stop;
    bool isOpening = false;

    void open() {
      const Delivery once = std::exchange(deliver, nullptr);
      if (!once) return;
      isOpening = true;
      if (stop.stop_requested()) {
        outcome = {};
        outcome.m_error = std::make_exception_ptr(Cancelled());
      }
      once(std::exchange(outcome, {}));
      isOpening = false;
    }
  };

  static void run(Work work, std::stop_token stop, Outcome& outcome) {
    try {
      if constexpr (std::is_void_v<Result>) {
        work(std::move(stop));
      } else {
        outcome.m_value.emplace(work(std::move(stop)));
      }
    } catch (...) {
      outcome.m_error = std::current_exception();
    }
  }

  static void post(QObject* receiver, std::shared_ptr<Mailbox> mailbox) {
    QMetaObject::invokeMethod(
        receiver, [mailbox = std::move(mailbox)] { mailbox->open(); }, Qt::QueuedConnection);
  }

  std::unique_ptr<QObject> m_receiver;
  std::shared_ptr<Mailbox> m_mailbox;
  std::stop_source m_stop;
  std::jthread m_thread;
};

}  // namespace vantrel
