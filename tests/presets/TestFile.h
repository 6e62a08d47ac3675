#pragma once

#include <filesystem>
#include <string>

#include "platform/Ids.h"

namespace qv {

// A path file of this process alone.
inline std::filesystem::path TestFile() {
  return std::filesystem::temp_directory_path() /
         ("quorvane-test-" + std::to_string(platform::CurrentProcessId()) + ".csv");
}

}  // namespace qv
