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
#include "platform/SharedMemory.h"

// The records that travel with window messages. Those that are made here are empty if the system
// gives no memory. Those that come from the host are looked at as far as memory goes, whatever they
// say of their own sizes.
namespace qv {

// A block of `asked` bytes, or of `used` bytes where the whole pages of `asked` do not hold them.
platform::SharedMemory MakeRecord(std::size_t asked, std::size_t used);

platform::SharedMemory MakeCameraRecord(const Vec3& eye, const Vec3& direction, const Vec3& up,
                                        float fieldOfView);
platform::SharedMemory MakeDateRecord(int year, int month, int day, int hour, int minute,
                                      int second);
// `asked` is the size that is asked of the system: the name is not counted in it.
platform::SharedMemory MakePropertyRecord(const std::string& name, std::span<const std::byte> value,
                                          std::size_t asked);
platform::SharedMemory MakePropertyRequest(const std::string& name);

// The value of a property: as long as values of that name are, or as the reply says for "presets"
// and unknown names.
std::optional<std::vector<std::byte>> ParsePropertyReply(const std::string& name,
                                                         std::span<const std::byte> reply);
// Nothing if the reply is too short or holds a number that is not finite.
std::optional<RenderCamera> ParseCameraReply(std::span<const std::byte> reply);
std::optional<LocationAndTime> ParseLocationReply(std::span<const std::byte> reply);
// Pages whose name does not end or whose numbers are not finite are left out.
std::optional<std::vector<HostPage>> ParsePagesReply(std::span<const std::byte> reply);

}  // namespace qv
