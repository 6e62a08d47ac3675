#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <string>

#include "platform/NamedEvent.h"
#include "platform/SharedMemory.h"

namespace qv::host {

// The doorbell, the answer and the command area, under the names that carry a process id. One
// thread at a time.
class CommandChannel {
 public:
  enum class Answer { kCame, kGone, kLate };

  explicit CommandChannel(std::uint32_t processId);

  // Makes the three objects; what a killed process of the same id has left is replaced. False if
  // one cannot be made.
  bool Create(std::size_t areaSize);

  std::span<std::byte> area() const { return area_.bytes(); }
  // Gives the area up, and makes it anew. The viewer must have released it before.
  bool Replace(std::size_t areaSize);

  // Forgets what a viewer that has ended has left undone.
  void Clear();
  void Ring();
  // Waits for the answer to all rings; `gone` is asked again and again whether none will come.
  Answer AwaitAnswer(const std::function<bool()>& gone,
                     std::optional<std::chrono::milliseconds> timeout);
  // A ring whose answer has not come yet.
  bool outstanding() const { return outstanding_; }

 private:
  const std::string lock1Name_;
  const std::string lock2Name_;
  const std::string areaName_;
  platform::NamedEvent lock1_;
  platform::NamedEvent lock2_;
  platform::SharedMemory area_;
  bool outstanding_ = false;
};

}  // namespace qv::host
