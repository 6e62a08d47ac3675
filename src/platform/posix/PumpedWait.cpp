#include "platform/PumpedWait.h"

#include <condition_variable>
#include <mutex>
#include <utility>

namespace qv::platform {

struct PumpedWait::Impl {
  std::mutex mutex;
  std::condition_variable changed;
  bool ended = false;
};

PumpedWait::PumpedWait() : impl_(std::make_unique<Impl>()) {}

PumpedWait::~PumpedWait() = default;

void PumpedWait::End() {
  const std::lock_guard<std::mutex> lock(impl_->mutex);
  impl_->ended = true;
  impl_->changed.notify_all();
}

bool PumpedWait::Wait(std::chrono::milliseconds longest) {
  std::unique_lock<std::mutex> lock(impl_->mutex);
  impl_->changed.wait_for(lock, longest, [this] { return impl_->ended; });
  return std::exchange(impl_->ended, false);
}

}  // namespace qv::platform
