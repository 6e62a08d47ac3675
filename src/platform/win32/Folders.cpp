#include "platform/Folders.h"

#include <system_error>

namespace qv::platform {

std::vector<std::wstring> SubfolderNames(const std::filesystem::path& folder) {
  std::vector<std::wstring> names;
  std::error_code error;
  std::filesystem::directory_iterator entry(folder, error);
  for (; !error && entry != std::filesystem::directory_iterator(); entry.increment(error)) {
    std::error_code gone;
    if (entry->is_directory(gone)) names.push_back(entry->path().filename().wstring());
  }
  return names;
}

}  // namespace qv::platform
