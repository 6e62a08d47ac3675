// The program itself, as a shell sees it.
#include <sys/wait.h>

#include <csignal>
#include <cstdlib>
#include <thread>

#include "platform/ChildProcess.h"
#include "tests/host/app/posix/ScriptFolder.h"

namespace qv::host {
namespace {

namespace fs = std::filesystem;

class ProgramFile : public ScriptFolder {
 protected:
  // The exit code; what was written is in the two files.
  int Run(const std::string& arguments) {
    const std::string command = std::string(QUORVANE_HOST_PROGRAM) + ' ' + arguments + " > " +
                                Output().string() + " 2> " + Errors().string();
    const int status = std::system(command.c_str());
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
  }

  fs::path Output() const { return folder() / "output"; }
  fs::path Errors() const { return folder() / "errors"; }
};

TEST_F(ProgramFile, TellsOfItself) {
  EXPECT_EQ(Run("--help"), 0);
  EXPECT_EQ(TextOf(Output()).substr(0, 6), "Usage:");
  EXPECT_EQ(Run("--version"), 0);
  EXPECT_EQ(TextOf(Output()).substr(0, 14), "quorvane-host ");
}

TEST_F(ProgramFile, EndsWithTwoForMistakesOnTheCommandLine) {
  EXPECT_EQ(Run(""), 2);
  EXPECT_NE(TextOf(Errors()).find("--help"), std::string::npos);
  EXPECT_EQ(TextOf(Output()), "");
  EXPECT_EQ(Run("--fov wide model.obj"), 2);
  EXPECT_NE(TextOf(Errors()).find("\"wide\""), std::string::npos);
}

TEST_F(ProgramFile, EndsWithOneForAModelThatCannotBeRead) {
  const fs::path viewer = WriteScript("viewer", "touch " + (folder() / "started").string());
  const std::string model = QUORVANE_SAMPLE_MODELS "/glTF2/MissingBin/BoxTextured.gltf";
  EXPECT_EQ(Run("--viewer " + viewer.string() + ' ' + model), 1);
  EXPECT_NE(TextOf(Errors()).find(model), std::string::npos) << TextOf(Errors());
  EXPECT_FALSE(fs::exists(folder() / "started"));
}

TEST_F(ProgramFile, EndsOnSignalsWithTheirCodesAndLeavesNothingBehind) {
  const std::pair<int, int> codes[] = {{SIGINT, 130}, {SIGTERM, 143}, {SIGHUP, 129}};
  for (const auto& [signal, code] : codes) {
    const fs::path started = folder() / ("started" + std::to_string(signal));
    const fs::path viewer =
        WriteScript("viewer" + std::to_string(signal),
                    "echo $$ > " + started.string() + ".new\nmv " + started.string() + ".new " +
                        started.string() + "\nexec sleep 100");
    auto program = platform::ChildProcess::Start(
        QUORVANE_HOST_PROGRAM, {"--viewer", viewer.string(), WriteModel().string()});
    ASSERT_TRUE(program);
    for (int i = 0; i < 1000 && !fs::exists(started); ++i) {
      std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    const std::string viewerId = TextOf(started);
    ASSERT_FALSE(viewerId.empty());
    kill(static_cast<pid_t>(program.id()), signal);
    EXPECT_EQ(program.Wait(std::chrono::seconds(5)), code);
    EXPECT_FALSE(fs::exists("/proc/" + viewerId.substr(0, viewerId.find('\n'))));
    EXPECT_FALSE(fs::exists("/dev/shm/QV_Shared1_" + std::to_string(program.id())));
    EXPECT_FALSE(fs::exists("/dev/shm/QV_Lock1_" + std::to_string(program.id())));
  }
}

// Reading this file takes long enough to be interrupted in.
TEST_F(ProgramFile, EndsOnASignalWhileItReadsTheModel) {
  std::string model;
  for (int i = 0; i < 400000; ++i) {
    model += "v " + std::to_string(i) + " 0 0\nv 0 " + std::to_string(i) + " 0\nv 0 0 " +
             std::to_string(i) + "\nf -1 -2 -3\n";
  }
  auto program = platform::ChildProcess::Start(
      QUORVANE_HOST_PROGRAM, {"--viewer", WriteScript("viewer", "exec sleep 100").string(),
                              Write("big.obj", model).string()});
  ASSERT_TRUE(program);
  std::this_thread::sleep_for(std::chrono::milliseconds(300));
  kill(static_cast<pid_t>(program.id()), SIGTERM);
  const auto start = std::chrono::steady_clock::now();
  EXPECT_EQ(program.Wait(std::chrono::seconds(10)), 143);
  EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(2));
}

}  // namespace
}  // namespace qv::host
