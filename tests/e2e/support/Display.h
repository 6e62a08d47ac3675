#pragma once

#include <sys/types.h>

#include <filesystem>
#include <string>
#include <vector>

namespace qv::e2e {

// Starts a program that is killed when this process ends, however it ends.
// `keptDescriptor` stays open in it.
pid_t StartHelper(const std::vector<std::string>& command, int keptDescriptor = -1);

// An X server without a screen, a window manager on it, and a home folder, for as long as this
// lives: no test sees the windows or the settings of another, nor those of the user. Sets the
// environment that programs with windows look at.
class Display {
 public:
  Display();
  ~Display();
  Display(const Display&) = delete;
  Display& operator=(const Display&) = delete;

  // Empty if both programs run.
  const std::string& failure() const { return failure_; }
  // For files of the test.
  const std::filesystem::path& folder() const { return folder_; }

  static constexpr int kWidth = 1280;
  static constexpr int kHeight = 960;

 private:
  bool StartServer();
  bool StartWindowManager();

  std::filesystem::path folder_;
  std::string failure_;
  std::vector<pid_t> helpers_;
};

}  // namespace qv::e2e
