#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "platform/ChildProcess.h"
#include "platform/posix/RawPeer.h"

namespace qv {

// A host made of system calls and bytes, for the test viewer. Names carry this process's id.
class RawHost {
 public:
  // Also starts the viewer, and waits until it is connected.
  RawHost(std::size_t areaSize, const std::string& recordPath, const std::string& untilPath);
  ~RawHost();
  RawHost(const RawHost&) = delete;
  RawHost& operator=(const RawHost&) = delete;

  // Writes the record and rings, without waiting.
  void Ring(std::span<const std::byte> record);
  // Waits for the answer, for ten seconds at most.
  bool AwaitAnswer();
  bool Carry(std::span<const std::byte> record);
  // A status message, as an order for the test viewer.
  void RingOrder(const std::string& order);
  bool CarryOrder(const std::string& order);

  // Makes the command area anew under its name, once the old one has been released.
  void ReplaceArea(std::size_t size);
  // Takes memory away from the command area under the viewer's feet.
  void ShortenArea(std::size_t size);

  platform::RawPeer& socket() { return socket_; }
  platform::ChildProcess& viewer() { return viewer_; }

 private:
  struct Object {
    std::string path;
    int file = -1;
    void* address = nullptr;
    std::size_t size = 0;
  };
  static Object Make(const std::string& path, std::size_t size);
  static void Destroy(Object& object);

  Object lock1_, lock2_, area_;
  platform::RawPeer socket_;
  platform::ChildProcess viewer_;
};

}  // namespace qv
