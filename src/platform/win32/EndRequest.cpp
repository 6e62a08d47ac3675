#include "platform/EndRequest.h"

#include <windows.h>

#include <atomic>

namespace qv::platform {

namespace {

constexpr int kInterrupted = 130;
constexpr int kTerminated = 143;

std::atomic<int> requestedCode{0};

BOOL WINAPI Note(DWORD event) {
  int none = 0;
  const bool interrupt = event == CTRL_C_EVENT || event == CTRL_BREAK_EVENT;
  requestedCode.compare_exchange_strong(none, interrupt ? kInterrupted : kTerminated);
  return TRUE;
}

}  // namespace

void CatchEndRequests() {
  SetConsoleCtrlHandler(Note, TRUE);
}

int EndRequested() {
  return requestedCode;
}

}  // namespace qv::platform
