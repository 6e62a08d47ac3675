#include "platform/Threads.h"

#include <windows.h>

namespace qv::platform {

void LowerCurrentThreadPriority() {
  SetThreadPriority(GetCurrentThread(), THREAD_PRIORITY_BELOW_NORMAL);
}

}  // namespace qv::platform
