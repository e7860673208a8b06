#include <gtest/gtest.h>
#include <signal.h>

#include <QDBusConnection>
#include <QProcess>
#include <atomic>
#include <chrono>
#include <condition_variable>
#include <mutex>
#include <stop_token>
#include <thread>

#include "editor/desktop_notification.h"
#include "editor/task_bar_progress.h"
#include "export/crop_export_state.h"

namespace vantrel {
namespace {

/// The session bus, which answers nothing any more. Whoever waits for it is let go after a while,
/// and found out.
class StalledBus final {
 public:
  StalledBus() {
    m_daemon.start(QStringLiteral("dbus-daemon"),
                   {QStringLiteral("--session"), QStringLiteral("--nofork"),
                    QStringLiteral("--print-address")});
    if (!m_daemon.waitForReadyRead()) return;
    qputenv("DBUS_SESSION_BUS_ADDRESS", m_daemon.readLine().trimmed());
    m_isConnected = QDBusConnection::sessionBus().isConnected();
    signalDaemon(SIGSTOP);
    m_patience = std::jthread([this](const std::stop_token& stop) {
      std::mutex mutex;
      std::unique_lock lock(mutex);
      std::condition_variable_any ended;
      if (ended.wait_for(lock, stop, std::chrono::seconds(10), [] { return false; })) return;
      if (stop.stop_requested()) return;
      m_wasWaitedFor = true;
      signalDaemon(SIGCONT);
    });
  }
  ~StalledBus() {
    m_patience = {};
    signalDaemon(SIGCONT);
    m_daemon.kill();
    m_daemon.waitForFinished();
  }

  [[nodiscard]] bool isConnected() const { return m_isConnected; }
  [[nodiscard]] bool wasWaitedFor() const { return m_wasWaitedFor; }

 private:
  void signalDaemon(int signal) const { ::kill(static_cast<pid_t>(m_daemon.processId()), signal); }

  QProcess m_daemon;
  bool m_isConnected = false;
  std::atomic<bool> m_wasWaitedFor = false;
  std::jthread m_patience;
};

TEST(StalledBus, HoldsNobodyUp) {
  const StalledBus bus;
  ASSERT_TRUE(bus.isConnected());
  {
    const DesktopNotification notification({QStringLiteral("Title"), QStringLiteral("Text")});
    CropExportState progress;
    TaskBarProgress taskBar;
    taskBar.watch(progress);
    progress.setProgress(0.5);
  }
  EXPECT_FALSE(bus.wasWaitedFor());
}

}  // namespace
}  // namespace vantrel
