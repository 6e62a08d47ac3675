#include "link/TestWindow.h"

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <mutex>

namespace qv {

namespace {

// The host's messages come through the link's own port, so that only waking is left to do.
class PlainWindow final : public TestWindow {
 public:
  void Show(bool visible) override { visible_ = visible; }
  bool visible() const override { return visible_; }
  void Wake() override {
    const std::lock_guard<std::mutex> lock(mutex_);
    woken_ = true;
    changed_.notify_all();
  }
  void HandleEvents() override {
    std::unique_lock<std::mutex> lock(mutex_);
    changed_.wait_for(lock, std::chrono::milliseconds(20), [this] { return woken_; });
    woken_ = false;
  }

 private:
  std::atomic<bool> visible_{false};
  std::mutex mutex_;
  std::condition_variable changed_;
  bool woken_ = false;
};

}  // namespace

std::unique_ptr<TestWindow> TestWindow::Create(const std::function<void(std::uint32_t)>&) {
  return std::make_unique<PlainWindow>();
}

}  // namespace qv
