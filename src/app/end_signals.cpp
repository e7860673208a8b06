#include "app/end_signals.h"

#include <fcntl.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <cerrno>
#include <csignal>
#include <utility>

namespace vantrel {
namespace {

std::atomic<int> pipeEnd = -1;
static_assert(std::atomic<int>::is_always_lock_free);

extern "C" void tellPipe(int /*signal*/) {
  const int before = errno;
  const char byte = 0;
  [[maybe_unused]] const ssize_t written = ::write(pipeEnd, &byte, 1);
  errno = before;
}

}  // namespace

EndSignals::EndSignals(std::function<void()> end) {
  std::array<int, 2> ends{};
  // Without one they end the program as they do by themselves.
  if (::pipe(ends.data()) != 0) return;
  m_read = FileDescriptor(ends[0]);
  m_write = FileDescriptor(ends[1]);
  for (const int side : ends)
    ::fcntl(side, F_SETFD, FD_CLOEXEC);
  pipeEnd = m_write.get();
  m_notifier.emplace(m_read.get(), QSocketNotifier::Read);
  QObject::connect(&*m_notifier, &QSocketNotifier::activated, &*m_notifier,
                   [this, end = std::move(end)] {
                     m_notifier->setEnabled(false);
                     end();
                   });
  for (const int signal : {SIGTERM, SIGINT, SIGHUP})
    take(signal);
}

EndSignals::~EndSignals() {
  for (const Taken& taken : m_taken)
    ::sigaction(taken.signal, &taken.before, nullptr);
}

void EndSignals::take(int signal) {
  Taken taken{signal, {}};
  if (::sigaction(signal, nullptr, &taken.before) != 0) return;
  if (taken.before.sa_handler == SIG_IGN) return;
  struct sigaction action {};
  action.sa_handler = tellPipe;
  action.sa_flags = SA_RESTART | static_cast<int>(SA_RESETHAND);
  sigemptyset(&action.sa_mask);
  if (::sigaction(signal, &action, nullptr) == 0) m_taken.push_back(taken);
}

}  // namespace vantrel
