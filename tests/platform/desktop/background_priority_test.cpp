#include "platform/desktop/background_priority.h"

#include <gtest/gtest.h>
#include <sys/resource.h>
#include <unistd.h>

#include <QEventLoop>
#include <stop_token>
#include <thread>

#include "platform/desktop/background_task.h"

namespace vantrel {
namespace {

#ifdef __linux__
int niceness() {
  return ::getpriority(PRIO_PROCESS, static_cast<id_t>(::gettid()));
}

TEST(BackgroundPriority, IsThatOfTheThreadAndOfThoseItStarts) {
  const int before = niceness();
  int ofThread = before, ofItsOwn = before;
  std::thread([&] {
    giveWayToWindows();
    ofThread = niceness();
    std::thread([&] { ofItsOwn = niceness(); }).join();
  }).join();
  EXPECT_GT(ofThread, before);
  EXPECT_EQ(ofItsOwn, ofThread);
  EXPECT_EQ(niceness(), before);
}

TEST(BackgroundPriority, IsThatOfABackgroundTask) {
  QEventLoop loop;
  int ofTask = niceness();
  const BackgroundTask<int> task([](const std::stop_token&) { return niceness(); },
                                 [&](auto outcome) {
                                   ofTask = outcome.get();
                                   loop.quit();
                                 });
  loop.exec();
  EXPECT_GT(ofTask, niceness());
}
#endif

}  // namespace
}  // namespace vantrel
