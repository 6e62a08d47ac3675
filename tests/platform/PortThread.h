#pragma once

#include <chrono>
#include <future>
#include <memory>
#include <thread>
#include <utility>

#include "platform/Ids.h"
#include "platform/MessagePort.h"

namespace qv::platform {

// A listening port whose owner is a thread that does nothing but answer.
class PortThread {
 public:
  explicit PortThread(MessagePort::Handler handler) {
    std::promise<void> listening;
    std::future<void> listens = listening.get_future();
    thread_ = std::thread(
        [this, handler = std::move(handler), listening = std::move(listening)]() mutable {
          port_ = MessagePort::Listen(std::move(handler), {});
          MessagePort* const port = port_.get();
          port->SetPeerProcess(CurrentProcessId());
          listening.set_value();
          while (port->WaitAndDispatch(std::chrono::seconds(1))) {
          }
        });
    listens.wait();
  }
  ~PortThread() {
    port_->Close();
    thread_.join();
  }

  MessagePort& port() { return *port_; }

 private:
  std::unique_ptr<MessagePort> port_;
  std::thread thread_;
};

}  // namespace qv::platform
