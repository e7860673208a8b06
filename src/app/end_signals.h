#pragma once

#include <signal.h>

#include <QSocketNotifier>
#include <functional>
#include <optional>
#include <vector>

#include "platform/desktop/file_descriptor.h"

namespace vantrel {

/// Within its life SIGTERM, SIGINT and SIGHUP end the program in order instead of at once. Each
/// does so a single time: one that comes again does not wait. What the parent has the program
/// ignore stays ignored. One of this kind at a time, on the main thread.
class EndSignals final {
 public:
  /// `end` is called once, by the event loop.
  explicit EndSignals(std::function<void()> end);
  ~EndSignals();
  EndSignals(const EndSignals&) = delete;
  EndSignals& operator=(const EndSignals&) = delete;

 private:
  void take(int signal);

  /// A handler may do little more than write: what it writes here wakes the event loop.
  FileDescriptor m_read, m_write;
  std::optional<QSocketNotifier> m_notifier;
  struct Taken {
    int signal;
    struct sigaction before;
  };
  std::vector<Taken> m_taken;
};

}  // namespace vantrel
