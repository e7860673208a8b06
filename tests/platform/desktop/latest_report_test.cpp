#include "platform/desktop/latest_report.h"

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QEventLoop>
#include <functional>
#include <memory>
#include <thread>
#include <vector>

namespace vantrel {
namespace {

/// As long as a delivery that was on its way would take.
void waitAWhile() {
  QEventLoop loop;
  QTimer::singleShot(4 * LatestReport<int>::kInterval, &loop, &QEventLoop::quit);
  loop.exec();
}

TEST(LatestReport, DeliversTheNewestOfManyOnTheThreadOfTheReceiver) {
  QObject receiver;
  QEventLoop loop;
  std::vector<int> delivered;
  std::thread::id deliveredOn;
  const LatestReport<int> report(receiver, [&](int value) {
    delivered.push_back(value);
    deliveredOn = std::this_thread::get_id();
    loop.quit();
  });
  std::thread([report] {
    for (int value = 1; value <= 1000; ++value)
      report(value);
  }).join();
  EXPECT_TRUE(delivered.empty());
  loop.exec();
  EXPECT_EQ(delivered, std::vector{1000});
  EXPECT_EQ(deliveredOn, std::this_thread::get_id());
}

TEST(LatestReport, DeliversWhatComesAfterADelivery) {
  QObject receiver;
  QEventLoop loop;
  std::vector<int> delivered;
  std::unique_ptr<LatestReport<int>> report;
  report = std::make_unique<LatestReport<int>>(receiver, [&](int value) {
    delivered.push_back(value);
    if (value == 3) {
      loop.quit();
    } else {
      (*report)(value + 1);
    }
  });
  (*report)(1);
  loop.exec();
  EXPECT_EQ(delivered, (std::vector{1, 2, 3}));
}

TEST(LatestReport, LetsWhatElseWaitsComeFirst) {
  QObject receiver;
  QEventLoop loop;
  std::vector<int> delivered;
  const LatestReport<int> report(receiver, [&](int value) {
    delivered.push_back(value);
    loop.quit();
  });
  report(1);
  // Each asks for the next, as what is drawn and reported at the same time does.
  int posted = 0;
  std::function<void()> next = [&] {
    if (++posted < 100) QMetaObject::invokeMethod(&receiver, next, Qt::QueuedConnection);
    EXPECT_TRUE(delivered.empty());
  };
  QMetaObject::invokeMethod(&receiver, next, Qt::QueuedConnection);
  loop.exec();
  EXPECT_EQ(posted, 100);
  EXPECT_EQ(delivered, std::vector{1});
}

TEST(LatestReport, DeliversWhatIsOnTheWayOnceWhereItIsAskedTo) {
  QObject receiver;
  std::vector<int> delivered;
  const LatestReport<int> report(receiver, [&](int value) { delivered.push_back(value); });
  report.deliver();
  report(1);
  report.deliver();
  EXPECT_EQ(delivered, std::vector{1});
  waitAWhile();
  EXPECT_EQ(delivered, std::vector{1});
}

TEST(LatestReport, DropsWhatIsOnTheWayToADeadReceiver) {
  bool isDelivered = false;
  {
    QObject receiver;
    const LatestReport<int> report(receiver, [&](int) { isDelivered = true; });
    report(1);
    QCoreApplication::sendPostedEvents();
  }
  waitAWhile();
  EXPECT_FALSE(isDelivered);
}

}  // namespace
}  // namespace vantrel
