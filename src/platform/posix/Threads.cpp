#include "platform/Threads.h"

#include <sys/resource.h>
#include <unistd.h>

#include <algorithm>

namespace qv::platform {

namespace {

// The nice value of a background thread: about a third of the processor share of a normal one.
constexpr int kBackgroundNice = 5;

}  // namespace

// On Linux the nice value belongs to the thread, and PRIO_PROCESS takes a thread's number.
void LowerCurrentThreadPriority() {
  const auto thread = static_cast<id_t>(gettid());
  setpriority(PRIO_PROCESS, thread, std::max(getpriority(PRIO_PROCESS, thread), kBackgroundNice));
}

}  // namespace qv::platform
