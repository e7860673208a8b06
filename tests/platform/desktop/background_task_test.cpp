#include "platform/desktop/background_task.h"

#include <gtest/gtest.h>
#include <sys/resource.h>
#include <unistd.h>

#include <QCoreApplication>
#include <QEventLoop>
#include <QThread>
#include <fstream>
#include <future>
#include <memory>
#include <optional>
#include <stdexcept>
#include <system_error>
#include <thread>
#include <vector>

#include "base/cancelled.h"

namespace vantrel {
namespace {

/// Blocks until the token is requested to stop.
void waitForStop(const std::stop_token& stop) {
  std::promise<void> stopped;
  const std::stop_callback callback(stop, [&] { stopped.set_value(); });
  stopped.get_future().wait();
}

TEST(BackgroundTask, DeliversTheValueOnTheThreadThatStartedIt) {
  QEventLoop loop;
  QThread* workedOn = nullptr;
  QThread* deliveredOn = nullptr;
  int value = 0;
  const BackgroundTask<int> task(
      [&](const std::stop_token&) {
        workedOn = QThread::currentThread();
        return 42;
      },
      [&](auto outcome) {
        deliveredOn = QThread::currentThread();
        value = outcome.get();
        loop.quit();
      });
  loop.exec();
  EXPECT_EQ(value, 42);
  EXPECT_EQ(deliveredOn, QThread::currentThread());
  EXPECT_NE(workedOn, deliveredOn);
}

TEST(BackgroundTask, DeliversFromTheEventLoopOnly) {
  QEventLoop loop;
  bool delivered = false;
  const BackgroundTask<void> task([](const std::stop_token&) {},
                                  [&](auto) {
                                    delivered = true;
                                    loop.quit();
                                  });
  EXPECT_FALSE(delivered);
  loop.exec();
  EXPECT_TRUE(delivered);
}

TEST(BackgroundTask, HandsOverTheException) {
  QEventLoop loop;
  std::string message;
  const BackgroundTask<int> task(
      [](const std::stop_token&) -> int { throw std::runtime_error("no luck"); },
      [&](auto outcome) {
        try {
          outcome.get();
        } catch (const std::runtime_error& error) {
          message = error.what();
        }
        loop.quit();
      });
  loop.exec();
  EXPECT_EQ(message, "no luck");
}

TEST(BackgroundTask, WorksWithoutAResult) {
  QEventLoop loop;
  int completed = 0;
  int failed = 0;
  const auto count = [&](auto outcome) {
    try {
      outcome.get();
      ++completed;
    } catch (const Cancelled&) {
      ++failed;
    }
    if (completed + failed == 2) loop.quit();
  };
  const BackgroundTask<void> good([](const std::stop_token&) {}, count);
  const BackgroundTask<void> bad([](const std::stop_token&) { throw Cancelled(); }, count);
  loop.exec();
  EXPECT_EQ(completed, 1);
  EXPECT_EQ(failed, 1);
}

TEST(BackgroundTask, CarriesAResultThatOnlyMoves) {
  QEventLoop loop;
  std::unique_ptr<int> value;
  const BackgroundTask<std::unique_ptr<int>> task(
      [](const std::stop_token&) { return std::make_unique<int>(7); },
      [&](auto outcome) {
        value = outcome.get();
        loop.quit();
      });
  loop.exec();
  ASSERT_TRUE(value);
  EXPECT_EQ(*value, 7);
}

/// Whether the outcome is that of cancelled work.
template <class Outcome>
bool isCancelled(Outcome& outcome) {
  try {
    outcome.get();
  } catch (const Cancelled&) {
    return true;
  } catch (...) {
  }
  return false;
}

TEST(BackgroundTask, DeliversCancelledAfterARequest) {
  QEventLoop loop;
  int cancelled = 0;
  int delivered = 0;
  const auto count = [&](auto outcome) {
    if (isCancelled(outcome)) ++cancelled;
    if (++delivered == 3) loop.quit();
  };
  BackgroundTask<int> obeys(
      [](const std::stop_token& stop) -> int {
        waitForStop(stop);
        throw Cancelled();
      },
      count);
  BackgroundTask<int> ignores(
      [](const std::stop_token& stop) {
        waitForStop(stop);
        return 1;
      },
      count);
  BackgroundTask<int> fails(
      [](const std::stop_token& stop) -> int {
        waitForStop(stop);
        throw std::runtime_error("no luck");
      },
      count);
  EXPECT_FALSE(obeys.isCancelled());
  obeys.cancel();
  EXPECT_TRUE(obeys.isCancelled());
  ignores.cancel();
  fails.cancel();
  loop.exec();
  EXPECT_EQ(cancelled, 3);
}

TEST(BackgroundTask, DropsAValueThatWasOnTheWayWhenTheRequestCame) {
  QEventLoop loop;
  const auto value = std::make_shared<int>(1);
  bool cancelled = false;
  std::promise<void> worked;
  BackgroundTask<std::shared_ptr<int>> task(
      [&](const std::stop_token&) {
        worked.set_value();
        return value;
      },
      [&](auto outcome) {
        EXPECT_EQ(value.use_count(), 1);
        cancelled = isCancelled(outcome);
        loop.quit();
      });
  worked.get_future().wait();
  task.cancel();
  loop.exec();
  EXPECT_TRUE(cancelled);
}

TEST(BackgroundTask, DestructorCancelsAndJoins) {
  bool ended = false;
  {
    const BackgroundTask<void> task(
        [&](const std::stop_token& stop) {
          waitForStop(stop);
          ended = true;
        },
        [](auto) { ADD_FAILURE() << "delivered to a dead owner"; });
  }
  EXPECT_TRUE(ended);
  QCoreApplication::processEvents();
}

TEST(BackgroundTask, DestructorDropsAnOutcomeThatWaits) {
  const auto value = std::make_shared<int>(1);
  {
    std::promise<void> worked;
    const BackgroundTask<std::shared_ptr<int>> task(
        [&](const std::stop_token&) {
          worked.set_value();
          return value;
        },
        [](auto) { ADD_FAILURE() << "delivered to a dead owner"; });
    worked.get_future().wait();
  }
  EXPECT_EQ(value.use_count(), 1) << "the outcome must go with the task, not with the next event";
  QCoreApplication::processEvents();
}

TEST(BackgroundTask, MayBeDestroyedWithinItsDelivery) {
  QEventLoop loop;
  const auto captured = std::make_shared<int>(1);
  std::unique_ptr<BackgroundTask<std::unique_ptr<int>>> task;
  int value = 0;
  task = std::make_unique<BackgroundTask<std::unique_ptr<int>>>(
      [](const std::stop_token&) { return std::make_unique<int>(5); },
      [&, captured](auto outcome) {
        task.reset();
        value = *outcome.get() * *captured;
        loop.quit();
      });
  loop.exec();
  EXPECT_EQ(value, 5);
  EXPECT_FALSE(task);
  QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  EXPECT_EQ(captured.use_count(), 1);
}

TEST(BackgroundTask, MayBeReplacedWithinItsDelivery) {
  QEventLoop loop;
  std::unique_ptr<BackgroundTask<int>> task;
  int last = 0;
  std::function<void(int)> start = [&](int number) {
    task =
        std::make_unique<BackgroundTask<int>>([number](const std::stop_token&) { return number; },
                                              [&](auto outcome) {
                                                last = outcome.get();
                                                if (last < 50) {
                                                  start(last + 1);
                                                } else {
                                                  loop.quit();
                                                }
                                              });
  };
  start(1);
  loop.exec();
  EXPECT_EQ(last, 50);
}

TEST(BackgroundTask, LetsGoOfItsWorkBeforeTheDelivery) {
  QEventLoop loop;
  auto input = std::make_shared<int>(1);
  long uses = 0;
  const BackgroundTask<int> task([input](const std::stop_token&) { return *input; },
                                 [&](auto) {
                                   uses = input.use_count();
                                   loop.quit();
                                 });
  loop.exec();
  EXPECT_EQ(uses, 1);
}

#ifndef __SANITIZE_ADDRESS__  // which takes terabytes of address space for itself
/// Within its life, no memory as large as a thread's stack can be had.
class AddressSpaceLimit {
 public:
  AddressSpaceLimit() {
    std::ifstream("/proc/self/statm") >> m_pages;
    getrlimit(RLIMIT_AS, &m_before);
    rlimit limited = m_before;
    limited.rlim_cur = m_pages * static_cast<rlim_t>(sysconf(_SC_PAGESIZE)) + (1 << 20);
    setrlimit(RLIMIT_AS, &limited);
  }
  ~AddressSpaceLimit() { setrlimit(RLIMIT_AS, &m_before); }
  AddressSpaceLimit(const AddressSpaceLimit&) = delete;
  AddressSpaceLimit& operator=(const AddressSpaceLimit&) = delete;

 private:
  rlim_t m_pages = 0;
  rlimit m_before{};
};

TEST(BackgroundTask, NoThreadToBeHadIsAnOutcome) {
  QEventLoop loop;
  bool worked = false;
  std::string message;
  std::optional<BackgroundTask<void>> task;
  // Stacks of threads that have ended are kept for new ones: all of those are in use first.
  std::vector<std::jthread> others;
  {
    const AddressSpaceLimit limit;
    try {
      for (;;) {
        others.emplace_back([](const std::stop_token& stop) { waitForStop(stop); });
      }
    } catch (const std::system_error&) {
    }
    task.emplace([&](const std::stop_token&) { worked = true; },
                 [&](auto outcome) {
                   try {
                     outcome.get();
                   } catch (const std::system_error& error) {
                     message = error.what();
                   }
                   loop.quit();
                 });
  }
  loop.exec();
  EXPECT_FALSE(worked);
  EXPECT_FALSE(message.empty());
}
#endif

TEST(BackgroundTask, SurvivesEveryMomentOfDestruction) {
  int delivered = 0;
  for (int round = 0; round < 500; ++round) {
    auto task = std::make_unique<BackgroundTask<std::unique_ptr<int>>>(
        [](const std::stop_token&) { return std::make_unique<int>(1); },
        [&](auto outcome) { delivered += *outcome.get(); });
    if (round % 3 != 0) QCoreApplication::processEvents();
    if (round % 3 == 2) QThread::yieldCurrentThread();
    const int before = delivered;
    task.reset();
    QCoreApplication::processEvents();
    ASSERT_EQ(delivered, before);
  }
}

}  // namespace
}  // namespace vantrel
