#include "tools/stop_on_signals.h"

#include <pthread.h>

#include <csignal>

namespace vantrel {
namespace {

sigset_t stopSignals() {
  sigset_t signals;
  sigemptyset(&signals);
  sigaddset(&signals, SIGINT);
  sigaddset(&signals, SIGTERM);
  return signals;
}

}  // namespace

StopOnSignals::StopOnSignals() {
  const sigset_t signals = stopSignals();
  pthread_sigmask(SIG_BLOCK, &signals, nullptr);
  m_thread = std::thread([this] { wait(); });
}

StopOnSignals::~StopOnSignals() {
  m_isOver = true;
  pthread_kill(m_thread.native_handle(), SIGTERM);
  m_thread.join();
}

void StopOnSignals::wait() {
  const sigset_t signals = stopSignals();
  while (!m_isOver) {
    int signal = 0;
    if (sigwait(&signals, &signal) == 0 && !m_isOver) m_source.request_stop();
  }
}

}  // namespace vantrel
