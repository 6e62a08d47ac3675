#include "platform/Clock.h"

#include <chrono>
#include <thread>

namespace qv::platform {

double NowSeconds() {
  return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count();
}

void SleepMilliseconds(unsigned milliseconds) {
  std::this_thread::sleep_for(std::chrono::milliseconds(milliseconds));
}

}  // namespace qv::platform
