#include "host/link/HostRecords.h"

#include <algorithm>
#include <cstring>
#include <limits>
#include <memory>
#include <type_traits>

#include "link/RecordConversions.h"

namespace qv::host {

namespace {

using Bytes = std::span<const std::byte>;
using platform::SharedMemory;

template <typename T>
std::optional<T> Read(Bytes record) {
  static_assert(std::is_trivially_copyable_v<T>);
  if (record.size() < sizeof(T)) return std::nullopt;
  T value;
  std::memcpy(&value, record.data(), sizeof(T));
  return value;
}

// The bytes from an offset to the end; nothing if the offset is not within the record.
std::optional<Bytes> From(Bytes record, std::int32_t offset) {
  if (offset < 0 || static_cast<std::size_t>(offset) > record.size()) return std::nullopt;
  return record.subspan(static_cast<std::size_t>(offset));
}

std::optional<std::string> ReadName(Bytes record, std::int32_t offset) {
  const auto rest = From(record, offset);
  if (!rest) return std::nullopt;
  const auto end = std::find(rest->begin(), rest->end(), std::byte{0});
  if (end == rest->end()) return std::nullopt;
  return std::string(reinterpret_cast<const char*>(rest->data()),
                     static_cast<std::size_t>(end - rest->begin()));
}

template <typename T>
void Write(const SharedMemory& memory, std::size_t offset, const T& value) {
  std::memcpy(memory.bytes().data() + offset, &value, sizeof(T));
}

template <typename T>
SharedMemory ReplyOf(const T& content) {
  SharedMemory reply = SharedMemory::CreateUnnamed(sizeof(T));
  if (reply) Write(reply, 0, content);
  return reply;
}

void FillPage(const HostPage& page, wire::PageRecord& record) {
  const std::size_t length = std::min(page.name.size(), std::size(record.name) - 1);
  std::copy_n(page.name.data(), length, record.name);
  wire::FromVec3(page.eye, record.eye);
  wire::FromVec3(page.direction, record.direction);
  wire::FromVec3(Vec3(0, 0, 1), record.up);
  record.fieldOfView = page.fieldOfView;
  record.hasSunTime = page.hasSunTime ? 1 : 0;
  record.year = page.year;
  record.month = page.month;
  record.day = page.day;
  record.hour = page.hour;
  record.minute = page.minute;
  record.second = page.second;
  record.latitude = page.latitude;
  record.longitude = page.longitude;
  record.sunParam = page.sunParam;
}

}  // namespace

std::optional<wire::CameraRecord> ParseCameraRecord(Bytes record) {
  const auto camera = Read<wire::CameraRecord>(record);
  if (!camera || !wire::Finite(camera->eye) || !wire::Finite(camera->direction) ||
      !wire::Finite(camera->up) || !wire::Finite({&camera->fieldOfView, 1})) {
    return std::nullopt;
  }
  return camera;
}

std::optional<wire::DateRecord> ParseDateRecord(Bytes record) {
  return Read<wire::DateRecord>(record);
}

std::optional<Property> ParsePropertyRecord(Bytes record) {
  const auto header = Read<wire::PropertyRecord>(record);
  if (!header) return std::nullopt;
  auto name = ReadName(record, header->name);
  const auto value = From(record, header->value);
  if (!name || !value || header->valueLength < 0 ||
      static_cast<std::size_t>(header->valueLength) > value->size()) {
    return std::nullopt;
  }
  const Bytes bytes = value->first(static_cast<std::size_t>(header->valueLength));
  return Property{std::move(*name), {bytes.begin(), bytes.end()}};
}

std::optional<std::string> ParsePropertyRequest(Bytes record) {
  const auto header = Read<wire::PropertyRequestRecord>(record);
  return header ? ReadName(record, header->name) : std::nullopt;
}

SharedMemory MakePropertyReply(Bytes value) {
  constexpr auto kLongest = static_cast<std::size_t>(std::numeric_limits<std::int32_t>::max());
  if (value.size() > kLongest - sizeof(wire::PropertyReplyRecord)) return {};
  const wire::PropertyReplyRecord header{.value = sizeof(wire::PropertyReplyRecord),
                                         .valueLength = static_cast<std::int32_t>(value.size())};
  SharedMemory reply = SharedMemory::CreateUnnamed(sizeof(header) + value.size());
  if (!reply) return reply;
  Write(reply, 0, header);
  std::copy(value.begin(), value.end(), reply.bytes().begin() + sizeof(header));
  return reply;
}

SharedMemory MakeCameraReply(const RenderCamera& camera) {
  wire::CameraReplyRecord record;
  wire::FromVec3(camera.position, record.camera.eye);
  wire::FromVec3(camera.forward, record.camera.direction);
  wire::FromVec3(camera.up, record.camera.up);
  record.camera.fieldOfView = camera.fieldOfView;
  wire::FromVec3(camera.target, record.target);
  return ReplyOf(record);
}

SharedMemory MakeLocationReply(const LocationAndTime& when) {
  return ReplyOf(wire::FromLocation(when));
}

SharedMemory MakePagesReply(std::span<const HostPage> pages) {
  constexpr auto kMost =
      static_cast<std::size_t>(std::numeric_limits<std::int32_t>::max()) / sizeof(wire::PageRecord);
  pages = pages.first(std::min(pages.size(), kMost));
  const wire::PagesReplyRecord header{.pages = sizeof(wire::PagesReplyRecord),
                                      .pageCount = static_cast<std::int32_t>(pages.size())};
  SharedMemory reply =
      SharedMemory::CreateUnnamed(sizeof(header) + pages.size() * sizeof(wire::PageRecord));
  if (!reply) return reply;
  Write(reply, 0, header);
  const auto record = std::make_unique<wire::PageRecord>();
  for (std::size_t i = 0; i < pages.size(); ++i) {
    *record = wire::PageRecord{};
    FillPage(pages[i], *record);
    Write(reply, sizeof(header) + i * sizeof(wire::PageRecord), *record);
  }
  return reply;
}

}  // namespace qv::host
