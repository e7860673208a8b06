#pragma once

namespace vantrel {

/// Has the calling thread, and every thread that it starts from now on, give way to the threads
/// that draw and answer: work that fills all processors must not hold up the windows. For good.
/// Where the system has no such thing for threads, nothing happens.
void giveWayToWindows();

}  // namespace vantrel
