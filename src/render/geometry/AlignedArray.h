#pragma once

#include <cstddef>
#include <memory>
#include <new>
#include <span>
#include <type_traits>
#include <utility>

namespace qv {

// A flat array of plain values, aligned to 64 bytes, not initialised. Throws std::bad_alloc.
template <typename T>
class AlignedArray {
  static_assert(std::is_trivially_copyable_v<T> && std::is_trivially_destructible_v<T>);

 public:
  AlignedArray() = default;
  explicit AlignedArray(std::size_t size) : data_(Allocate(size)), size_(size) {}
  AlignedArray(AlignedArray&& other) noexcept
      : data_(std::move(other.data_)), size_(std::exchange(other.size_, 0)) {}
  AlignedArray& operator=(AlignedArray&& other) noexcept {
    data_ = std::move(other.data_);
    size_ = std::exchange(other.size_, 0);
    return *this;
  }

  T* data() { return data_.get(); }
  const T* data() const { return data_.get(); }
  std::size_t size() const { return size_; }
  bool empty() const { return size_ == 0; }
  T& operator[](std::size_t i) { return data_.get()[i]; }
  const T& operator[](std::size_t i) const { return data_.get()[i]; }
  std::span<T> span() { return {data(), size_}; }
  std::span<const T> span() const { return {data(), size_}; }

 private:
  static constexpr std::align_val_t kAlignment{64};

  struct Free {
    void operator()(T* p) const { ::operator delete(p, kAlignment); }
  };

  static T* Allocate(std::size_t size) {
    if (size == 0) return nullptr;
    if (size > static_cast<std::size_t>(-1) / sizeof(T)) throw std::bad_array_new_length();
    return static_cast<T*>(::operator new(size * sizeof(T), kAlignment));
  }

  std::unique_ptr<T, Free> data_;
  std::size_t size_ = 0;
};

}  // namespace qv
