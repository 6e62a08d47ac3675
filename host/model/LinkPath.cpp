#include "host/model/LinkPath.h"

#include <system_error>

#include "link/Records.h"
#include "platform/PathText.h"

namespace qv::host {
namespace {

namespace fs = std::filesystem;

// A zero byte ends it.
bool IsShort(const std::string& path) {
  return path.size() < wire::kLongestTextureName;
}

}  // namespace

std::optional<std::string> LinkPath(const fs::path& file, TemporaryFolder& temporaryFiles) {
  std::string text = platform::Utf8FromPath(file);
  if (IsShort(text)) return text;
  const auto alias = temporaryFiles.NewPath(file.extension());
  if (!alias) return std::nullopt;
  text = platform::Utf8FromPath(*alias);
  if (!IsShort(text)) return std::nullopt;
  std::error_code error;
  fs::create_symlink(file, *alias, error);
  if (error) {
    error.clear();
    fs::copy_file(file, *alias, error);
  }
  if (error) return std::nullopt;
  return text;
}

}  // namespace qv::host
