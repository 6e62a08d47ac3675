#include "platform/posix/SocketPort.h"

#include <poll.h>
#include <sys/eventfd.h>

#include <algorithm>
#include <array>
#include <random>
#include <utility>

#include "platform/Clock.h"
#include "platform/posix/SocketAddress.h"

namespace qv::platform {

namespace {

// Messages that may wait on either side, like the limit of a window's message queue. Each may hold
// a descriptor, of which a process has 1024 by default.
constexpr std::size_t kMostPending = 256;
constexpr int kAddressAttempts = 100;
// Packets after which the reader looks up again, so that a busy peer cannot keep it from ending.
constexpr int kMostTakenAtOnce = 64;
// Between attempts at what the system says is possible and then refuses (too many descriptors under
// way or open).
constexpr unsigned kRetryMilliseconds = 2;

}  // namespace

std::unique_ptr<MessagePort> MessagePort::Listen(Handler handler, Notify notify) {
  std::random_device random;
  std::uniform_int_distribution<std::uint32_t> windows(1, 0x7fffffff);
  for (int attempt = 0; attempt < kAddressAttempts; ++attempt) {
    const std::uint32_t window = windows(random);
    Descriptor listener = ListenOnWindow(window);
    if (listener) {
      return std::make_unique<SocketPort>(window, std::move(listener), Descriptor(),
                                          std::move(handler), std::move(notify), kOwnersPatience);
    }
  }
  return nullptr;
}

std::unique_ptr<MessagePort> MessagePort::Connect(std::uint32_t hostWindow, std::uint32_t,
                                                  Handler handler, Notify notify,
                                                  std::chrono::milliseconds ownersPatience) {
  return std::make_unique<SocketPort>(hostWindow, Descriptor(), ConnectToWindow(hostWindow),
                                      std::move(handler), std::move(notify), ownersPatience);
}

SocketPort::SocketPort(std::uint32_t window, Descriptor listener, Descriptor peer, Handler handler,
                       Notify notify, std::chrono::milliseconds ownersPatience)
    : window_(window),
      handler_(std::move(handler)),
      notify_(std::move(notify)),
      ownersPatience_(ownersPatience),
      wake_(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)),
      listener_(std::move(listener)),
      peer_(std::move(peer)) {
  if (wake_ && (listener_ || peer_)) {
    reader_ = std::thread([this] { Read(); });
  } else {
    peer_.Reset();
  }
}

SocketPort::~SocketPort() {
  Close();
  if (reader_.joinable()) reader_.join();
}

bool SocketPort::connected() const {
  const Lock lock(mutex_);
  return peer_ && !closed_;
}

void SocketPort::Post(std::uint32_t number, SharedMemory record) {
  const Lock lock(mutex_);
  const Packet packet{.kind = kPacketPost, .number = number, .wParam = record ? 1u : 0u};
  Transmit(packet, std::move(record), false);
}

MessageReply SocketPort::Send(std::uint32_t number, SharedMemory record) {
  const bool isOwner = std::this_thread::get_id() == owner_;
  const auto patienceEnds = std::chrono::steady_clock::now() + ownersPatience_;
  Lock lock(mutex_);
  const Packet packet{
      .kind = kPacketSend, .number = number, .wParam = record ? 1u : 0u, .serial = ++lastSerial_};
  if (!Transmit(packet, std::move(record), false)) return {};
  const auto wait = waits_.try_emplace(packet.serial).first;
  wait->second.number = number;
  while (!wait->second.done) {
    if (!isOwner) {
      changed_.wait(lock);
    } else if (std::chrono::steady_clock::now() >= patienceEnds) {
      break;
    } else if (!HandleNextSend(lock)) {
      changed_.wait_until(lock, patienceEnds);
    }
  }
  MessageReply reply = std::move(wait->second.reply);
  waits_.erase(wait);
  return reply;
}

void SocketPort::Dispatch() {
  Lock lock(mutex_);
  // What arrives meanwhile brings a notification of its own, so that a busy peer cannot keep the
  // owner here.
  for (std::size_t left = incoming_.size(); left > 0 && !incoming_.empty(); --left) {
    Message message = std::move(incoming_.front());
    incoming_.pop_front();
    Handle(lock, std::move(message));
  }
}

bool SocketPort::WaitAndDispatch(std::chrono::milliseconds timeout) {
  {
    Lock lock(mutex_);
    changed_.wait_for(lock, timeout, [this] { return closed_ || !incoming_.empty(); });
    if (closed_) return false;
  }
  Dispatch();
  return true;
}

void SocketPort::Close() {
  {
    const Lock lock(mutex_);
    if (closed_) return;
    Flush();
    closed_ = true;
    incoming_.clear();
    outgoing_.clear();
    FailWaits();
  }
  WakeReader();
}

// The reader's thread. It alone takes the peer away, and it never calls the handler.
void SocketPort::Read() {
  for (;;) {
    std::array<pollfd, 3> polled{{{wake_.get(), POLLIN, 0}, {-1, 0, 0}, {-1, 0, 0}}};
    {
      const Lock lock(mutex_);
      if (closed_) break;
      polled[1] = {peer_.get(), static_cast<short>(outgoing_.empty() ? POLLIN : POLLIN | POLLOUT),
                   0};
    }
    polled[2] = {listener_.get(), POLLIN, 0};
    if (poll(polled.data(), polled.size(), -1) < 0) continue;

    if (polled[0].revents != 0) {
      eventfd_t count;
      eventfd_read(wake_.get(), &count);
    }
    if ((polled[1].revents & POLLOUT) != 0) {
      Lock lock(mutex_);
      const bool progress = Flush();
      lock.unlock();
      if (!progress) SleepMilliseconds(kRetryMilliseconds);
    }
    if ((polled[1].revents & ~POLLOUT) != 0 && !ReadPeer()) Disconnect();
    if (polled[2].revents != 0) AcceptNewPeer();
  }
  listener_.Reset();
  Disconnect();
}

// Takes what has arrived. False when the peer has gone.
bool SocketPort::ReadPeer() {
  for (int taken = 0; taken < kMostTakenAtOnce; ++taken) {
    ReceivedPacket received;
    switch (ReceivePacket(peer_, received)) {
      case Transfer::kDone:
        Receive(std::move(received));
        break;
      case Transfer::kWouldBlock:
        return true;
      case Transfer::kDisconnected:
        return false;
    }
  }
  return true;
}

void SocketPort::Receive(ReceivedPacket received) {
  {
    const Lock lock(mutex_);
    if (closed_) return;
    if (!received.wellFormed) {
      // It may have been the answer that somebody waits for, so nobody goes on waiting.
      FailWaits();
      return;
    }
    if (received.packet.kind == kPacketReply) {
      CompleteReply(received);
      return;
    }
    if (incoming_.size() >= kMostPending) {
      if (received.packet.kind == kPacketSend) {
        Transmit({.kind = kPacketReply,
                  .number = received.packet.number,
                  .serial = received.packet.serial},
                 {}, true);
      }
      return;
    }
    incoming_.push_back({received.packet, std::move(received.record), connection_});
    changed_.notify_all();
  }
  if (notify_) notify_();
}

void SocketPort::CompleteReply(ReceivedPacket& received) {
  const auto found = waits_.find(received.packet.serial);
  if (found == waits_.end() || found->second.number != received.packet.number) return;
  found->second.reply = {received.packet.wParam, std::move(received.record)};
  found->second.done = true;
  changed_.notify_all();
}

// A second peer beside a living one is turned away.
void SocketPort::AcceptNewPeer() {
  Descriptor accepted = AcceptPeer(listener_);
  if (!accepted) SleepMilliseconds(kRetryMilliseconds);
  const Lock lock(mutex_);
  if (accepted && !peer_ && !closed_) {
    peer_ = std::move(accepted);
    ++connection_;
    changed_.notify_all();
  }
}

void SocketPort::FailWaits() {
  for (auto& [serial, wait] : waits_) wait.done = true;
  changed_.notify_all();
}

void SocketPort::Disconnect() {
  const Lock lock(mutex_);
  peer_.Reset();
  outgoing_.clear();
  FailWaits();
}

void SocketPort::WakeReader() {
  if (wake_) eventfd_write(wake_.get(), 1);
}

// With the lock held. False when the message is lost: no peer, or too much is waiting for it
// already.
bool SocketPort::Transmit(const Packet& packet, SharedMemory record, bool mayExceedQueue) {
  if (!peer_ || closed_) return false;
  if (outgoing_.empty()) {
    const Transfer sent = SendPacket(peer_, packet, record);
    if (sent != Transfer::kWouldBlock) return sent == Transfer::kDone;
  }
  if (outgoing_.size() >= kMostPending && !mayExceedQueue) return false;
  outgoing_.push_back({packet, std::move(record), connection_});
  WakeReader();
  return true;
}

// With the lock held. False when the socket took nothing.
bool SocketPort::Flush() {
  bool progress = false;
  while (!outgoing_.empty() && peer_) {
    const Message& next = outgoing_.front();
    const Transfer sent = SendPacket(peer_, next.packet, next.record);
    if (sent == Transfer::kWouldBlock) break;
    // No answer comes to what the system refuses.
    const auto wait = waits_.find(next.packet.serial);
    if (sent != Transfer::kDone && next.packet.kind == kPacketSend && wait != waits_.end()) {
      wait->second.done = true;
      changed_.notify_all();
    }
    outgoing_.pop_front();
    progress = true;
  }
  return progress;
}

// With the lock held, which is given up meanwhile. Sends overtake posts here, as they do on
// Windows.
bool SocketPort::HandleNextSend(Lock& lock) {
  const auto found = std::find_if(incoming_.begin(), incoming_.end(), [](const Message& message) {
    return message.packet.kind == kPacketSend;
  });
  if (found == incoming_.end()) return false;
  Message message = std::move(*found);
  incoming_.erase(found);
  Handle(lock, std::move(message));
  return true;
}

void SocketPort::Handle(Lock& lock, Message message) {
  const Packet packet = message.packet;
  const std::uint64_t connection = message.connection;
  lock.unlock();
  MessageReply reply =
      handler_ ? handler_(packet.number, std::move(message.record)) : MessageReply();
  lock.lock();
  if (packet.kind != kPacketSend || connection != connection_) return;
  const std::uint64_t result = reply.record ? 1 : reply.value;
  Transmit(
      {.kind = kPacketReply, .number = packet.number, .wParam = result, .serial = packet.serial},
      std::move(reply.record), true);
}

}  // namespace qv::platform
