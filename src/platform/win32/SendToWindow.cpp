#include "platform/win32/SendToWindow.h"

#include <algorithm>
#include <memory>

#include "platform/SharedMemory.h"

namespace qv::platform {

namespace {

using std::chrono::milliseconds;
using std::chrono::steady_clock;

// How often it is asked whether the window is still there.
constexpr milliseconds kAskingInterval{100};

struct Outcome {
  bool abandoned = false;
  bool answered = false;
  LRESULT result = 0;
};

// The system calls this on the thread that sent, perhaps after the wait has been given up.
using OutcomeReference = std::shared_ptr<Outcome>;

void CALLBACK TakeResult(HWND, UINT, ULONG_PTR context, LRESULT result) {
  const std::unique_ptr<OutcomeReference> outcome(reinterpret_cast<OutcomeReference*>(context));
  if ((*outcome)->abandoned) {
    SharedMemory::Adopt(result);
    return;
  }
  (*outcome)->answered = true;
  (*outcome)->result = result;
}

// Also lets the system call TakeResult.
void HandleSentMessages() {
  MSG message;
  PeekMessageW(&message, nullptr, 0, 0, PM_NOREMOVE | PM_QS_SENDMESSAGE);
}

// One part of the wait. False when it is to be given up.
bool WaitOn(HWND window, const SendEnds& ends, milliseconds longest) {
  const HANDLE handles[] = {ends.close, ends.process};
  const DWORD count = ends.process != nullptr ? 2 : 1;
  const DWORD woken = MsgWaitForMultipleObjectsEx(
      count, handles, static_cast<DWORD>(longest.count()), QS_SENDMESSAGE, MWMO_INPUTAVAILABLE);
  HandleSentMessages();
  if (woken < WAIT_OBJECT_0 + count || woken == WAIT_FAILED) return false;
  return woken != WAIT_TIMEOUT || IsWindow(window) != 0;
}

}  // namespace

SendOutcome SendToWindow(HWND window, UINT number, WPARAM wParam, const SendEnds& ends) {
  const auto outcome = std::make_shared<Outcome>();
  auto reference = std::make_unique<OutcomeReference>(outcome);
  const auto context = reinterpret_cast<ULONG_PTR>(reference.get());
  if (SendMessageCallbackW(window, number, wParam, 0, TakeResult, context) == 0) return {};
  static_cast<void>(reference.release());

  const auto started = steady_clock::now();
  bool waiting = true;
  while (!outcome->answered && waiting) {
    milliseconds longest = kAskingInterval;
    if (ends.patience) {
      const auto waited = std::chrono::duration_cast<milliseconds>(steady_clock::now() - started);
      longest = std::clamp(*ends.patience - waited, milliseconds(0), kAskingInterval);
      waiting = waited < *ends.patience;
    }
    waiting = WaitOn(window, ends, longest) && waiting;
  }
  if (outcome->answered) return {SendOutcome::Kind::kAnswered, outcome->result};
  outcome->abandoned = true;
  return {SendOutcome::Kind::kGivenUp, 0};
}

}  // namespace qv::platform
