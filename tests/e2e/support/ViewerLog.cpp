#include "e2e/support/ViewerLog.h"

#include <fstream>
#include <sstream>
#include <thread>

namespace qv::e2e {

std::string ViewerLog::Text() const {
  std::ifstream in(file_);
  std::ostringstream text;
  text << in.rdbuf();
  return text.str();
}

std::vector<std::string> ViewerLog::Lines(const std::string& part) const {
  std::istringstream in(Text());
  std::vector<std::string> lines;
  for (std::string line; std::getline(in, line);) {
    if (line.find(part) != std::string::npos) lines.push_back(line);
  }
  return lines;
}

bool ViewerLog::WaitFor(const std::string& part, std::size_t known,
                        std::chrono::seconds timeout) const {
  const auto end = std::chrono::steady_clock::now() + timeout;
  while (Lines(part).size() <= known) {
    if (std::chrono::steady_clock::now() >= end) return false;
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
  }
  return true;
}

}  // namespace qv::e2e
