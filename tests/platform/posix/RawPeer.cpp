#include "platform/posix/RawPeer.h"

#include <poll.h>
#include <sys/mman.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <array>
#include <cstring>
#include <utility>

namespace qv::platform {

namespace {

constexpr std::size_t kMostDescriptors = 8;

struct Address {
  explicit Address(std::uint32_t window) {
    const std::string name = "QV_Window_" + std::to_string(window);
    content.sun_family = AF_UNIX;
    std::memcpy(content.sun_path + 1, name.data(), name.size());
    length = static_cast<socklen_t>(offsetof(sockaddr_un, sun_path) + 1 + name.size());
  }
  const sockaddr* get() const { return reinterpret_cast<const sockaddr*>(&content); }

  sockaddr_un content{};
  socklen_t length;
};

void AppendLittleEndian(std::vector<unsigned char>& bytes, std::uint64_t value, int size) {
  for (int i = 0; i < size; ++i) bytes.push_back(static_cast<unsigned char>(value >> (8 * i)));
}

}  // namespace

bool RawPeer::Connect(std::uint32_t window) {
  const Address address(window);
  socket_ = socket(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0);
  return connect(socket_, address.get(), address.length) == 0;
}

bool RawPeer::Listen(std::uint32_t window) {
  const Address address(window);
  listener_ = socket(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0);
  return bind(listener_, address.get(), address.length) == 0 && listen(listener_, 4) == 0;
}

bool RawPeer::Accept() {
  socket_ = accept4(listener_, nullptr, nullptr, SOCK_CLOEXEC);
  return socket_ >= 0;
}

bool RawPeer::Send(const std::vector<unsigned char>& bytes, const std::vector<int>& descriptors) {
  iovec part{const_cast<unsigned char*>(bytes.data()), bytes.size()};
  msghdr message{};
  message.msg_iov = &part;
  message.msg_iovlen = 1;
  alignas(cmsghdr) std::array<char, CMSG_SPACE(kMostDescriptors * sizeof(int))> control{};
  if (!descriptors.empty()) {
    const std::size_t size = descriptors.size() * sizeof(int);
    message.msg_control = control.data();
    message.msg_controllen = CMSG_SPACE(size);
    cmsghdr* header = CMSG_FIRSTHDR(&message);
    header->cmsg_level = SOL_SOCKET;
    header->cmsg_type = SCM_RIGHTS;
    header->cmsg_len = CMSG_LEN(size);
    std::memcpy(CMSG_DATA(header), descriptors.data(), size);
  }
  return sendmsg(socket_, &message, MSG_NOSIGNAL) == static_cast<ssize_t>(bytes.size());
}

std::optional<RawPeer::Received> RawPeer::Receive() {
  pollfd polled{socket_, POLLIN, 0};
  if (poll(&polled, 1, 10000) != 1) return std::nullopt;
  Received received;
  received.bytes.resize(1024);
  iovec part{received.bytes.data(), received.bytes.size()};
  alignas(cmsghdr) std::array<char, CMSG_SPACE(kMostDescriptors * sizeof(int))> control{};
  msghdr message{};
  message.msg_iov = &part;
  message.msg_iovlen = 1;
  message.msg_control = control.data();
  message.msg_controllen = control.size();
  const ssize_t length = recvmsg(socket_, &message, MSG_CMSG_CLOEXEC);
  if (length <= 0) return std::nullopt;
  received.bytes.resize(static_cast<std::size_t>(length));
  for (cmsghdr* header = CMSG_FIRSTHDR(&message); header != nullptr;
       header = CMSG_NXTHDR(&message, header)) {
    const std::size_t count = (header->cmsg_len - CMSG_LEN(0)) / sizeof(int);
    received.descriptors.resize(count);
    std::memcpy(received.descriptors.data(), CMSG_DATA(header), count * sizeof(int));
  }
  return received;
}

void RawPeer::Close() {
  for (int* number : {&socket_, &listener_}) {
    if (*number >= 0) close(std::exchange(*number, -1));
  }
}

std::vector<unsigned char> PacketBytes(std::uint32_t kind, std::uint32_t number,
                                       std::uint64_t wParam, std::uint64_t serial) {
  std::vector<unsigned char> bytes;
  AppendLittleEndian(bytes, kind, 4);
  AppendLittleEndian(bytes, number, 4);
  AppendLittleEndian(bytes, wParam, 8);
  AppendLittleEndian(bytes, 0, 8);
  AppendLittleEndian(bytes, serial, 8);
  return bytes;
}

int MemoryFile(const std::string& content, std::size_t size, bool sealable) {
  const int file = memfd_create("QV_Test", MFD_CLOEXEC | (sealable ? MFD_ALLOW_SEALING : 0u));
  if (ftruncate(file, static_cast<off_t>(size)) != 0 ||
      pwrite(file, content.data(), content.size(), 0) != static_cast<ssize_t>(content.size())) {
    close(file);
    return -1;
  }
  return file;
}

}  // namespace qv::platform
