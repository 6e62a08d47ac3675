#include <sstream>

#include "host/app/HostProgram.h"
#include "platform/Ids.h"
#include "tests/host/app/posix/ScriptFolder.h"

namespace qv::host {
namespace {

namespace fs = std::filesystem;
using Clock = std::chrono::steady_clock;

class Programs : public ScriptFolder {
 protected:
  int Run(
      const fs::path& model, const fs::path& viewer,
      std::function<int()> endRequested = [] { return 0; }) {
    Options options;
    options.model = model.string();
    options.viewer = viewer.string();
    HostProgram program(options, console_, std::move(endRequested));
    const auto start = Clock::now();
    const int code = program.Run();
    seconds_ = std::chrono::duration<double>(Clock::now() - start).count();
    return code;
  }

  // A viewer that leaves its process id and then does as it is told here.
  fs::path Viewer(const std::string& then) {
    return WriteScript("viewer", "echo $$ > " + Marker().string() + "\n" + then);
  }
  fs::path Marker() const { return folder() / "started"; }

  static bool HasLinkObjects() {
    const std::string id = std::to_string(platform::CurrentProcessId());
    for (const char* name : {"QV_Lock1_", "QV_Lock2_", "QV_Shared1_"}) {
      if (fs::exists("/dev/shm/" + (name + id))) return true;
    }
    return false;
  }

  std::ostringstream output_;
  std::ostringstream errors_;
  Console console_{output_, errors_};
  double seconds_ = 0;
};

TEST_F(Programs, StartNoViewerForASceneFileWithAMistake) {
  const fs::path scene = Write("scene.json", R"({"format": "quorvane scene", "version": 1,
"models": [{"file": "none.obj"}]})");
  EXPECT_EQ(Run(scene, Viewer("exec sleep 100")), HostProgram::kFailure);
  EXPECT_NE(errors_.str().find("scene.json can't be read: models[0].file: there is no file"),
            std::string::npos)
      << errors_.str();
  EXPECT_FALSE(fs::exists(Marker()));
}

TEST_F(Programs, SayThatThereIsNoViewer) {
  const fs::path none = folder() / "none";
  EXPECT_EQ(Run(WriteModel(), none), HostProgram::kFailure);
  EXPECT_NE(errors_.str().find(none.string()), std::string::npos) << errors_.str();
  // A file that is no program.
  EXPECT_EQ(Run(WriteModel(), Write("text", "text")), HostProgram::kFailure);
  EXPECT_NE(errors_.str().find("can't be started"), std::string::npos) << errors_.str();
  EXPECT_FALSE(HasLinkObjects());
}

TEST_F(Programs, EndSoonAfterTheViewerDied) {
  EXPECT_EQ(Run(WriteModel(), Viewer("sleep 1\nexit 7")), HostProgram::kFailure);
  EXPECT_LT(seconds_, 2.5);
  EXPECT_NE(errors_.str().find("ended unexpectedly, with exit code 7"), std::string::npos)
      << errors_.str();
  EXPECT_TRUE(fs::exists(Marker()));
  EXPECT_FALSE(HasLinkObjects());
}

TEST_F(Programs, TellTheStartViewBeforeTheViewerStarts) {
  Run(WriteModel(), Viewer("exit 0"));
  EXPECT_NE(output_.str().find("model: Wavefront Object, metres"), std::string::npos);
  EXPECT_NE(output_.str().find("\nstart view: eye "), std::string::npos) << output_.str();
  EXPECT_EQ(output_.str().find("scene sent"), std::string::npos);
}

}  // namespace
}  // namespace qv::host
