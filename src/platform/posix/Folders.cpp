#include "platform/Folders.h"

#include <algorithm>
#include <exception>
#include <system_error>

namespace qv::platform {

std::vector<std::wstring> SubfolderNames(const std::filesystem::path& folder) {
  std::vector<std::wstring> names;
  std::error_code error;
  std::filesystem::directory_iterator entry(folder, error);
  for (; !error && entry != std::filesystem::directory_iterator(); entry.increment(error)) {
    std::error_code gone;
    if (!entry->is_directory(gone)) continue;
    try {
      names.push_back(entry->path().filename().wstring());
    } catch (const std::exception&) {
      // Bytes that are no UTF-8.
    }
  }
  // As the file systems of Windows list them. Here a copy of a folder would be listed in another
  // order than the folder itself.
  std::sort(names.begin(), names.end());
  return names;
}

}  // namespace qv::platform
