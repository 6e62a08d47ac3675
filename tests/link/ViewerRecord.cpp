#include "link/ViewerRecord.h"

#include <algorithm>
#include <fstream>

#include "platform/Clock.h"
#include "platform/Ids.h"

namespace qv {

ViewerRecord::ViewerRecord() {
  static int count = 0;
  path_ = std::filesystem::temp_directory_path() /
          ("quorvane-test-viewer-" + std::to_string(platform::CurrentProcessId()) + "-" +
           std::to_string(++count));
  std::filesystem::remove(path_);
}

ViewerRecord::~ViewerRecord() {
  std::error_code ignored;
  std::filesystem::remove(path_, ignored);
}

std::vector<std::string> ViewerRecord::AllLines() const {
  std::vector<std::string> lines;
  std::ifstream file(path_);
  // A line that is being written has no end yet.
  for (std::string line; std::getline(file, line) && !file.eof();) lines.push_back(line);
  return lines;
}

std::vector<std::string> ViewerRecord::NewLines() {
  std::vector<std::string> lines = AllLines();
  lines.erase(lines.begin(), lines.begin() + static_cast<std::ptrdiff_t>(taken_));
  taken_ += lines.size();
  std::erase(lines, "IsCameraLinked");
  return lines;
}

bool ViewerRecord::Await(const std::string& line) const {
  const double end = platform::NowSeconds() + 10;
  while (platform::NowSeconds() < end) {
    const std::vector<std::string> lines = AllLines();
    if (std::find(lines.begin(), lines.end(), line) != lines.end()) return true;
    platform::SleepMilliseconds(5);
  }
  return false;
}

}  // namespace qv
