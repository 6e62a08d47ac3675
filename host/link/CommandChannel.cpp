#include "host/link/CommandChannel.h"

#include <algorithm>

#include "core/Log.h"

namespace qv::host {

namespace {

// How often it is asked whether the viewer has gone.
constexpr std::chrono::milliseconds kAskingInterval{50};

}  // namespace

CommandChannel::CommandChannel(std::uint32_t processId)
    : lock1Name_("QV_Lock1_" + std::to_string(processId)),
      lock2Name_("QV_Lock2_" + std::to_string(processId)),
      areaName_("QV_Shared1_" + std::to_string(processId)) {}

bool CommandChannel::Create(std::size_t areaSize) {
  platform::NamedEvent::Remove(lock1Name_);
  platform::NamedEvent::Remove(lock2Name_);
  platform::SharedMemory::Remove(areaName_);
  lock1_ = platform::NamedEvent::Create(lock1Name_);
  lock2_ = platform::NamedEvent::Create(lock2Name_);
  area_ = platform::SharedMemory::Create(areaName_, areaSize);
  if (lock1_ && lock2_ && area_) return true;
  Log(LogLevel::kError, "Host: cannot make " + lock1Name_ + ", " + lock2Name_ + " and " +
                            areaName_ + " with " + std::to_string(areaSize) + " bytes");
  return false;
}

bool CommandChannel::Replace(std::size_t areaSize) {
  area_ = {};
  area_ = platform::SharedMemory::Create(areaName_, areaSize);
  return static_cast<bool>(area_);
}

void CommandChannel::Clear() {
  lock1_.Reset();
  lock2_.Reset();
  outstanding_ = false;
}

void CommandChannel::Ring() {
  outstanding_ = true;
  lock1_.Set();
}

CommandChannel::Answer CommandChannel::AwaitAnswer(
    const std::function<bool()>& gone, std::optional<std::chrono::milliseconds> timeout) {
  const auto start = std::chrono::steady_clock::now();
  for (;;) {
    std::chrono::milliseconds slice = kAskingInterval;
    if (timeout) {
      const auto passed = std::chrono::duration_cast<std::chrono::milliseconds>(
          std::chrono::steady_clock::now() - start);
      slice = std::clamp(*timeout - passed, std::chrono::milliseconds::zero(), kAskingInterval);
    }
    if (lock2_.Wait(slice)) {
      lock2_.Reset();
      outstanding_ = false;
      return Answer::kCame;
    }
    if (gone()) return Answer::kGone;
    if (timeout && std::chrono::steady_clock::now() - start >= *timeout) return Answer::kLate;
  }
}

}  // namespace qv::host
