#pragma once

#include <unistd.h>

#include <utility>

namespace qv::platform {

// Owns a file descriptor.
class Descriptor {
 public:
  Descriptor() = default;
  explicit Descriptor(int number) : number_(number) {}
  ~Descriptor() { Reset(); }
  Descriptor(Descriptor&& other) noexcept : number_(std::exchange(other.number_, -1)) {}
  Descriptor& operator=(Descriptor&& other) noexcept {
    if (this != &other) {
      Reset();
      number_ = std::exchange(other.number_, -1);
    }
    return *this;
  }

  explicit operator bool() const { return number_ >= 0; }
  int get() const { return number_; }
  int Release() { return std::exchange(number_, -1); }
  void Reset() {
    if (number_ >= 0) close(std::exchange(number_, -1));
  }

 private:
  int number_ = -1;
};

}  // namespace qv::platform
