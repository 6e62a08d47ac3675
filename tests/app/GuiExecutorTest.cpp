#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <vector>

#include "app/GuiExecutor.h"

namespace qv {
namespace {

using std::chrono::milliseconds;

// Stands for the event loop: sleeps until it is woken, then lets the executor work.
class Loop {
 public:
  void Wake() {
    const std::lock_guard lock(mutex_);
    ++wakes_;
    woken_.notify_all();
  }

  // Runs one round; false if nobody woke it in time.
  bool Turn(GuiExecutor& executor) {
    {
      std::unique_lock lock(mutex_);
      if (!woken_.wait_for(lock, milliseconds(5000), [this] { return wakes_ > 0; })) return false;
      wakes_ = 0;
    }
    executor.RunPending();
    return true;
  }

  int wakes() {
    const std::lock_guard lock(mutex_);
    return wakes_;
  }

 private:
  std::mutex mutex_;
  std::condition_variable woken_;
  int wakes_ = 0;
};

class GuiExecutorTest : public ::testing::Test {
 protected:
  Loop loop_;
  GuiExecutor executor_{[this] { loop_.Wake(); }};
};

TEST_F(GuiExecutorTest, DoesPostedWorkInOrderAfterOneWake) {
  std::vector<int> done;
  for (int i = 0; i < 3; ++i) executor_.Post([&done, i] { done.push_back(i); });
  EXPECT_EQ(loop_.wakes(), 1);
  EXPECT_TRUE(done.empty());
  ASSERT_TRUE(loop_.Turn(executor_));
  EXPECT_EQ(done, (std::vector<int>{0, 1, 2}));
}

TEST_F(GuiExecutorTest, LeavesWorkThatWorkPostsForTheNextRound) {
  int rounds = 0;
  std::function<void()> again = [&] {
    if (++rounds < 3) executor_.Post(again);
  };
  executor_.Post(again);
  for (int expected = 1; expected <= 3; ++expected) {
    ASSERT_TRUE(loop_.Turn(executor_));
    EXPECT_EQ(rounds, expected);
  }
  EXPECT_EQ(loop_.wakes(), 0);
}

TEST_F(GuiExecutorTest, CallRunsOnTheGuiThreadAndWaits) {
  const auto gui = std::this_thread::get_id();
  std::atomic<bool> returned{false};
  std::thread::id ranOn;
  std::thread other([&] {
    EXPECT_TRUE(executor_.Call([&] { ranOn = std::this_thread::get_id(); }));
    returned = true;
  });
  std::this_thread::sleep_for(milliseconds(30));
  EXPECT_FALSE(returned);
  ASSERT_TRUE(loop_.Turn(executor_));
  other.join();
  EXPECT_EQ(ranOn, gui);
}

TEST_F(GuiExecutorTest, CallOnTheGuiThreadRunsAtOnce) {
  bool ran = false;
  EXPECT_TRUE(executor_.Call([&] { ran = true; }));
  EXPECT_TRUE(ran);
}

TEST_F(GuiExecutorTest, CloseLetsWaitingCallersGo) {
  bool ran = false;
  std::thread other([&] { EXPECT_FALSE(executor_.Call([&] { ran = true; })); });
  while (loop_.wakes() == 0) std::this_thread::sleep_for(milliseconds(1));
  executor_.Close();
  other.join();
  EXPECT_FALSE(ran);

  std::thread late([&] { EXPECT_FALSE(executor_.Call([&] { ran = true; })); });
  late.join();
  executor_.Post([&] { ran = true; });
  executor_.RunPending();
  EXPECT_FALSE(ran);
}

TEST_F(GuiExecutorTest, WorkMayCloseTheExecutorWhileItsCallerWaits) {
  std::thread other([&] { EXPECT_TRUE(executor_.Call([&] { executor_.Close(); })); });
  ASSERT_TRUE(loop_.Turn(executor_));
  other.join();
}

TEST_F(GuiExecutorTest, ManyThreadsLoseNothing) {
  constexpr int kThreads = 4, kTasks = 500;
  int posted = 0, called = 0;  // touched by the GUI thread alone
  std::vector<std::thread> others;
  others.reserve(kThreads);
  for (int t = 0; t < kThreads; ++t) {
    others.emplace_back([&] {
      for (int i = 0; i < kTasks; ++i) {
        executor_.Post([&] { ++posted; });
        if (i % 10 == 0) {
          EXPECT_TRUE(executor_.Call([&] { ++called; }));
        }
      }
    });
  }
  while (posted < kThreads * kTasks || called < kThreads * kTasks / 10) {
    ASSERT_TRUE(loop_.Turn(executor_));
  }
  for (std::thread& other : others) other.join();
  EXPECT_EQ(posted, kThreads * kTasks);
  EXPECT_EQ(called, kThreads * kTasks / 10);
}

}  // namespace
}  // namespace qv
