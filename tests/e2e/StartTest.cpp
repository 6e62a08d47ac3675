#include <gmock/gmock.h>

#include <filesystem>

#include "e2e/support/Looks.h"
#include "e2e/support/Processes.h"
#include "e2e/support/Programs.h"
#include "e2e/support/ViewerTest.h"
#include "platform/ChildProcess.h"

namespace qv::e2e {
namespace {

using platform::ChildProcess;

class Start : public ViewerTest {
 protected:
  ChildProcess Run(const std::vector<std::string>& arguments) {
    ChildProcess viewer;
    log_.Capture([&] { viewer = ChildProcess::Start(ViewerProgram(), arguments); });
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
    while (viewer.Running()) {
      ASSERT_FALSE(ViewerWindow::Exists());
      ViewerWindow::DismissMessages(viewer.id());
    }
    // What the library's entry point says when there is nothing to run; a byte of it on Linux.
    EXPECT_THAT(viewer.Wait(kSoon), ::testing::AnyOf(-1, 255));
  }
  EXPECT_TRUE(log_.Lines("warning:").empty() && log_.Lines("error:").empty()) << log_.Text();
}

TEST_F(Start, SpeaksTheLanguageOfTheUser) {
  // Found beside the program, wherever it is started from.
  const std::filesystem::path before = std::filesystem::current_path();
  std::filesystem::current_path(display_.folder());
  std::size_t windows = 0;
  for (const char* language : {"de", "ja", "cy"}) {
    display_.SetLanguage(language);
    ChildProcess viewer = Run({"--windowhandle=4000000000", "--processid=4000000001"});
    EXPECT_TRUE(log_.WaitFor("texts are in: ", windows++, kPatience));
    window_ = ViewerWindow::Find(kPatience);
    EXPECT_TRUE(window_);
    if (window_) window_->Close();
    EXPECT_EQ(viewer.Wait(kSoon), 0);
    if (viewer.Running()) viewer.Kill();
  }
  std::filesystem::current_path(before);
  EXPECT_EQ(log_.Lines("texts are in: de").size(), 1u) << log_.Text();
  EXPECT_EQ(log_.Lines("texts are in: ja").size(), 1u);
  EXPECT_EQ(log_.Lines("texts are in: en").size(), 1u);
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
  const int toolsEnd = ViewerWindow::MenuRows() + ViewerWindow::ToolRows();
  for (const char* tool : {"FlyMode", "CameraLink", "AO", "Background", "Reload"}) {
    EXPECT_TRUE(FindTool(shot, toolsEnd, tool)) << tool;
  }
  EXPECT_FALSE(FindTool(shot, toolsEnd, "Movie")) << "which is no tool";
  EXPECT_EQ(WorkingFolder(viewer.id()), elsewhere);

  window_->Close();
  EXPECT_EQ(viewer.Wait(kSoon), 0);
  if (viewer.Running()) viewer.Kill();
}

}  // namespace
}  // namespace qv::e2e
