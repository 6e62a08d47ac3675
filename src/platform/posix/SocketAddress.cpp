#include "platform/posix/SocketAddress.h"

#include <sys/socket.h>
#include <sys/un.h>

#include <cstddef>
#include <cstring>
#include <string>

namespace qv::platform {

namespace {

struct Address {
  explicit Address(std::uint32_t window) {
    // A zero byte in front makes the address abstract: it stands in no file system and ends with
    // its socket.
    const std::string name = '\0' + ("QV_Window_" + std::to_string(window));
    socket.sun_family = AF_UNIX;
    std::memcpy(socket.sun_path, name.data(), name.size());
    length = static_cast<socklen_t>(offsetof(sockaddr_un, sun_path) + name.size());
  }
  const sockaddr* get() const { return reinterpret_cast<const sockaddr*>(&socket); }

  sockaddr_un socket{};
  socklen_t length;
};

Descriptor NewSocket() {
  return Descriptor(socket(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC | SOCK_NONBLOCK, 0));
}

bool IsOfThisUser(const Descriptor& peer) {
  ucred credentials{};
  socklen_t length = sizeof(credentials);
  return getsockopt(peer.get(), SOL_SOCKET, SO_PEERCRED, &credentials, &length) == 0 &&
         credentials.uid == geteuid();
}

}  // namespace

Descriptor ListenOnWindow(std::uint32_t window) {
  const Address address(window);
  Descriptor socket = NewSocket();
  if (!socket || bind(socket.get(), address.get(), address.length) != 0 ||
      listen(socket.get(), SOMAXCONN) != 0) {
    return Descriptor();
  }
  return socket;
}

Descriptor ConnectToWindow(std::uint32_t window) {
  const Address address(window);
  Descriptor socket = NewSocket();
  if (!socket || connect(socket.get(), address.get(), address.length) != 0 ||
      !IsOfThisUser(socket)) {
    return Descriptor();
  }
  return socket;
}

Descriptor AcceptPeer(const Descriptor& listener) {
  Descriptor peer(accept4(listener.get(), nullptr, nullptr, SOCK_CLOEXEC | SOCK_NONBLOCK));
  return peer && IsOfThisUser(peer) ? std::move(peer) : Descriptor();
}

}  // namespace qv::platform
