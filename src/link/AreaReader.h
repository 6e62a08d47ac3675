#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <span>
#include <string>
#include <type_traits>
#include <vector>

#include "platform/GuardedCopy.h"

namespace qv {

// How shared memory is read and written; plain copies where the memory is known to stay.
struct SharedAccess {
  bool (*read)(void* to, const void* shared, std::size_t size) = platform::CopyFromShared;
  bool (*write)(void* shared, const void* from, std::size_t size) = platform::CopyToShared;
};

// Copies parts of one record out of the command area, as far as they lie within it. The host could
// write to the area at any moment, so that every value is copied once and only the copy is looked
// at. After the first part that does not fit `error` says what was wrong, and everything fails.
class AreaReader {
 public:
  AreaReader(std::span<const std::byte> area, const SharedAccess& access)
      : area_(area), access_(access) {}

  const std::string& error() const { return error_; }

  template <typename T>
  bool ReadRecord(T& record) {
    static_assert(std::is_trivially_copyable_v<T>);
    return CheckRange("the record", 0, sizeof(T)) && Copy(&record, 0, sizeof(T));
  }

  template <typename T>
  bool ReadArray(const char* what, std::int32_t offset, std::int32_t count, std::size_t perItem,
                 std::vector<T>& items) {
    static_assert(std::is_trivially_copyable_v<T>);
    items.clear();
    if (!CheckCount(what, count)) return false;
    if (count == 0) return true;
    const std::size_t length = static_cast<std::size_t>(count) * perItem;
    if (!CheckRange(what, offset, length * sizeof(T))) return false;
    items.resize(length);
    return Copy(items.data(), static_cast<std::size_t>(offset), length * sizeof(T));
  }

  // A zero-terminated text that takes at most `limit` bytes with its terminator.
  bool ReadText(const char* what, std::int32_t offset, std::size_t limit, std::string& text);

 private:
  bool CheckCount(const char* what, std::int32_t count);
  bool CheckRange(const char* what, std::int64_t offset, std::size_t size);
  bool Copy(void* to, std::size_t offset, std::size_t size);

  std::span<const std::byte> area_;
  const SharedAccess& access_;
  std::string error_;
};

}  // namespace qv
