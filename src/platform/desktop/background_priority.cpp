#include "platform/desktop/background_priority.h"

#include <QtGlobal>

#if defined(Q_OS_LINUX)
#include <sys/resource.h>
#include <unistd.h>
#elif defined(Q_OS_MACOS)
#include <pthread/qos.h>
#endif

namespace vantrel {

void giveWayToWindows() {
#if defined(Q_OS_LINUX)
  // A fifth of what a thread that draws gets while both want a processor; all of it otherwise.
  constexpr int kNiceness = 7;
  // On Linux a number of nice, which is per process elsewhere, belongs to a thread.
  ::setpriority(PRIO_PROCESS, static_cast<id_t>(::gettid()), kNiceness);
#elif defined(Q_OS_MACOS)
  ::pthread_set_qos_class_self_np(QOS_CLASS_UTILITY, 0);
#endif
}

}  // namespace vantrel
