#include <condition_variable>
#include <future>
#include <memory>

#include "e2e/support/Looks.h"
#include "e2e/support/Processes.h"
#include "e2e/support/Programs.h"
#include "e2e/support/Settings.h"
#include "e2e/support/ViewerTest.h"
#include "platform/ChildProcess.h"
#include "platform/NamedEvent.h"
#include "platform/SharedMemory.h"

namespace qv::e2e {
namespace {

class Close : public ViewerTest {};

// Opened once; whoever waits goes on from then.
class Gate {
 public:
  void Open() {
    const std::lock_guard lock(mutex_);
    open_ = true;
    opened_.notify_all();
  }
  void Pass() {
    std::unique_lock lock(mutex_);
    opened_.wait(lock, [this] { return open_; });
  }

 private:
  std::mutex mutex_;
  std::condition_variable opened_;
  bool open_ = false;
};

TEST_F(Close, EndsTheViewerAndTellsTheHost) {
  ASSERT_NO_FATAL_FAILURE(StartViewer());
  ASSERT_TRUE(SendQuarters(host_->link()));
  ASSERT_TRUE(host_->link().SetCamera(QuarterCamera(), true));
  ASSERT_TRUE(AwaitFinalPicture());
  window_->Close();
  EXPECT_EQ(host_->link().WaitForViewer(kSoon), 0);
  EXPECT_EQ(host_->closes, 1);
  EXPECT_FALSE(host_->link().SetProgress(0.5f));
}

TEST_F(Close, EndsTheViewerWhileItRenders) {
  ASSERT_NO_FATAL_FAILURE(StartViewer());
  ASSERT_TRUE(SendQuarters(host_->link()));
  ASSERT_TRUE(host_->link().SetCamera(QuarterCamera(), true));
  window_->Close();
  EXPECT_EQ(host_->link().WaitForViewer(kSoon), 0);
}

TEST_F(Close, EndsTheViewerDuringTheTransfer) {
  WriteSetting("/Defaults/CameraLink", 1);
  ASSERT_NO_FATAL_FAILURE(StartViewer());
  std::atomic<int> sent{0};
  auto transfer = std::async(std::launch::async, [&] {
    while (SendGround(host_->link(), 60)) ++sent;
  });
  ASSERT_TRUE(Eventually([&] { return sent > 3; }));
  window_->Close();
  // The transfer ends because the viewer has gone.
  ASSERT_EQ(transfer.wait_for(kSoon), std::future_status::ready);
  EXPECT_EQ(host_->link().WaitForViewer(kSoon), 0);
  EXPECT_EQ(host_->closes, 1);
  EXPECT_EQ(ReadSetting("/Defaults/CameraLink"), 1) << "which comes into force with the scene only";
}

TEST_F(Close, EndsTheViewerWhileItBuildsTheScene) {
  ASSERT_NO_FATAL_FAILURE(StartViewer());
  ASSERT_TRUE(SendGround(host_->link(), 500));
  std::atomic<bool> building{false};
  // The last property that is asked for before the scene is built.
  host_->beforeProperty = [&](const std::string& name) {
    building = building || name == "lightMap_settings";
  };
  auto completion = std::async(std::launch::async, [&] { return host_->link().SceneComplete(); });
  ASSERT_TRUE(Eventually([&] { return building.load(); }));
  window_->Close();
  ASSERT_EQ(completion.wait_for(kSoon), std::future_status::ready);
  EXPECT_EQ(host_->link().WaitForViewer(kSoon), 0);
}

TEST_F(Close, EndsTheViewerWhileTheHostIsSlowToAnswer) {
  ASSERT_NO_FATAL_FAILURE(StartViewer());
  // Shared with the link's message thread, which may leave the gate after this test has ended.
  const auto answers = std::make_shared<Gate>();
  const auto asked = std::make_shared<std::atomic<bool>>(false);
  host_->beforeProperty = [answers, asked](const std::string&) {
    *asked = true;
    answers->Pass();
  };
  auto completion = std::async(std::launch::async, [&] { return SendQuarters(host_->link()); });
  ASSERT_TRUE(Eventually([&] { return asked->load(); }));
  window_->Close();
  // The window goes at once, the process as soon as it stops to wait for the answer.
  EXPECT_TRUE(Eventually([] { return !ViewerWindow::Exists(); }, std::chrono::seconds(3)));
  EXPECT_EQ(host_->link().WaitForViewer(kSoon), 0);
  answers->Open();
  EXPECT_EQ(completion.wait_for(kSoon), std::future_status::ready);
}

TEST_F(Close, KilledViewerFreesTheHost) {
  ASSERT_NO_FATAL_FAILURE(StartViewer());
  auto transfer = std::async(std::launch::async, [&] {
    while (SendGround(host_->link(), 60)) {
    }
  });
  KillProcess(host_->link().ViewerProcessId());
  EXPECT_EQ(transfer.wait_for(kSoon), std::future_status::ready);
  EXPECT_EQ(host_->link().WaitForViewer(kSoon), kExitCodeOfKilled);
  EXPECT_FALSE(host_->link().ViewerRunning());
}

TEST_F(Close, ViewerOutlivesAKilledHost) {
  const std::filesystem::path logFile = display_.folder() / "orphan.log";
  const ViewerLog log(logFile);
  auto host =
      platform::ChildProcess::Start(SceneHostProgram(), {ViewerProgram(), logFile.string()});
  ASSERT_TRUE(host);
  window_ = ViewerWindow::Find(kPatience);
  ASSERT_TRUE(window_);
  ASSERT_TRUE(log.WaitFor("picture shown: antialiased"));
  host.Kill();
  ASSERT_TRUE(host.Wait(kSoon));

  // It still renders what it has, and can be closed.
  std::this_thread::sleep_for(std::chrono::milliseconds(300));
  const std::size_t known = log.Lines("picture shown: antialiased").size();
  window_->Resize(700, 500);
  EXPECT_TRUE(log.WaitFor("picture shown: antialiased", known));
  window_->Close();
  EXPECT_TRUE(Eventually([] { return !ViewerWindow::Exists(); }, kSoon)) << log.Text();

  // A killed host cannot clean up after itself.
  const std::string id = std::to_string(host.id());
  platform::NamedEvent::Remove("QV_Lock1_" + id);
  platform::NamedEvent::Remove("QV_Lock2_" + id);
  platform::SharedMemory::Remove("QV_Shared1_" + id);
}

}  // namespace
}  // namespace qv::e2e
