#pragma once

#include <windows.h>

#include <utility>

namespace qv::platform {

// Owns a kernel object's handle.
class Handle {
 public:
  Handle() = default;
  explicit Handle(HANDLE value) : value_(value) {}
  ~Handle() { Reset(); }
  Handle(Handle&& other) noexcept : value_(std::exchange(other.value_, nullptr)) {}
  Handle& operator=(Handle&& other) noexcept {
    if (this != &other) {
      Reset();
      value_ = std::exchange(other.value_, nullptr);
    }
    return *this;
  }

  explicit operator bool() const { return value_ != nullptr; }
  HANDLE get() const { return value_; }
  HANDLE Release() { return std::exchange(value_, nullptr); }
  void Reset() {
    if (value_ != nullptr) CloseHandle(std::exchange(value_, nullptr));
  }

 private:
  HANDLE value_ = nullptr;
};

}  // namespace qv::platform
