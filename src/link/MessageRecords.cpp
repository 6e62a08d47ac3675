#include "link/MessageRecords.h"

#include <algorithm>
#include <cstring>
#include <limits>
#include <type_traits>

#include "link/RecordConversions.h"
#include "link/Records.h"

namespace qv {

namespace {

using wire::Finite;
using wire::FromVec3;
using wire::ToVec3;
using Bytes = std::span<const std::byte>;

// The smallest page of the systems that we build for.
constexpr std::size_t kPage = 4096;

template <typename T>
platform::SharedMemory RecordOf(const T& content) {
  platform::SharedMemory record = MakeRecord(sizeof(T), sizeof(T));
  if (!record) return record;
  std::memcpy(record.bytes().data(), &content, sizeof(T));
  record.Flush();
  return record;
}

bool Holds(Bytes reply, std::int64_t offset, std::uint64_t size) {
  return offset >= 0 && static_cast<std::uint64_t>(offset) <= reply.size() &&
         size <= reply.size() - static_cast<std::uint64_t>(offset);
}

// Copied, so that what is looked at and what is used are the same, whatever the host does
// meanwhile.
template <typename T>
std::optional<T> Read(Bytes reply, std::size_t offset = 0) {
  static_assert(std::is_trivially_copyable_v<T>);
  if (!Holds(reply, static_cast<std::int64_t>(offset), sizeof(T))) return std::nullopt;
  T value;
  std::memcpy(&value, reply.data() + offset, sizeof(T));
  return value;
}

bool CameraFinite(const wire::CameraRecord& camera) {
  return Finite(camera.eye) && Finite(camera.direction) && Finite(camera.up) &&
         std::isfinite(camera.fieldOfView);
}

// Readers of the host's properties go by the name and not by the length in the reply. Of
// "light_factors" 20 bytes are written and 17 read.
std::optional<std::int32_t> LengthByName(const std::string& name) {
  if (name == "background" || name == "brightness2") return 8;
  if (name == "gamma" || name == "eye_height" || name == "lightMap_settings") return 4;
  if (name == "light_factors") return offsetof(wire::LightFactorsValue, unused);
  return std::nullopt;
}

std::optional<HostPage> ToPage(const wire::PageRecord& record) {
  const auto* end = std::find(std::begin(record.name), std::end(record.name), u'\0');
  const float numbers[] = {record.fieldOfView, record.latitude, record.longitude, record.sunParam};
  if (end == std::end(record.name) || !Finite(record.eye) || !Finite(record.direction) ||
      !Finite(numbers)) {
    return std::nullopt;
  }
  HostPage page;
  page.name.assign(record.name, end);
  page.eye = ToVec3(record.eye);
  page.direction = ToVec3(record.direction);
  page.fieldOfView = record.fieldOfView;
  page.hasSunTime = record.hasSunTime != 0;
  page.year = record.year;
  page.month = record.month;
  page.day = record.day;
  page.hour = record.hour;
  page.minute = record.minute;
  page.second = record.second;
  page.latitude = record.latitude;
  page.longitude = record.longitude;
  page.sunParam = record.sunParam;
  return page;
}

}  // namespace

platform::SharedMemory MakeRecord(std::size_t asked, std::size_t used) {
  const std::size_t pages = (asked + kPage - 1) / kPage * kPage;
  return platform::SharedMemory::CreateUnnamed(pages >= used ? asked : used);
}

platform::SharedMemory MakeCameraRecord(const Vec3& eye, const Vec3& direction, const Vec3& up,
                                        float fieldOfView) {
  wire::CameraRecord camera;
  FromVec3(eye, camera.eye);
  FromVec3(direction, camera.direction);
  FromVec3(up, camera.up);
  camera.fieldOfView = fieldOfView;
  return RecordOf(camera);
}

platform::SharedMemory MakeDateRecord(int year, int month, int day, int hour, int minute,
                                      int second) {
  return RecordOf(wire::DateRecord{year, month, day, hour, minute, second});
}

platform::SharedMemory MakePropertyRecord(const std::string& name, Bytes value, std::size_t asked) {
  const std::size_t valueOffset = sizeof(wire::PropertyRecord) + name.size() + 1;
  const std::size_t used = valueOffset + value.size();
  if (used > static_cast<std::size_t>(std::numeric_limits<std::int32_t>::max())) return {};
  platform::SharedMemory record = MakeRecord(asked, used);
  if (!record) return record;
  const wire::PropertyRecord header{.name = sizeof(wire::PropertyRecord),
                                    .value = static_cast<std::int32_t>(valueOffset),
                                    .valueLength = static_cast<std::int32_t>(value.size())};
  std::byte* bytes = record.bytes().data();
  std::memcpy(bytes, &header, sizeof(header));
  std::memcpy(bytes + sizeof(header), name.c_str(), name.size() + 1);
  if (!value.empty()) std::memcpy(bytes + valueOffset, value.data(), value.size());
  return record;
}

platform::SharedMemory MakePropertyRequest(const std::string& name) {
  const wire::PropertyRequestRecord header{.name = sizeof(wire::PropertyRequestRecord)};
  const std::size_t size = sizeof(header) + name.size() + 1;
  platform::SharedMemory record = MakeRecord(size, size);
  if (!record) return record;
  std::memcpy(record.bytes().data(), &header, sizeof(header));
  std::memcpy(record.bytes().data() + sizeof(header), name.c_str(), name.size() + 1);
  return record;
}

std::optional<std::vector<std::byte>> ParsePropertyReply(const std::string& name, Bytes reply) {
  const auto header = Read<wire::PropertyReplyRecord>(reply);
  if (!header) return std::nullopt;
  const std::int64_t length = LengthByName(name).value_or(header->valueLength);
  if (length < 0 || !Holds(reply, header->value, static_cast<std::uint64_t>(length))) {
    return std::nullopt;
  }
  const auto value =
      reply.subspan(static_cast<std::size_t>(header->value), static_cast<std::size_t>(length));
  return std::vector<std::byte>(value.begin(), value.end());
}

std::optional<RenderCamera> ParseCameraReply(Bytes reply) {
  const auto record = Read<wire::CameraReplyRecord>(reply);
  if (!record || !CameraFinite(record->camera) || !Finite(record->target)) return std::nullopt;
  RenderCamera camera;
  camera.position = ToVec3(record->camera.eye);
  camera.forward = ToVec3(record->camera.direction);
  camera.up = ToVec3(record->camera.up);
  camera.fieldOfView = record->camera.fieldOfView;
  camera.target = ToVec3(record->target);
  return camera;
}

std::optional<LocationAndTime> ParseLocationReply(Bytes reply) {
  const auto record = Read<wire::LocationRecord>(reply);
  if (!record) return std::nullopt;
  const float numbers[] = {record->sunRotation, record->latitude, record->longitude};
  if (!Finite(numbers)) return std::nullopt;
  return wire::ToLocation(*record);
}

std::optional<std::vector<HostPage>> ParsePagesReply(Bytes reply) {
  const auto header = Read<wire::PagesReplyRecord>(reply);
  if (!header || header->pageCount < 0) return std::nullopt;
  const auto count = static_cast<std::size_t>(header->pageCount);
  if (!Holds(reply, header->pages, count * sizeof(wire::PageRecord))) return std::nullopt;
  std::vector<HostPage> pages;
  for (std::size_t i = 0; i < count; ++i) {
    const auto record = Read<wire::PageRecord>(
        reply, static_cast<std::size_t>(header->pages) + i * sizeof(wire::PageRecord));
    if (auto page = ToPage(*record)) pages.push_back(std::move(*page));
  }
  return pages;
}

}  // namespace qv
