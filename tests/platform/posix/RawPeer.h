#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace qv::platform {

// The other end of a port's socket, spoken by hand: system calls and bytes only.
class RawPeer {
 public:
  RawPeer() = default;
  ~RawPeer() { Close(); }
  RawPeer(const RawPeer&) = delete;
  RawPeer& operator=(const RawPeer&) = delete;

  // As the viewer. False if nobody listens.
  bool Connect(std::uint32_t window);
  // As the host.
  bool Listen(std::uint32_t window);
  bool Accept();

  struct Received {
    std::vector<unsigned char> bytes;
    std::vector<int> descriptors;  // the caller closes them
  };

  bool Send(const std::vector<unsigned char>& bytes, const std::vector<int>& descriptors = {});
  // The next packet; nothing if the other end has closed, or nothing comes for ten seconds.
  std::optional<Received> Receive();
  void Close();

 private:
  int listener_ = -1;
  int socket_ = -1;
};

// 32 bytes: kind, number, wParam, lParam (0), serial.
std::vector<unsigned char> PacketBytes(std::uint32_t kind, std::uint32_t number,
                                       std::uint64_t wParam, std::uint64_t serial);

// A memory file of that size which begins with the content, and which may or may not be sealed by
// others.
int MemoryFile(const std::string& content, std::size_t size, bool sealable);

}  // namespace qv::platform
