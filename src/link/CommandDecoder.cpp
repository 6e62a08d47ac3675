#include "link/CommandDecoder.h"

#include <cstring>
#include <exception>
#include <limits>
#include <utility>

#include "core/Log.h"
#include "link/RecordConversions.h"
#include "link/Records.h"
#include "platform/NarrowText.h"

namespace qv {

namespace {

using wire::ToVec3;

constexpr std::size_t kNoLimit = std::numeric_limits<std::size_t>::max();

const char* NameOf(std::int32_t code) {
  static constexpr const char* kNames[] = {
      "SceneComplete",     "SetCamera",           "AddMaterial",      "AddPointLight",
      "AddSpotLight",      "AddDirectionalLight", "AddLEMLight",      "AddMeshData",
      "SetModelDirectory", "BeginBillboard",      "EndBillboard",     "BeginStaticMesh",
      "EndMesh",           "SetLocationAndTime",  "SetStatusMessage", "SetProgress",
      "IsCameraLinked"};
  const bool known = code >= wire::kSceneComplete && code <= wire::kIsCameraLinked;
  return known ? kNames[code - wire::kSceneComplete] : "an unknown command";
}

}  // namespace

void CommandDecoder::Decode(std::span<std::byte> area) {
  AreaReader reader(area, access_);
  std::int32_t code = 0;
  failure_.clear();
  bool carriedOut = false;
  try {
    carriedOut = reader.ReadRecord(code) && CarryOut(code, area, reader);
  } catch (const std::exception& error) {
    failure_ = error.what();
  } catch (...) {
    failure_ = "unknown exception";
  }
  if (carriedOut) return;
  Log(LogLevel::kWarning, std::string("Link: ") + NameOf(code) + " was refused: " +
                              (reader.error().empty() ? failure_ : reader.error()));
  if (code == wire::kAddMaterial) WriteResult(area, &wire::kNoMaterial, sizeof(wire::kNoMaterial));
}

bool CommandDecoder::CarryOut(std::int32_t code, std::span<std::byte> area, AreaReader& reader) {
  switch (code) {
    case wire::kSceneComplete:
      vertices_ = {};
      triangles_ = {};
      frame_.SceneComplete();
      return true;
    case wire::kSetCamera:
      return SetCamera(reader);
    case wire::kAddMaterial:
      return AddMaterial(area, reader);
    case wire::kAddPointLight:
      return AddPointLight(reader);
    case wire::kAddSpotLight:
      return AddSpotLight(reader);
    case wire::kAddDirectionalLight:
      return AddDirectionalLight(reader);
    case wire::kAddLEMLight:
      return AddLEMLight(reader);
    case wire::kAddMeshData:
      return AddMeshData(reader);
    case wire::kSetModelDirectory:
      return SetModelDirectory(reader);
    case wire::kBeginBillboard:
      frame_.BeginBillboard();
      mesh_ = Mesh::kBillboard;
      return true;
    case wire::kEndBillboard:
      return EndBillboard(reader);
    case wire::kBeginStaticMesh:
      frame_.BeginStaticMesh();
      mesh_ = Mesh::kStatic;
      return true;
    case wire::kEndMesh:
      frame_.EndMesh();
      mesh_ = Mesh::kNone;
      return true;
    case wire::kSetLocationAndTime:
      return SetLocationAndTime(reader);
    case wire::kSetStatusMessage:
      return SetStatusMessage(reader);
    case wire::kSetProgress:
      return SetProgress(reader);
    case wire::kIsCameraLinked:
      return IsCameraLinked(area);
    default:
      return Fail("code " + std::to_string(code));
  }
}

bool CommandDecoder::SetCamera(AreaReader& reader) {
  wire::SetCameraRecord record;
  if (!reader.ReadRecord(record) || !AllFinite("eye", record.eye) ||
      !AllFinite("direction", record.direction) || !AllFinite("up", record.up) ||
      !AllFinite("field of view", {&record.fieldOfView, 1}) ||
      !AllFinite("target", record.target)) {
    return false;
  }
  frame_.SetCamera(ToVec3(record.eye), ToVec3(record.direction), ToVec3(record.up),
                   record.fieldOfView, ToVec3(record.target), record.showProgress != 0);
  return true;
}

bool CommandDecoder::AddMaterial(std::span<std::byte> area, AreaReader& reader) {
  wire::AddMaterialRecord record;
  if (!reader.ReadRecord(record)) return false;
  const float factors[] = {record.diffuseFactor,   record.specularExponent, record.reflectance,
                           record.refractiveIndex, record.opacity,          record.bumpFactor};
  if (!AllFinite("ambient colour", record.ambientColor) ||
      !AllFinite("diffuse colour", record.diffuseColor) ||
      !AllFinite("specular colour", record.specularColor) || !AllFinite("factors", factors)) {
    return false;
  }
  MaterialParameters parameters;
  parameters.hasTexture = record.hasTexture != 0;
  if (parameters.hasTexture &&
      !reader.ReadText("the texture's name", record.textureName, wire::kLongestTextureName,
                       parameters.texturePath)) {
    return false;
  }
  parameters.texturePath = platform::FileNameFromNarrow(parameters.texturePath);
  parameters.ambientColor = ToVec3(record.ambientColor);
  parameters.diffuseColor = ToVec3(record.diffuseColor);
  parameters.specularColor = ToVec3(record.specularColor);
  parameters.diffuseFactor = record.diffuseFactor;
  parameters.specularExponent = record.specularExponent;
  parameters.reflectance = record.reflectance;
  parameters.glossy = static_cast<float>(record.glossy);
  parameters.refractiveIndex = record.refractiveIndex;
  parameters.shadingFlag = static_cast<float>(record.shadingFlag);
  parameters.opacity = record.opacity;
  parameters.bumpFactor = record.bumpFactor;
  const std::int32_t index = frame_.AddMaterial(parameters);
  return WriteResult(area, &index, sizeof(index));
}

bool CommandDecoder::AddPointLight(AreaReader& reader) {
  wire::AddPointLightRecord record;
  if (!reader.ReadRecord(record) || !AllFinite("colour", record.color) ||
      !AllFinite("position", record.position)) {
    return false;
  }
  frame_.AddPointLight(ToVec3(record.color), ToVec3(record.position));
  return true;
}

bool CommandDecoder::AddSpotLight(AreaReader& reader) {
  wire::AddSpotLightRecord record;
  if (!reader.ReadRecord(record)) return false;
  const float angles[] = {record.innerAngle, record.outerAngle};
  if (!AllFinite("colour", record.color) || !AllFinite("position", record.position) ||
      !AllFinite("direction", record.direction) || !AllFinite("angles", angles)) {
    return false;
  }
  frame_.AddSpotLight(ToVec3(record.color), ToVec3(record.position), ToVec3(record.direction),
                      record.innerAngle, record.outerAngle);
  return true;
}

bool CommandDecoder::AddDirectionalLight(AreaReader& reader) {
  wire::AddDirectionalLightRecord record;
  if (!reader.ReadRecord(record) || !AllFinite("colour", record.color) ||
      !AllFinite("direction", record.direction)) {
    return false;
  }
  frame_.AddDirectionalLight(ToVec3(record.color), ToVec3(record.direction));
  return true;
}

bool CommandDecoder::AddLEMLight(AreaReader& reader) {
  wire::AddLEMLightRecord record;
  std::vector<float> vertices;
  if (!reader.ReadRecord(record) || !AllFinite("emission", record.emission) ||
      !reader.ReadArray("triangles", record.vertices, record.triangleCount,
                        wire::kFloatsOfLEMTriangle, vertices) ||
      !AllFinite("vertices", vertices)) {
    return false;
  }
  frame_.AddLEMLight(ToVec3(record.emission), vertices);
  return true;
}

bool CommandDecoder::AddMeshData(AreaReader& reader) {
  if (mesh_ == Mesh::kNone) return Fail("no mesh was begun");
  wire::AddMeshDataRecord record;
  if (!reader.ReadRecord(record) ||
      !reader.ReadArray("vertices", record.vertices, record.vertexCount, 1, vertices_) ||
      !reader.ReadArray("triangles", record.triangles, record.triangleCount, 1, triangles_) ||
      !VerticesFinite() || !TrianglesWithinVertices()) {
    return false;
  }
  frame_.AddMeshData(vertices_, triangles_);
  return true;
}

bool CommandDecoder::SetModelDirectory(AreaReader& reader) {
  wire::TextRecord record;
  std::string text;
  if (!reader.ReadRecord(record) || !reader.ReadText("the text", record.text, kNoLimit, text)) {
    return false;
  }
  frame_.SetModelDirectory(platform::Utf8FromNarrow(text));
  return true;
}

bool CommandDecoder::EndBillboard(AreaReader& reader) {
  if (mesh_ != Mesh::kBillboard) return Fail("the current mesh is not a billboard");
  wire::EndBillboardRecord record;
  if (!reader.ReadRecord(record) || !AllFinite("position", record.position) ||
      !AllFinite("direction", record.direction)) {
    return false;
  }
  frame_.EndBillboard(ToVec3(record.position), {record.direction[0], record.direction[1]});
  mesh_ = Mesh::kNone;
  return true;
}

bool CommandDecoder::SetLocationAndTime(AreaReader& reader) {
  wire::SetLocationAndTimeRecord record;
  if (!reader.ReadRecord(record)) return false;
  const wire::LocationRecord& from = record.location;
  const float numbers[] = {from.sunRotation, from.latitude, from.longitude};
  if (!AllFinite("location", numbers)) return false;
  frame_.SetLocationAndTime(wire::ToLocation(from));
  return true;
}

bool CommandDecoder::SetStatusMessage(AreaReader& reader) {
  wire::TextRecord record;
  std::string text;
  if (!reader.ReadRecord(record) || !reader.ReadText("the text", record.text, kNoLimit, text)) {
    return false;
  }
  frame_.SetStatusMessage(platform::Utf8FromNarrow(text));
  return true;
}

bool CommandDecoder::SetProgress(AreaReader& reader) {
  wire::SetProgressRecord record;
  if (!reader.ReadRecord(record) || !AllFinite("value", {&record.value, 1})) return false;
  frame_.SetProgress(record.value);
  return true;
}

bool CommandDecoder::IsCameraLinked(std::span<std::byte> area) {
  const std::uint8_t linked = frame_.IsCameraLinked() ? 1 : 0;
  return WriteResult(area, &linked, sizeof(linked));
}

bool CommandDecoder::Fail(std::string reason) {
  failure_ = std::move(reason);
  return false;
}

bool CommandDecoder::AllFinite(const char* what, std::span<const float> numbers) {
  return wire::Finite(numbers) || Fail(std::string(what) + " with a number that is not finite");
}

bool CommandDecoder::VerticesFinite() {
  static_assert(sizeof(MeshVertex) == 10 * sizeof(float));
  for (const MeshVertex& vertex : vertices_) {
    if (!AllFinite("vertex position", vertex.position) ||
        !AllFinite("vertex normal", vertex.normal) ||
        !AllFinite("texture coordinates", vertex.frontUv) ||
        !AllFinite("texture coordinates", vertex.backUv)) {
      return false;
    }
  }
  return true;
}

bool CommandDecoder::TrianglesWithinVertices() {
  for (const MeshTriangle& triangle : triangles_) {
    for (const std::int32_t number : triangle.vertex) {
      if (number < 0 || static_cast<std::size_t>(number) >= vertices_.size()) {
        return Fail("a triangle names vertex " + std::to_string(number) + " of " +
                    std::to_string(vertices_.size()));
      }
    }
  }
  return true;
}

bool CommandDecoder::WriteResult(std::span<std::byte> area, const void* result, std::size_t size) {
  if (area.size() >= size && access_.write(area.data(), result, size)) return true;
  return Fail("the host has taken away memory of the command area");
}

}  // namespace qv
