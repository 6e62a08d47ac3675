#pragma once

#include <chrono>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace qv::platform {

// A program that this process started. Not ended by the destructor. One thread at a time.
class ChildProcess {
 public:
  ChildProcess();
  ~ChildProcess();
  ChildProcess(ChildProcess&&) noexcept;
  ChildProcess& operator=(ChildProcess&&) noexcept;

  // Starts a program by its path (UTF-8). Empty if it cannot be started.
  static ChildProcess Start(const std::string& path, const std::vector<std::string>& arguments);

  explicit operator bool() const { return impl_ != nullptr; }
  std::uint32_t id() const;
  bool Running();
  // The exit code once the process has ended (128 + signal number where a signal ended it on
  // Linux); nothing when the time is over first.
  std::optional<int> Wait(std::optional<std::chrono::milliseconds> timeout = std::nullopt);
  void Kill();

 private:
  struct Impl;
  std::unique_ptr<Impl> impl_;
};

}  // namespace qv::platform
