#pragma once

#include <atomic>
#include <cstdint>
#include <future>
#include <memory>
#include <thread>

#include "host/link/HostLink.h"
#include "platform/MessagePort.h"

namespace qv::host {

// The thread that owns the host's window: it turns each message of the viewer into a call on the
// HostSide.
class MessageServer {
 public:
  // Null if there is no window to be had. Once `interrupted` is set the port is closed.
  static std::unique_ptr<MessageServer> Start(HostSide& side, const std::atomic<bool>& interrupted);
  ~MessageServer();

  platform::MessagePort& port() { return *port_; }
  // The viewer has told that its frame closes.
  bool viewerClosed() const { return viewerClosed_; }
  void ExpectViewer() { viewerClosed_ = false; }

 private:
  MessageServer(HostSide& side, const std::atomic<bool>& interrupted)
      : side_(side), interrupted_(interrupted) {}

  void Serve(std::promise<void> listening);
  platform::MessageReply Handle(std::uint32_t number, const platform::SharedMemory& record);
  platform::MessageReply Answer(std::uint32_t number, const platform::SharedMemory& record);
  bool Take(std::uint32_t number, const platform::SharedMemory& record);

  HostSide& side_;
  const std::atomic<bool>& interrupted_;
  std::atomic<bool> viewerClosed_{false};
  std::unique_ptr<platform::MessagePort> port_;
  std::thread thread_;
};

}  // namespace qv::host
