#include <cmath>
#include <cstring>
#include <limits>
#include <type_traits>

#include "core/Log.h"
#include "host/link/HostLinkImpl.h"
#include "host/link/MeshSplitter.h"
#include "link/RecordConversions.h"
#include "link/Records.h"

namespace qv::host {

namespace {

using wire::FromVec3;
using Lock = std::lock_guard<std::mutex>;

template <typename T>
std::span<const std::byte> BytesOf(const T& record) {
  static_assert(std::is_trivially_copyable_v<T>);
  return std::as_bytes(std::span(&record, 1));
}

std::span<const std::byte> BytesOf(const std::string& text) {
  return std::as_bytes(std::span(text.c_str(), text.size() + 1));
}

// What a text or an array behind a record has room for, counted as the offsets count.
constexpr std::size_t kMostBytes = std::numeric_limits<std::int32_t>::max();

std::int32_t ToInt32(float number) {
  constexpr float kLimit = 2147483520.0f;  // the largest float below 2^31
  return number >= -kLimit && number <= kLimit ? static_cast<std::int32_t>(std::lround(number)) : 0;
}

wire::AddMaterialRecord ToRecord(const MaterialParameters& material) {
  wire::AddMaterialRecord record{};
  record.code = wire::kAddMaterial;
  FromVec3(material.ambientColor, record.ambientColor);
  FromVec3(material.diffuseColor, record.diffuseColor);
  FromVec3(material.specularColor, record.specularColor);
  record.diffuseFactor = material.diffuseFactor;
  record.specularExponent = material.specularExponent;
  record.reflectance = material.reflectance;
  record.glossy = ToInt32(material.glossy);
  record.refractiveIndex = material.refractiveIndex;
  record.shadingFlag = ToInt32(material.shadingFlag);
  record.opacity = material.opacity;
  record.bumpFactor = material.bumpFactor;
  return record;
}

}  // namespace

template <typename T>
bool HostLinkImpl::CarryOutRecord(const T& record) {
  const Lock lock(commandMutex_);
  return CarryOut({BytesOf(record)});
}

bool HostLinkImpl::CarryOutCode(std::int32_t code) {
  return CarryOutRecord(code);
}

bool HostLinkImpl::CarryOutText(std::int32_t code, const std::string& text) {
  if (text.size() > kMostBytes - sizeof(wire::TextRecord) - 1) return false;
  const wire::TextRecord record{.code = code, .text = sizeof(wire::TextRecord)};
  const Lock lock(commandMutex_);
  return CarryOut({BytesOf(record), BytesOf(text)});
}

bool HostLinkImpl::SceneComplete() {
  return CarryOutCode(wire::kSceneComplete);
}

bool HostLinkImpl::SetCamera(const RenderCamera& camera, bool showProgress) {
  wire::SetCameraRecord record{};
  record.code = wire::kSetCamera;
  FromVec3(camera.position, record.eye);
  FromVec3(camera.forward, record.direction);
  FromVec3(camera.up, record.up);
  record.fieldOfView = camera.fieldOfView;
  FromVec3(camera.target, record.target);
  record.showProgress = showProgress ? 1 : 0;
  return CarryOutRecord(record);
}

std::optional<std::int32_t> HostLinkImpl::AddMaterial(const MaterialParameters& material) {
  wire::AddMaterialRecord record = ToRecord(material);
  std::string texture = material.hasTexture ? material.texturePath : std::string();
  if (texture.size() >= wire::kLongestTextureName) {
    Log(LogLevel::kWarning, "Host: texture left out, its path is too long: " + texture);
    texture.clear();
  }
  record.hasTexture = texture.empty() ? 0 : 1;
  record.textureName = sizeof(record);
  const Lock lock(commandMutex_);
  std::int32_t index = 0;
  if (!CarryOut({BytesOf(record), BytesOf(texture)}, sizeof(index))) return std::nullopt;
  std::memcpy(&index, channel_.area().data(), sizeof(index));
  return index;
}

bool HostLinkImpl::AddPointLight(const Vec3& color, const Vec3& position) {
  wire::AddPointLightRecord record{.code = wire::kAddPointLight, .color = {}, .position = {}};
  FromVec3(color, record.color);
  FromVec3(position, record.position);
  return CarryOutRecord(record);
}

bool HostLinkImpl::AddSpotLight(const Vec3& color, const Vec3& position, const Vec3& direction,
                                float innerAngle, float outerAngle) {
  wire::AddSpotLightRecord record{};
  record.code = wire::kAddSpotLight;
  FromVec3(color, record.color);
  FromVec3(position, record.position);
  FromVec3(direction, record.direction);
  record.innerAngle = innerAngle;
  record.outerAngle = outerAngle;
  return CarryOutRecord(record);
}

bool HostLinkImpl::AddDirectionalLight(const Vec3& color, const Vec3& direction) {
  wire::AddDirectionalLightRecord record{};
  record.code = wire::kAddDirectionalLight;
  FromVec3(color, record.color);
  FromVec3(direction, record.direction);
  return CarryOutRecord(record);
}

bool HostLinkImpl::AddLEMLight(const Vec3& emission, std::span<const float> vertices) {
  if (vertices.size_bytes() > kMostBytes - sizeof(wire::AddLEMLightRecord)) return false;
  wire::AddLEMLightRecord record{};
  record.code = wire::kAddLEMLight;
  FromVec3(emission, record.emission);
  record.triangleCount = static_cast<std::int32_t>(vertices.size() / wire::kFloatsOfLEMTriangle);
  record.vertices = sizeof(record);
  const Lock lock(commandMutex_);
  return CarryOut({BytesOf(record), std::as_bytes(vertices)});
}

bool HostLinkImpl::BeginStaticMesh() {
  return CarryOutCode(wire::kBeginStaticMesh);
}

bool HostLinkImpl::BeginBillboard() {
  return CarryOutCode(wire::kBeginBillboard);
}

bool HostLinkImpl::AddMeshData(std::span<const MeshVertex> vertices,
                               std::span<const MeshTriangle> triangles) {
  const Lock lock(commandMutex_);
  const std::size_t capacity =
      std::min(std::max(options_.maximumArea, channel_.area().size()), kMostBytes);
  if (MeshRecordSize(vertices.size(), triangles.size()) <= capacity) {
    return CarryOutMesh(vertices, triangles);
  }
  return SplitMesh(vertices, triangles, capacity, [this](const MeshPart& part) {
    return CarryOutMesh(part.vertices, part.triangles);
  });
}

bool HostLinkImpl::CarryOutMesh(std::span<const MeshVertex> vertices,
                                std::span<const MeshTriangle> triangles) {
  wire::AddMeshDataRecord record{};
  record.code = wire::kAddMeshData;
  record.vertexCount = static_cast<std::int32_t>(vertices.size());
  record.vertices = sizeof(record);
  record.triangleCount = static_cast<std::int32_t>(triangles.size());
  record.triangles = static_cast<std::int32_t>(sizeof(record) + vertices.size_bytes());
  return CarryOut({BytesOf(record), std::as_bytes(vertices), std::as_bytes(triangles)});
}

bool HostLinkImpl::EndBillboard(const Vec3& position, const Vec2& direction) {
  wire::EndBillboardRecord record{};
  record.code = wire::kEndBillboard;
  FromVec3(position, record.position);
  record.direction[0] = direction.x();
  record.direction[1] = direction.y();
  return CarryOutRecord(record);
}

bool HostLinkImpl::EndMesh() {
  return CarryOutCode(wire::kEndMesh);
}

bool HostLinkImpl::SetModelDirectory(const std::string& text) {
  return CarryOutText(wire::kSetModelDirectory, text);
}

bool HostLinkImpl::SetLocationAndTime(const LocationAndTime& when) {
  return CarryOutRecord(wire::SetLocationAndTimeRecord{.code = wire::kSetLocationAndTime,
                                                       .location = wire::FromLocation(when)});
}

bool HostLinkImpl::SetStatusMessage(const std::string& text) {
  return CarryOutText(wire::kSetStatusMessage, text);
}

bool HostLinkImpl::SetProgress(float value) {
  return CarryOutRecord(wire::SetProgressRecord{.code = wire::kSetProgress, .value = value});
}

std::optional<bool> HostLinkImpl::IsCameraLinked() {
  const std::int32_t code = wire::kIsCameraLinked;
  const Lock lock(commandMutex_);
  if (!CarryOut({BytesOf(code)}, 1)) return std::nullopt;
  return std::to_integer<int>(channel_.area()[0]) != 0;
}

}  // namespace qv::host
