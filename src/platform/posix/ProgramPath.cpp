#include "platform/ProgramPath.h"

namespace qv::platform {

std::filesystem::path ProgramPath() {
  std::error_code error;
  const std::filesystem::path path = std::filesystem::read_symlink("/proc/self/exe", error);
  return error ? std::filesystem::path() : path;
}

std::string ProgramFileName(const std::string& name) {
  return name;
}

}  // namespace qv::platform
