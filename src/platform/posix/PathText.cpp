#include "platform/PathText.h"

#include <cstdlib>

namespace qv::platform {

std::filesystem::path PathFromUtf8(std::string_view text) {
  return text;
}

std::string Utf8FromPath(const std::filesystem::path& path) {
  return path.native();
}

std::filesystem::path PathFromEnvironment(const char* name) {
  const char* value = std::getenv(name);
  return value == nullptr ? "" : value;
}

}  // namespace qv::platform
