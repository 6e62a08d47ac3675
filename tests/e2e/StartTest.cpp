#include <filesystem>

#include "e2e/support/Looks.h"
#include "e2e/support/Processes.h"
#include "e2e/support/ViewerTest.h"
#include "platform/ChildProcess.h"

namespace qv::e2e {
namespace {

using platform::ChildProcess;

// Menu bar and tool bar lie above, the view below or around.
constexpr int kToolRows = 66;

class Start : public ViewerTest {
 protected:
  ChildProcess Run(const std::vector<std::string>& arguments) {
    ChildProcess viewer;
    log_.Capture([&] { viewer = ChildProcess::Start(QUORVANE_VIEWER, arguments); });
    return viewer;
  }
};

TEST_F(Start, EndsAtOnceWithoutAHostOnTheCommandLine) {
  for (const auto& arguments :
       {std::vector<std::string>{}, std::vector<std::string>{"--windowhandle=123"},
        std::vector<std::string>{"--windowhandle=0x10", "--processid=5"},
        std::vector<std::string>{"--windowhandle=", "--processid=-"},
        std::vector<std::string>{"--nonsense", "one", "two"}}) {
    ChildProcess viewer = Run(arguments);
    ASSERT_TRUE(viewer);
    while (viewer.Running()) ASSERT_FALSE(ViewerWindow::Exists());
    EXPECT_TRUE(viewer.Wait(kSoon));
  }
  EXPECT_TRUE(log_.Lines("warning:").empty() && log_.Lines("error:").empty()) << log_.Text();
}

TEST_F(Start, WaitsQuietlyForAHostThatIsNotThere) {
  const std::filesystem::path before = std::filesystem::current_path();
  const std::filesystem::path elsewhere = before.root_path();
  std::filesystem::current_path(elsewhere);
  ChildProcess viewer = Run({"--windowhandle=4000000000", "--processid=4000000001"});
  std::filesystem::current_path(before);
  window_ = ViewerWindow::Find(kPatience);
  ASSERT_TRUE(window_);
  std::this_thread::sleep_for(std::chrono::seconds(1));

  const double secondsBefore = ProcessorSeconds(viewer.id());
  std::this_thread::sleep_for(std::chrono::seconds(3));
  EXPECT_LT(ProcessorSeconds(viewer.id()) - secondsBefore, 0.06);

  // The pictures of the tools are found wherever the viewer is started, and it goes back there.
  const Screenshot shot = window_->Shoot();
  for (const char* tool : {"CameraLink", "AO", "Reload"}) {
    EXPECT_TRUE(FindTool(shot, kToolRows, tool)) << tool;
  }
  EXPECT_EQ(WorkingFolder(viewer.id()).value_or(elsewhere), elsewhere);

  window_->Close();
  EXPECT_EQ(viewer.Wait(kSoon), 0);
  if (viewer.Running()) viewer.Kill();
}

}  // namespace
}  // namespace qv::e2e
