#pragma once

#include <QObject>
#include <QTimer>
#include <chrono>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <utility>

namespace vantrel {

/// Takes what background threads report to the thread of a receiver, where it is drawn. Only the
/// newest value is taken there, and seldom enough for what else waits on that thread: values that
/// each came at once would keep it drawing. Copies are the same report.
template <class Value>
class LatestReport final {
 public:
  using Report = std::function<void(Value)>;

  /// The least time between two.
  static constexpr std::chrono::milliseconds kInterval{50};

  /// `report` is called from the receiver's event loop while the receiver lives; it may be empty.
  LatestReport(QObject& receiver, Report report)
      : m_receiver(&receiver), m_waiting(std::make_shared<Waiting>()) {
    m_waiting->report = std::move(report);
  }

  /// Any thread, while the receiver lives.
  void operator()(Value value) const {
    if (m_waiting->put(std::move(value))) return;
    // Timers come after all that has been posted, and after what the user does.
    QMetaObject::invokeMethod(
        m_receiver,
        [receiver = m_receiver, waiting = m_waiting] {
          QTimer::singleShot(kInterval, receiver, [waiting] { waiting->deliver(); });
        },
        Qt::QueuedConnection);
  }

  /// Delivers at once what is on its way, if anything is. The receiver's thread.
  void deliver() const { m_waiting->deliver(); }

 private:
  struct Waiting {
    Report report;
    std::mutex mutex;
    std::optional<Value> value;

    /// Whether it takes the place of one that is on its way.
    bool put(Value newest) {
      const std::lock_guard lock(mutex);
      const bool isOnTheWay = value.has_value();
      value = std::move(newest);
      return isOnTheWay;
    }
    void deliver() {
      std::unique_lock lock(mutex);
      std::optional<Value> newest = std::exchange(value, std::nullopt);
      lock.unlock();
      if (newest && report) report(*std::move(newest));
    }
  };

  QObject* m_receiver;
  std::shared_ptr<Waiting> m_waiting;
};

}  // namespace vantrel
