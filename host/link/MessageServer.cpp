#include "host/link/MessageServer.h"

#include <chrono>
#include <exception>
#include <string>
#include <utility>

#include "core/Log.h"
#include "host/link/HostRecords.h"
#include "link/HostMessages.h"
#include "link/RecordConversions.h"

namespace qv::host {

namespace {

constexpr std::chrono::milliseconds kInterruptInterval{50};

}  // namespace

std::unique_ptr<MessageServer> MessageServer::Start(HostSide& side,
                                                    const std::atomic<bool>& interrupted) {
  std::unique_ptr<MessageServer> server(new MessageServer(side, interrupted));
  std::promise<void> listening;
  std::future<void> listens = listening.get_future();
  server->thread_ = std::thread(&MessageServer::Serve, server.get(), std::move(listening));
  listens.wait();
  return server->port_ ? std::move(server) : nullptr;
}

MessageServer::~MessageServer() {
  if (port_) port_->Close();
  if (thread_.joinable()) thread_.join();
}

void MessageServer::Serve(std::promise<void> listening) {
  const auto handler = [this](std::uint32_t number, platform::SharedMemory record) {
    return Handle(number, record);
  };
  port_ = platform::MessagePort::Listen(handler, {});
  platform::MessagePort* const port = port_.get();
  listening.set_value();
  if (port == nullptr) return;
  while (!interrupted_ && port->WaitAndDispatch(kInterruptInterval)) {
  }
  port->Close();
}

platform::MessageReply MessageServer::Handle(std::uint32_t number,
                                             const platform::SharedMemory& record) {
  try {
    return Answer(number, record);
  } catch (const std::exception& error) {
    Log(LogLevel::kError, "Host: message " + std::to_string(number) + ": " + error.what());
    return {};
  }
}

platform::MessageReply MessageServer::Answer(std::uint32_t number,
                                             const platform::SharedMemory& record) {
  switch (number) {
    case WM_HOST_GET_CAMERA:
      return {0, MakeCameraReply(side_.Camera())};
    case WM_HOST_GET_LOCATION:
      return {0, MakeLocationReply(side_.Location())};
    case WM_HOST_GET_PAGES:
      return {0, MakePagesReply(side_.Pages())};
    case WM_HOST_GET_PROPERTY:
      if (const auto name = ParsePropertyRequest(record.bytes())) {
        const auto value = side_.Property(*name);
        return value ? platform::MessageReply{0, MakePropertyReply(*value)}
                     : platform::MessageReply();
      }
      break;
    default:
      if (Take(number, record)) return {};
      break;
  }
  Log(LogLevel::kWarning, "Host: message " + std::to_string(number) + " does not fit");
  return {};
}

// The messages without an answer. False if one does not fit.
bool MessageServer::Take(std::uint32_t number, const platform::SharedMemory& record) {
  switch (number) {
    case WM_HOST_RESEND_SCENE:
      side_.ResendScene();
      return true;
    case WM_HOST_VIEWER_CLOSED:
      viewerClosed_ = true;
      side_.ViewerClosed();
      return true;
    case WM_HOST_CAMERA_CHANGED:
      if (const auto camera = ParseCameraRecord(record.bytes())) {
        side_.CameraChanged(wire::ToVec3(camera->eye), wire::ToVec3(camera->direction),
                            wire::ToVec3(camera->up), camera->fieldOfView);
        return true;
      }
      return false;
    case WM_HOST_DATE_TIME_CHANGED:
      if (const auto date = ParseDateRecord(record.bytes())) {
        side_.DateTimeChanged(date->year, date->month, date->day, date->hour, date->minute,
                              date->second);
        return true;
      }
      return false;
    case WM_HOST_SET_PROPERTY:
      if (auto property = ParsePropertyRecord(record.bytes())) {
        side_.SetProperty(property->name, std::move(property->value));
        return true;
      }
      return false;
    default:
      return false;
  }
}

}  // namespace qv::host
