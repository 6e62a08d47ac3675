#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <string>

namespace qv::platform {

// A block of memory that two processes see, mapped whole, read and write. Named blocks are found by
// name; unnamed ones are handed to the other process through a MessagePort. Move-only; unmaps and
// closes when destroyed.
class SharedMemory {
 public:
  SharedMemory();
  ~SharedMemory();
  SharedMemory(SharedMemory&&) noexcept;
  SharedMemory& operator=(SharedMemory&&) noexcept;

  // Makes a zeroed block; the name disappears with its creator's object. Empty if the name is taken
  // or the system refuses.
  static SharedMemory Create(const std::string& name, std::size_t size);
  static SharedMemory Open(const std::string& name);
  static SharedMemory CreateUnnamed(std::size_t size);
  // Takes over a handle (Windows: HANDLE of a mapping; Linux: descriptor of a memory file) and maps
  // it. Empty, with the handle closed, if it is none or cannot be mapped; on Windows a number that
  // is no mapping is left alone, since it may be another handle of this process. The memory stays
  // readable whatever the sender does to it later: where Linux would let the sender shorten the
  // file, this is a copy.
  static SharedMemory Adopt(std::intptr_t native);
  // Takes away a named block that a process left behind when it was killed. Only Linux keeps such
  // blocks.
  static void Remove(const std::string& name);

  explicit operator bool() const { return impl_ != nullptr; }

  // The bytes that are really there, as the system tells, in whole pages: what a peer says of a
  // size is never believed. Empty for an empty block.
  std::span<std::byte> bytes() const;

  // Has the system write back what was written (FlushViewOfFile). Nothing to do on Linux, where the
  // memory itself is what the other process sees.
  void Flush();

  // The handle, still owned by this object; -1 for an empty block. For the message port only.
  std::intptr_t native() const;

 private:
  struct Impl;
  std::unique_ptr<Impl> impl_;
};

}  // namespace qv::platform
