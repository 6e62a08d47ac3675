#include "platform/PumpedWait.h"

#include "platform/win32/Handle.h"

namespace qv::platform {

// The event resets itself when a wait has taken it.
struct PumpedWait::Impl {
  const Handle ended{CreateEventW(nullptr, FALSE, FALSE, nullptr)};
};

PumpedWait::PumpedWait() : impl_(std::make_unique<Impl>()) {}

PumpedWait::~PumpedWait() = default;

void PumpedWait::End() {
  SetEvent(impl_->ended.get());
}

bool PumpedWait::Wait(std::chrono::milliseconds longest) {
  const HANDLE ended = impl_->ended.get();
  const DWORD woken =
      MsgWaitForMultipleObjects(1, &ended, FALSE, static_cast<DWORD>(longest.count()), QS_ALLINPUT);
  // What stays in the queue is not new the next time.
  GetQueueStatus(QS_ALLINPUT);
  return woken == WAIT_OBJECT_0;
}

}  // namespace qv::platform
