#pragma once

#include <chrono>
#include <filesystem>
#include <functional>
#include <string>
#include <vector>

namespace qv::e2e {

// What a viewer tells its log, gathered in a file.
class ViewerLog {
 public:
  explicit ViewerLog(std::filesystem::path file) : file_(std::move(file)) {}

  // Calls `start`; a program that is started there writes its log to the file.
  void Capture(const std::function<void()>& start);

  std::string Text() const;
  // The lines that hold `part`.
  std::vector<std::string> Lines(const std::string& part) const;
  // Waits until more than `known` lines hold `part`.
  bool WaitFor(const std::string& part, std::size_t known = 0,
               std::chrono::seconds timeout = std::chrono::seconds(120)) const;

 private:
  std::filesystem::path file_;
};

}  // namespace qv::e2e
