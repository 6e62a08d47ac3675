#pragma once

#include <filesystem>
#include <mutex>
#include <optional>
#include <string>

namespace qv::host {

// A folder for files that live as long as this object: made in the system's folder for temporary
// files, readable by this user only, when the first path is asked for, and removed with everything
// in it at the end. Any thread.
class TemporaryFolder {
 public:
  TemporaryFolder() = default;
  ~TemporaryFolder() { Remove(); }
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;

  // A path in the folder that no earlier call gave, its name ending in `suffix`. Nothing if there
  // is no folder to be had, or it has been removed.
  std::optional<std::filesystem::path> NewPath(const std::filesystem::path& suffix);
  // Removes the folder before the end; there is no other after it.
  void Remove();

 private:
  std::mutex mutex_;
  std::filesystem::path folder_;
  unsigned files_ = 0;
  bool removed_ = false;
};

}  // namespace qv::host
