#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <span>
#include <string>
#include <vector>

#include "core/Log.h"
#include "fuzz/Require.h"
#include "host/link/HostRecords.h"
#include "link/CommandDecoder.h"
#include "link/IQuorvane.h"
#include "link/MessageRecords.h"

// Throws bytes at everything that reads records. The first byte of an input says who reads the
// rest:
//   0     the decoder of commands: records one after the other, each as its code (1 byte), the size
//   of the area behind
//         the code (2 bytes, little-endian) and that many bytes
//   1..4  the viewer's readers of replies: property (a byte for the name in front), camera,
//   location, pages 5..8  the host's readers: camera, date, property, property request
// What passes the readers is held against what they promise.
namespace qv {
namespace {

void RequireFinite(std::span<const float> numbers) {
  for (const float number : numbers) Require(std::isfinite(number), "numbers are finite");
}

void RequireFinite(const Vec3& vector) {
  RequireFinite(std::span(vector.data(), 3));
}

// What IQuorvane promises to its implementers.
class StrictFrame final : public IQuorvane {
 public:
  void SceneComplete() override {}
  void SetCamera(const Vec3& eye, const Vec3& direction, const Vec3& up, float fieldOfView,
                 const Vec3& target, bool) override {
    for (const Vec3& vector : {eye, direction, up, target}) RequireFinite(vector);
    RequireFinite(std::span(&fieldOfView, 1));
  }
  std::int32_t AddMaterial(const MaterialParameters& p) override {
    for (const Vec3& color : {p.ambientColor, p.diffuseColor, p.specularColor})
      RequireFinite(color);
    const float factors[] = {p.diffuseFactor,   p.specularExponent, p.reflectance, p.glossy,
                             p.refractiveIndex, p.shadingFlag,      p.opacity,     p.bumpFactor};
    RequireFinite(factors);
    Require(p.texturePath.size() < 260, "texture names are short");
    Require(p.hasTexture || p.texturePath.empty(), "only textures have names");
    return materials_++;
  }
  void AddPointLight(const Vec3& color, const Vec3& position) override {
    for (const Vec3& vector : {color, position}) RequireFinite(vector);
  }
  void AddSpotLight(const Vec3& color, const Vec3& position, const Vec3& direction,
                    float innerAngle, float outerAngle) override {
    for (const Vec3& vector : {color, position, direction}) RequireFinite(vector);
    const float angles[] = {innerAngle, outerAngle};
    RequireFinite(angles);
  }
  void AddDirectionalLight(const Vec3& color, const Vec3& direction) override {
    for (const Vec3& vector : {color, direction}) RequireFinite(vector);
  }
  void AddLEMLight(const Vec3& emission, std::span<const float> vertices) override {
    RequireFinite(emission);
    RequireFinite(vertices);
    Require(vertices.size() % 9 == 0, "triangles are whole");
  }
  void AddMeshData(std::span<const MeshVertex> vertices,
                   std::span<const MeshTriangle> triangles) override {
    Require(mesh_ != Mesh::kNone, "a mesh is begun before data comes");
    for (const MeshVertex& v : vertices) {
      RequireFinite(v.position);
      RequireFinite(v.normal);
      RequireFinite(v.frontUv);
      RequireFinite(v.backUv);
    }
    for (const MeshTriangle& triangle : triangles) {
      for (const std::int32_t v : triangle.vertex) {
        Require(v >= 0 && static_cast<std::size_t>(v) < vertices.size(), "vertices are there");
      }
    }
  }
  void SetModelDirectory(const std::string& text) override { RequireText(text); }
  void BeginBillboard() override { mesh_ = Mesh::kBillboard; }
  void EndBillboard(const Vec3& position, const Vec2& direction) override {
    Require(mesh_ == Mesh::kBillboard, "a billboard ends as one");
    RequireFinite(position);
    RequireFinite(std::span(direction.data(), 2));
    mesh_ = Mesh::kNone;
  }
  void BeginStaticMesh() override { mesh_ = Mesh::kStatic; }
  void EndMesh() override { mesh_ = Mesh::kNone; }
  void SetLocationAndTime(const LocationAndTime& when) override {
    const float place[] = {when.sunRotation, when.latitude, when.longitude};
    RequireFinite(place);
  }
  void SetStatusMessage(const std::string& text) override { RequireText(text); }
  void SetProgress(float value) override { RequireFinite(std::span(&value, 1)); }
  bool IsCameraLinked() override { return materials_ % 2 == 0; }

 private:
  enum class Mesh { kNone, kStatic, kBillboard };

  static void RequireText(const std::string& text) {
    Require(text.find('\0') == std::string::npos, "texts end at their terminator");
  }

  Mesh mesh_ = Mesh::kNone;
  std::int32_t materials_ = 0;
};

using Bytes = std::span<const std::byte>;

Bytes Take(Bytes& input, std::size_t size) {
  const Bytes taken = input.first(std::min(size, input.size()));
  input = input.subspan(taken.size());
  return taken;
}

std::size_t TakeByte(Bytes& input) {
  const Bytes byte = Take(input, 1);
  return byte.empty() ? 0 : std::to_integer<std::size_t>(byte[0]);
}

bool PlainCopy(void* to, const void* from, std::size_t size) {
  std::memcpy(to, from, size);
  return true;
}

void DecodeCommands(Bytes input) {
  StrictFrame frame;
  CommandDecoder decoder(frame, SharedAccess{PlainCopy, PlainCopy});
  while (!input.empty()) {
    const auto code = static_cast<std::int32_t>(TakeByte(input));
    const std::size_t low = TakeByte(input);
    const Bytes content = Take(input, low | TakeByte(input) << 8);
    // Memory of just that size, so that the address sanitizer sees every byte too far.
    std::vector<std::byte> area(sizeof(code) + content.size());
    std::memcpy(area.data(), &code, sizeof(code));
    std::copy(content.begin(), content.end(), area.begin() + sizeof(code));
    decoder.Decode(area);
    const bool answers = code == 3 || code == 17;
    Require(answers || std::memcmp(area.data(), &code, sizeof(code)) == 0,
            "only two commands have results");
  }
}

void ReadPropertyReply(Bytes input) {
  static const char* const kNames[] = {"presets", "background",       "brightness2",
                                       "gamma",   "eye_height",       "light_factors",
                                       "unknown", "lightMap_settings"};
  const std::string name = kNames[TakeByte(input) % std::size(kNames)];
  if (const auto value = ParsePropertyReply(name, input)) {
    Require(value->size() <= input.size(), "values lie within their reply");
  }
}

void ReadCameraReply(Bytes input) {
  if (const auto camera = ParseCameraReply(input)) {
    RequireFinite(camera->position);
    RequireFinite(camera->target);
  }
}

void ReadPages(Bytes input) {
  if (const auto pages = ParsePagesReply(input)) {
    Require(pages->size() * 8272 <= input.size(), "pages lie within their reply");
    for (const HostPage& page : *pages) {
      RequireFinite(page.eye);
      Require(page.name.size() < 4096, "names end");
    }
  }
}

void ReadProperty(Bytes input) {
  if (const auto property = host::ParsePropertyRecord(input)) {
    Require(property->value.size() <= input.size(), "values lie within their record");
  }
}

void Read(std::size_t reader, Bytes input) {
  switch (reader) {
    case 0:
      return DecodeCommands(input);
    case 1:
      return ReadPropertyReply(input);
    case 2:
      return ReadCameraReply(input);
    case 3:
      static_cast<void>(ParseLocationReply(input));
      return;
    case 4:
      return ReadPages(input);
    case 5:
      static_cast<void>(host::ParseCameraRecord(input));
      return;
    case 6:
      static_cast<void>(host::ParseDateRecord(input));
      return;
    case 7:
      return ReadProperty(input);
    case 8:
      static_cast<void>(host::ParsePropertyRequest(input));
      return;
    default:
      return;
  }
}

}  // namespace
}  // namespace qv

extern "C" int LLVMFuzzerInitialize(int*, char***) {
  qv::SetLogSink([](qv::LogLevel, const std::string&) {});
  return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size == 0) return 0;
  // A copy without room behind it.
  const auto* first = reinterpret_cast<const std::byte*>(data);
  const std::vector<std::byte> rest(first + 1, first + size);
  qv::Read(data[0], rest);
  return 0;
}
