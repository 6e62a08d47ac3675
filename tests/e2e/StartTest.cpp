#include <unistd.h>

#include <fstream>

#include "e2e/support/Looks.h"
#include "e2e/support/ViewerTest.h"
#include "platform/ChildProcess.h"

namespace qv::e2e {
namespace {

using platform::ChildProcess;

class Start : public ViewerTest {
 protected:
  ChildProcess Run(const std::vector<std::string>& arguments) {
    ChildProcess viewer;
    log_.Capture([&] { viewer = ChildProcess::Start(QUORVANE_VIEWER, arguments); });
    return viewer;
  }

  // Processor time of a process so far, in seconds.
  static double ProcessorSeconds(std::uint32_t process) {
    std::ifstream stat("/proc/" + std::to_string(process) + "/stat");
    std::string word;
    while (stat >> word && word.back() != ')') {
    }
    long ticks = 0;
    for (int field = 3; field <= 15 && stat >> word; ++field) {
      if (field >= 14) ticks += std::stol(word);
    }
    return static_cast<double>(ticks) / static_cast<double>(sysconf(_SC_CLK_TCK));
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
  ASSERT_EQ(chdir("/"), 0);
  ChildProcess viewer = Run({"--windowhandle=4000000000", "--processid=4000000001"});
  window_ = ViewerWindow::Find(kPatience);
  ASSERT_TRUE(window_);
  std::this_thread::sleep_for(std::chrono::seconds(1));

  const double before = ProcessorSeconds(viewer.id());
  std::this_thread::sleep_for(std::chrono::seconds(3));
  EXPECT_LT(ProcessorSeconds(viewer.id()) - before, 0.06);

  // The pictures of the tools are found wherever the viewer is started, and it goes back there.
  const Screenshot shot = window_->Shoot();
  EXPECT_EQ(FindTools(shot, {0, 40, shot.width, shot.height - 40}).size(), 3u);
  EXPECT_EQ(std::filesystem::read_symlink("/proc/" + std::to_string(viewer.id()) + "/cwd"), "/");

  window_->Close();
  EXPECT_EQ(viewer.Wait(kSoon), 0);
  if (viewer.Running()) viewer.Kill();
}

}  // namespace
}  // namespace qv::e2e
