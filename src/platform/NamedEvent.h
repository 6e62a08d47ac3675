#pragma once

#include <chrono>
#include <memory>
#include <optional>
#include <string>

namespace qv::platform {

// A manual-reset event that two processes share by name. On Windows a named event of the session;
// on Linux a 32-bit futex word in the POSIX shared memory object "/" + name (mode 0600; 0 reset, 1
// set).
//
// Whoever waits resets after waking. All operations on an empty event do nothing; Wait then returns
// false at once. Set, Reset and Wait may be called from any thread.
class NamedEvent {
 public:
  NamedEvent();
  ~NamedEvent();
  NamedEvent(NamedEvent&&) noexcept;
  NamedEvent& operator=(NamedEvent&&) noexcept;

  // Makes the object, reset; it disappears with its creator's NamedEvent. Empty if the name is
  // taken or the system refuses.
  static NamedEvent Create(const std::string& name);
  // Opens an object that another process made. Empty if there is none, or (Linux) if it is shorter
  // than a word.
  static NamedEvent Open(const std::string& name);
  // Takes away an object that a process left behind when it was killed. Only Linux keeps such
  // objects.
  static void Remove(const std::string& name);

  explicit operator bool() const { return impl_ != nullptr; }

  void Set();
  void Reset();
  // True when the event is set; false when the time is over. Without a timeout waits without limit,
  // but for an object that another process has emptied (Linux): then false.
  bool Wait(std::optional<std::chrono::milliseconds> timeout = std::nullopt);

 private:
  struct Impl;
  std::unique_ptr<Impl> impl_;
};

}  // namespace qv::platform
