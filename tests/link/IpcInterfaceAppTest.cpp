#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>

#include "core/Log.h"
#include "link/HostMessages.h"
#include "link/IpcInterfaceApp.h"
#include "link/RecordingFrame.h"
#include "platform/Clock.h"
#include "platform/Ids.h"

namespace qv {
namespace {

std::string Name(const char* object) {
  return std::string(object) + std::to_string(platform::CurrentProcessId());
}

// Without a host's window: the messages lead nowhere.
class Link : public testing::Test {
 protected:
  Link()
      : frame_([this](const std::string&) { ++calls_; }),
        link_(std::make_unique<IpcInterfaceApp>(
            0xffffffff, platform::CurrentProcessId(), &frame_, [] {}, [] { return true; })) {
    SetLogSink([](LogLevel, const std::string&) {});
  }
  ~Link() override { SetLogSink({}); }

  void MakeObjects() {
    lock1_ = platform::NamedEvent::Create(Name("QV_Lock1_"));
    lock2_ = platform::NamedEvent::Create(Name("QV_Lock2_"));
    area_ = platform::SharedMemory::Create(Name("QV_Shared1_"), 4096);
  }

  std::atomic<int> calls_{0};
  RecordingFrame frame_;
  platform::NamedEvent lock1_, lock2_;
  platform::SharedMemory area_;
  std::unique_ptr<IpcInterfaceApp> link_;
};

TEST_F(Link, OpensOnlyWhereAllThreeObjectsAre) {
  EXPECT_FALSE(link_->Open());
  MakeObjects();
  EXPECT_TRUE(link_->Open());
  link_->Close();
  area_ = {};
  EXPECT_FALSE(link_->Open());
  area_ = platform::SharedMemory::Create(Name("QV_Shared1_"), 4096);
  lock2_ = {};
  EXPECT_FALSE(link_->Open());
}

TEST_F(Link, DoesNothingWhileItIsNotOpen) {
  EXPECT_FALSE(link_->Open());
  link_->Start();
  link_->RequestResend();
  link_->SendCamera({0, 0, 0}, {0, 1, 0}, {0, 0, 1}, 1);
  link_->SetGamma(1);
  EXPECT_FALSE(link_->GetProperty("gamma"));
  EXPECT_FALSE(link_->GetCamera());
  EXPECT_FALSE(link_->GetLocation());
  EXPECT_TRUE(link_->GetPages().empty());
  link_->Dispatch();
  link_->HandleFrameMessage(WM_VIEWER_REOPEN_SHARED);
  link_->TellClosed();
  int pumped = 0;
  const double start = platform::NowSeconds();
  link_->Stop([&pumped] { ++pumped; });
  EXPECT_LT(platform::NowSeconds() - start, 2);
}

TEST_F(Link, StopsBetweenCommandsWithoutAnAnswer) {
  MakeObjects();
  ASSERT_TRUE(link_->Open());
  link_->Start();
  area_.bytes()[0] = std::byte{1};
  lock1_.Set();
  ASSERT_TRUE(lock2_.Wait(std::chrono::seconds(10)));
  lock2_.Reset();
  EXPECT_EQ(calls_, 1);
  link_->Stop({});
  EXPECT_FALSE(lock2_.Wait(std::chrono::milliseconds(20)));
  EXPECT_EQ(calls_, 1);
  link_->Stop({});
}

TEST_F(Link, IsStoppedByItsDestructor) {
  MakeObjects();
  ASSERT_TRUE(link_->Open());
  link_->Start();
  link_.reset();
  EXPECT_EQ(calls_, 0);
}

}  // namespace
}  // namespace qv
