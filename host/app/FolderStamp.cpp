#include "host/app/FolderStamp.h"

#include <algorithm>
#include <string>

#include "platform/PathText.h"

namespace qv::host {

FolderStamp StampOf(const std::filesystem::path& model) {
  namespace fs = std::filesystem;
  FolderStamp stamp;
  std::error_code error;
  const fs::path absolute = fs::absolute(model, error);
  const std::uintmax_t size = fs::file_size(absolute, error);
  if (!error) stamp.size = size;
  for (fs::directory_iterator entry(absolute.parent_path(), error), end; !error && entry != end;
       entry.increment(error)) {
    std::error_code unknown;
    const auto time = entry->last_write_time(unknown);
    const std::string name = platform::Utf8FromPath(entry->path().filename());
    const bool own = name.find(".quorvane.json") != std::string::npos;
    if (unknown || own || !entry->is_regular_file(unknown)) continue;
    ++stamp.files;
    stamp.newest = std::max(stamp.newest, time);
  }
  return stamp;
}

}  // namespace qv::host
