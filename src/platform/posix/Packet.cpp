#include "platform/posix/Packet.h"

#include <sys/socket.h>

#include <array>
#include <bit>
#include <cerrno>
#include <cstring>
#include <utility>
#include <vector>

namespace qv::platform {

namespace {

static_assert(std::endian::native == std::endian::little);

// Descriptors that fit into the buffer for one packet; the system closes what a peer attaches
// beyond them.
constexpr std::size_t kMostDescriptors = 4;

union ControlBuffer {
  cmsghdr alignment;
  std::array<char, CMSG_SPACE(kMostDescriptors * sizeof(int))> bytes;
};

std::vector<Descriptor> TakeDescriptors(msghdr& message) {
  std::vector<Descriptor> taken;
  for (cmsghdr* header = CMSG_FIRSTHDR(&message); header != nullptr;
       header = CMSG_NXTHDR(&message, header)) {
    if (header->cmsg_level != SOL_SOCKET || header->cmsg_type != SCM_RIGHTS) continue;
    const std::size_t count = (header->cmsg_len - CMSG_LEN(0)) / sizeof(int);
    for (std::size_t i = 0; i < count; ++i) {
      int number;
      std::memcpy(&number, CMSG_DATA(header) + i * sizeof(int), sizeof(int));
      taken.emplace_back(number);
    }
  }
  return taken;
}

bool WouldBlock(int error) {
  return error == EAGAIN || error == EWOULDBLOCK;
}

}  // namespace

Transfer SendPacket(const Descriptor& socket, const Packet& packet, const SharedMemory& record) {
  iovec part{const_cast<Packet*>(&packet), sizeof(packet)};
  msghdr message{};
  message.msg_iov = &part;
  message.msg_iovlen = 1;
  ControlBuffer control{};
  if (record) {
    const int number = static_cast<int>(record.native());
    message.msg_control = control.bytes.data();
    message.msg_controllen = CMSG_SPACE(sizeof(number));
    cmsghdr* header = CMSG_FIRSTHDR(&message);
    header->cmsg_level = SOL_SOCKET;
    header->cmsg_type = SCM_RIGHTS;
    header->cmsg_len = CMSG_LEN(sizeof(number));
    std::memcpy(CMSG_DATA(header), &number, sizeof(number));
  }
  for (;;) {
    if (sendmsg(socket.get(), &message, MSG_DONTWAIT | MSG_NOSIGNAL) >= 0) return Transfer::kDone;
    if (errno == EINTR) continue;
    // ETOOMANYREFS: too many descriptors of this user are under way; the peer takes them in time.
    if (WouldBlock(errno) || errno == ENOBUFS || errno == ETOOMANYREFS) {
      return Transfer::kWouldBlock;
    }
    return Transfer::kDisconnected;
  }
}

Transfer ReceivePacket(const Descriptor& socket, ReceivedPacket& received) {
  received = ReceivedPacket();
  Packet packet;
  iovec part{&packet, sizeof(packet)};
  ControlBuffer control{};
  msghdr message{};
  message.msg_iov = &part;
  message.msg_iovlen = 1;
  message.msg_control = control.bytes.data();
  message.msg_controllen = control.bytes.size();
  ssize_t length;
  do {
    length = recvmsg(socket.get(), &message, MSG_DONTWAIT | MSG_CMSG_CLOEXEC);
  } while (length < 0 && errno == EINTR);
  if (length < 0) return WouldBlock(errno) ? Transfer::kWouldBlock : Transfer::kDisconnected;
  if (length == 0) return Transfer::kDisconnected;

  std::vector<Descriptor> attached = TakeDescriptors(message);
  if (length != sizeof(packet) || (message.msg_flags & MSG_TRUNC) != 0) return Transfer::kDone;
  if (packet.kind > kPacketReply) return Transfer::kDone;
  received.wellFormed = true;
  received.packet = packet;
  if (attached.size() == 1) {
    Descriptor file = std::move(attached.front());
    received.record = SharedMemory::Adopt(file.Release());
  }
  return Transfer::kDone;
}

}  // namespace qv::platform
