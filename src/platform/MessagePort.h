#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>

#include "platform/SharedMemory.h"

namespace qv::platform {

// What a peer answers to a sent message: a block of memory, or nothing.
struct MessageReply {
  // The number that travels where there is no block. On Windows none does: there a number would be
  // taken for a handle.
  std::uint64_t value = 0;
  SharedMemory record;
};

// One end of the window messages between host and viewer. On Windows messages go to a window of the
// other process and records travel as duplicated mapping handles in wParam; on Linux both
// directions share one SOCK_SEQPACKET connection and records travel as attached file descriptors.
//
// Incoming messages are handled on one thread, the owner's: when some are waiting, `notify` is
// called (on any thread), and the owner then calls Dispatch. While the owner itself waits in Send,
// incoming sends are handled inside that wait, as a Win32 thread does in SendMessage. Posts are
// delivered in order.
class MessagePort {
 public:
  // Handles one message on the owner's thread. The result of a post is dropped. Must not throw.
  using Handler = std::function<MessageReply(std::uint32_t number, SharedMemory record)>;
  using Notify = std::function<void()>;

  // How long a Send of the owner waits for a peer that is there and does not answer: an owner has
  // windows, which stand still meanwhile. Other threads wait as long as it takes.
  static constexpr std::chrono::seconds kOwnersPatience{10};

  virtual ~MessagePort() = default;

  // The host's end: a window of its own that receives. The calling thread becomes the owner. Null
  // on failure.
  static std::unique_ptr<MessagePort> Listen(Handler handler, Notify notify);

  // The viewer's end: connects to the host's window. The calling thread becomes the owner.
  // `processId` is the process that records are handed to, and on Windows that the window must
  // belong to. Never null: with a host that is not there every Send answers 0 at once. On Windows
  // the host's messages to the frame arrive in the frame's own window procedure, not here.
  static std::unique_ptr<MessagePort> Connect(
      std::uint32_t hostWindow, std::uint32_t processId, Handler handler, Notify notify,
      std::chrono::milliseconds ownersPatience = kOwnersPatience);

  // The number that a peer connects to: what goes on the viewer's command line as "windowhandle".
  virtual std::uint32_t window() const = 0;

  // Host's end: the process that records are handed to, and whose frame gets messages. Called once
  // it has started.
  virtual void SetPeerProcess(std::uint32_t processId) = 0;

  // False when no peer is connected, or it has gone.
  virtual bool connected() const = 0;

  // Both from any thread. The record is handed over and gone from here. Send waits for the answer
  // and gives {0, {}} if the peer is gone, Close was called meanwhile, or an owner's patience has
  // ended.
  virtual void Post(std::uint32_t number, SharedMemory record = {}) = 0;
  virtual MessageReply Send(std::uint32_t number, SharedMemory record = {}) = 0;

  // Handles what has arrived; owner's thread only. Does not block.
  virtual void Dispatch() = 0;

  // For an owner without an event loop of its own: waits until something arrives or the time is
  // over, and handles it. False once the port is closed. On Windows the messages come through the
  // owner's message queue and `notify` is not called, so an owner that listens there uses this, or
  // pumps its queue.
  virtual bool WaitAndDispatch(std::chrono::milliseconds timeout) = 0;

  // Ends all waits; nothing is received or sent any more. Any thread.
  virtual void Close() = 0;
};

}  // namespace qv::platform
