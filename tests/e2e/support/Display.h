#pragma once

#include <filesystem>
#include <memory>
#include <string>

namespace qv::e2e {

// A screen and settings that are only the running test's, for as long as this lives: no test sees
// the windows or the settings of another, nor those of the user. On Linux an X server with a window
// manager and a home folder, in the environment that programs with windows look at; on Windows,
// where settings are the user's, only for a user that is told to be made for tests.
class Display {
 public:
  Display();
  ~Display();
  Display(const Display&) = delete;
  Display& operator=(const Display&) = delete;

  // Empty if it stands.
  const std::string& failure() const { return failure_; }
  // For files of the test.
  const std::filesystem::path& folder() const { return folder_; }

  // The user's language ("de", "ja", ...) for programs that start from now on; English before.
  void SetLanguage(const std::string& language);

  static constexpr int kWidth = 1280;
  static constexpr int kHeight = 960;

 private:
  struct Native;

  std::filesystem::path folder_;
  std::string failure_;
  std::unique_ptr<Native> native_;
};

}  // namespace qv::e2e
