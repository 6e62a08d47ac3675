#include <windows.h>

#include <atomic>
#include <chrono>
#include <future>
#include <memory>
#include <mutex>
#include <thread>

#include "e2e/support/QuartersTest.h"

namespace qv::e2e {
namespace {

class SentClose : public QuartersTest {};

// Other programs may send the message in the middle of whatever the window waits for.
TEST_F(SentClose, LetsAnAnswerOfTheHostComeFirst) {
  ASSERT_NO_FATAL_FAILURE(StartViewer());
  // Shared with the link's message thread, which may be in there when this test has ended.
  struct Held {
    std::atomic<bool> wanted{false}, reached{false};
    std::promise<void> over;
    std::once_flag told;
    void End() {
      std::call_once(told, [this] { over.set_value(); });
    }
  };
  const auto held = std::make_shared<Held>();
  host_->beforeProperty = [held, over = held->over.get_future().share()](const std::string&) {
    if (!held->wanted) return;
    held->reached = true;
    over.wait();
  };
  ASSERT_TRUE(SendQuarters(host_->link()));
  ASSERT_TRUE(host_->link().SetCamera(QuarterCamera(), true));
  ASSERT_TRUE(AwaitFinalPicture());
  ASSERT_TRUE(SettlesTo(kQuarters));

  held->wanted = true;
  auto completion = std::async(std::launch::async, [&] { return host_->link().SceneComplete(); });
  // Also where this test ends early: the other thread is waited for.
  const std::shared_ptr<void> release(nullptr, [held](void*) { held->End(); });
  ASSERT_TRUE(Eventually([&] { return held->reached.load(); }, kSoon));
  // The window asks for place and camera, after the property.
  ASSERT_NO_FATAL_FAILURE(ClickTool("syncCamera"));
  std::this_thread::sleep_for(std::chrono::milliseconds(500));
  DWORD_PTR ignored = 0;
  SendMessageTimeoutW(FindWindowW(nullptr, L"Quorvane"), WM_CLOSE, 0, 0, SMTO_NORMAL, 10000,
                      &ignored);
  held->End();
  EXPECT_EQ(host_->link().WaitForViewer(kSoon), 0);
  EXPECT_EQ(host_->closes, 1);
  EXPECT_EQ(completion.wait_for(kSoon), std::future_status::ready);
}

TEST_F(SentClose, EndsAnOpenMenuToo) {
  ASSERT_NO_FATAL_FAILURE(ShowQuarters());
  ASSERT_TRUE(window_->OpenMenu());
  window_->Close();
  EXPECT_EQ(host_->link().WaitForViewer(kSoon), 0);
  EXPECT_EQ(host_->closes, 1);
}

}  // namespace
}  // namespace qv::e2e
