#include "platform/win32/SendToWindow.h"

#include <memory>

namespace qv::platform {

namespace {

// How often it is asked whether the window is still there.
constexpr DWORD kAskingIntervalMilliseconds = 100;

struct Outcome {
  bool answered = false;
  LRESULT result = 0;
};

// The system calls this on the thread that sent, perhaps after the wait has been given up.
using OutcomeReference = std::shared_ptr<Outcome>;

void CALLBACK TakeResult(HWND, UINT, ULONG_PTR context, LRESULT result) {
  const std::unique_ptr<OutcomeReference> outcome(reinterpret_cast<OutcomeReference*>(context));
  (*outcome)->answered = true;
  (*outcome)->result = result;
}

// Also lets the system call TakeResult.
void HandleSentMessages() {
  MSG message;
  PeekMessageW(&message, nullptr, 0, 0, PM_NOREMOVE | PM_QS_SENDMESSAGE);
}

}  // namespace

std::optional<LRESULT> SendToWindow(HWND window, UINT number, WPARAM wParam, HANDLE close,
                                    HANDLE process) {
  const auto outcome = std::make_shared<Outcome>();
  auto reference = std::make_unique<OutcomeReference>(outcome);
  const auto context = reinterpret_cast<ULONG_PTR>(reference.get());
  if (SendMessageCallbackW(window, number, wParam, 0, TakeResult, context) == 0)
    return std::nullopt;
  reference.release();

  const HANDLE ends[] = {close, process};
  const DWORD endCount = process != nullptr ? 2 : 1;
  while (!outcome->answered) {
    const DWORD woken = MsgWaitForMultipleObjectsEx(endCount, ends, kAskingIntervalMilliseconds,
                                                    QS_SENDMESSAGE, MWMO_INPUTAVAILABLE);
    HandleSentMessages();
    if (outcome->answered) break;
    if (woken < WAIT_OBJECT_0 + endCount || woken == WAIT_FAILED) return std::nullopt;
    if (woken == WAIT_TIMEOUT && IsWindow(window) == 0) return std::nullopt;
  }
  return outcome->result;
}

}  // namespace qv::platform
