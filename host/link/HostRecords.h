#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "core/RenderCamera.h"
#include "link/IQuorvane.h"
#include "link/IpcInterfaceApp.h"
#include "link/Records.h"
#include "platform/SharedMemory.h"

// The host's side of the records that travel with window messages. What comes from the viewer is
// looked at as far as memory goes, and nothing is given if it does not fit. Replies are empty if
// the system gives no memory.
namespace qv::host {

struct Property {
  std::string name;
  std::vector<std::byte> value;
};

std::optional<wire::CameraRecord> ParseCameraRecord(std::span<const std::byte> record);
std::optional<wire::DateRecord> ParseDateRecord(std::span<const std::byte> record);
std::optional<Property> ParsePropertyRecord(std::span<const std::byte> record);
// The name that is asked for.
std::optional<std::string> ParsePropertyRequest(std::span<const std::byte> record);

platform::SharedMemory MakePropertyReply(std::span<const std::byte> value);
platform::SharedMemory MakeCameraReply(const RenderCamera& camera);
platform::SharedMemory MakeLocationReply(const LocationAndTime& when);
// Names are cut at 4095 units.
platform::SharedMemory MakePagesReply(std::span<const HostPage> pages);

}  // namespace qv::host
