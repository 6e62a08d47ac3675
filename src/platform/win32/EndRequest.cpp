#include "platform/EndRequest.h"

#include <windows.h>

#include <atomic>
#include <cstdlib>

namespace qv::platform {

namespace {

constexpr int kInterrupted = 130;
constexpr int kTerminated = 143;
// As long as the system gives a process whose console is closed.
constexpr DWORD kLongestEndMilliseconds = 5000;

std::atomic<int> requestedCode{0};
const HANDLE ended = CreateEventW(nullptr, TRUE, FALSE, nullptr);

void TellEnd() {
  SetEvent(ended);
}

BOOL WINAPI Note(DWORD event) {
  int none = 0;
  const bool interrupt = event == CTRL_C_EVENT || event == CTRL_BREAK_EVENT;
  requestedCode.compare_exchange_strong(none, interrupt ? kInterrupted : kTerminated);
  // The others (a console that closes, a user who logs off, a system that shuts down) end the
  // process as soon as this returns, whatever it is at.
  if (!interrupt) WaitForSingleObject(ended, kLongestEndMilliseconds);
  return TRUE;
}

}  // namespace

void CatchEndRequests() {
  std::atexit(TellEnd);
  SetConsoleCtrlHandler(Note, TRUE);
}

int EndRequested() {
  return requestedCode;
}

}  // namespace qv::platform
