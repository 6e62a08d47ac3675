#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

#include "platform/SharedMemory.h"
#include "platform/posix/Descriptor.h"

namespace qv::platform {

enum PacketKind : std::uint32_t { kPacketPost = 0, kPacketSend = 1, kPacketReply = 2 };

// One window message on its way between host and viewer, as it stands on the socket. Little-endian.
struct Packet {
  std::uint32_t kind = kPacketPost;
  std::uint32_t number = 0;
  std::uint64_t wParam =
      0;  // 1 with a record attached, else 0; of a reply without a record the result
  std::uint64_t lParam = 0;
  std::uint64_t serial = 0;  // counts the sends of one end; a reply repeats that of its send
};
static_assert(sizeof(Packet) == 32);
static_assert(offsetof(Packet, kind) == 0 && offsetof(Packet, number) == 4);
static_assert(offsetof(Packet, wParam) == 8 && offsetof(Packet, lParam) == 16);
static_assert(offsetof(Packet, serial) == 24);

enum class Transfer { kDone, kWouldBlock, kDisconnected };

// Sends one packet with the record's descriptor attached. Does not block, raises no signal.
Transfer SendPacket(const Descriptor& socket, const Packet& packet, const SharedMemory& record);

struct ReceivedPacket {
  bool wellFormed = false;  // exactly one packet long and of a known kind; else the rest is empty
  Packet packet;
  SharedMemory record;
};

// Receives one packet. Does not block. What is attached beside one descriptor of a memory file is
// closed.
Transfer ReceivePacket(const Descriptor& socket, ReceivedPacket& received);

}  // namespace qv::platform
