#pragma once

#include <condition_variable>
#include <deque>
#include <map>
#include <mutex>
#include <thread>

#include "platform/MessagePort.h"
#include "platform/posix/Descriptor.h"
#include "platform/posix/Packet.h"

namespace qv::platform {

// The message port over a socket. A thread of the port reads whatever arrives: replies wake their
// sender, messages are queued for the owner.
class SocketPort final : public MessagePort {
 public:
  // With a listener the port waits for its peer, otherwise `peer` is the connection, or empty.
  SocketPort(std::uint32_t window, Descriptor listener, Descriptor peer, Handler handler,
             Notify notify, std::chrono::milliseconds ownersPatience);
  ~SocketPort() override;

  std::uint32_t window() const override { return window_; }
  void SetPeerProcess(std::uint32_t) override {}  // descriptors go to whoever is connected
  bool connected() const override;
  void Post(std::uint32_t number, SharedMemory record) override;
  MessageReply Send(std::uint32_t number, SharedMemory record) override;
  void Dispatch() override;
  bool WaitAndDispatch(std::chrono::milliseconds timeout) override;
  void Close() override;

 private:
  using Lock = std::unique_lock<std::mutex>;

  struct Message {
    Packet packet;
    SharedMemory record;
    std::uint64_t connection = 0;  // that it came on, so that no later peer gets its answer
  };
  struct Wait {
    std::uint32_t number = 0;
    bool done = false;
    MessageReply reply;
  };

  void Read();
  bool ReadPeer();
  void Receive(ReceivedPacket received);
  void AcceptNewPeer();
  void CompleteReply(ReceivedPacket& received);
  void FailWaits();
  void Disconnect();
  void WakeReader();
  bool Transmit(const Packet& packet, SharedMemory record, bool mayExceedQueue);
  bool Flush();
  bool HandleNextSend(Lock& lock);
  void Handle(Lock& lock, Message message);

  const std::uint32_t window_;
  const Handler handler_;
  const Notify notify_;
  const std::thread::id owner_ = std::this_thread::get_id();
  const std::chrono::milliseconds ownersPatience_;
  const Descriptor wake_;  // an eventfd that ends the reader's poll
  Descriptor listener_;    // used by the reader only

  mutable std::mutex mutex_;  // guards what follows
  std::condition_variable changed_;
  Descriptor peer_;               // reset by the reader only, so that it may poll without the lock
  std::uint64_t connection_ = 0;  // counts the peers
  bool closed_ = false;
  std::uint64_t lastSerial_ = 0;
  std::map<std::uint64_t, Wait> waits_;  // by serial
  std::deque<Message> incoming_;
  std::deque<Message> outgoing_;  // what the socket had no room for

  std::thread reader_;
};

}  // namespace qv::platform
