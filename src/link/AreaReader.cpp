#include "link/AreaReader.h"

#include <algorithm>
#include <array>

namespace qv {

bool AreaReader::ReadText(const char* what, std::int32_t offset, std::size_t limit,
                          std::string& text) {
  text.clear();
  if (!CheckRange(what, offset, 1)) return false;
  auto position = static_cast<std::size_t>(offset);
  const std::size_t end = position + std::min(limit, area_.size() - position);
  std::array<char, 256> part;
  while (position < end) {
    const std::size_t size = std::min(part.size(), end - position);
    if (!Copy(part.data(), position, size)) return false;
    const auto* terminator = static_cast<const char*>(std::memchr(part.data(), 0, size));
    text.append(part.data(),
                terminator ? static_cast<std::size_t>(terminator - part.data()) : size);
    if (terminator != nullptr) return true;
    position += size;
  }
  error_ = std::string(what) + " at offset " + std::to_string(offset) +
           " has no terminator within its " + std::to_string(text.size()) + " bytes";
  return false;
}

bool AreaReader::CheckCount(const char* what, std::int32_t count) {
  if (!error_.empty()) return false;
  if (count >= 0) return true;
  error_ = std::string("the number of ") + what + " is " + std::to_string(count);
  return false;
}

bool AreaReader::CheckRange(const char* what, std::int64_t offset, std::size_t size) {
  if (!error_.empty()) return false;
  if (offset >= 0 && static_cast<std::uint64_t>(offset) <= area_.size() &&
      size <= area_.size() - static_cast<std::size_t>(offset)) {
    return true;
  }
  error_ = std::string(what) + " with " + std::to_string(size) + " bytes at offset " +
           std::to_string(offset) + " is not within the command area of " +
           std::to_string(area_.size()) + " bytes";
  return false;
}

bool AreaReader::Copy(void* to, std::size_t offset, std::size_t size) {
  if (access_.read(to, area_.data() + offset, size)) return true;
  error_ = "the host has taken away memory of the command area";
  return false;
}

}  // namespace qv
