#pragma once

#include <chrono>
#include <memory>

namespace qv::platform {

// How a thread that may have windows waits for something that another thread does, so that it can
// look after its windows in between.
class PumpedWait {
 public:
  PumpedWait();
  ~PumpedWait();
  PumpedWait(const PumpedWait&) = delete;
  PumpedWait& operator=(const PumpedWait&) = delete;

  // Ends the wait that is under way, or else the next one. Any thread.
  void End();

  // Waits for End, for `longest` at most; true if it came. On Windows (MsgWaitForMultipleObjects)
  // false also as soon as something new is in the thread's message queue, where it stays.
  bool Wait(std::chrono::milliseconds longest);

 private:
  struct Impl;
  std::unique_ptr<Impl> impl_;
};

}  // namespace qv::platform
