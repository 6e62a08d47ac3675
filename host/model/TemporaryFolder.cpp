#include "host/model/TemporaryFolder.h"

#include <cstdint>

#include "platform/Ids.h"

namespace qv::host {
namespace {

namespace fs = std::filesystem;

std::string RandomName() {
  constexpr char kDigits[] = "0123456789abcdef";
  std::string name = "quorvane-";
  for (const std::uint8_t byte : platform::NewGuid()) {
    name += kDigits[byte >> 4];
    name += kDigits[byte & 15];
  }
  return name;
}

}  // namespace

std::optional<fs::path> TemporaryFolder::NewPath(const fs::path& suffix) {
  const std::lock_guard lock(mutex_);
  if (removed_) return std::nullopt;
  if (folder_.empty()) {
    std::error_code error;
    const fs::path folder = fs::temp_directory_path(error) / RandomName();
    if (error || !fs::create_directory(folder, error)) return std::nullopt;
    fs::permissions(folder, fs::perms::owner_all, error);
    folder_ = folder;
  }
  fs::path name = std::to_string(files_++);
  name += suffix;
  return folder_ / name;
}

void TemporaryFolder::Remove() {
  const std::lock_guard lock(mutex_);
  removed_ = true;
  if (folder_.empty()) return;
  std::error_code error;
  fs::remove_all(folder_, error);
  folder_.clear();
}

}  // namespace qv::host
