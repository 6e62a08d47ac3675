#include "link/RecordingFrame.h"

#include <array>
#include <charconv>

namespace qv {

namespace {

template <typename T>
void Append(std::string& text, T number) {
  std::array<char, 64> digits;
  const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), number).ptr;
  if (!text.empty()) text += ' ';
  text.append(digits.data(), end);
}

std::array<float, 10> VertexNumbers(const MeshVertex& v) {
  return {v.position[0], v.position[1], v.position[2], v.normal[0], v.normal[1],
          v.normal[2],   v.frontUv[0],  v.frontUv[1],  v.backUv[0], v.backUv[1]};
}

}  // namespace

std::string NumbersText(std::span<const float> numbers) {
  std::string text;
  for (const float number : numbers) Append(text, number);
  return text;
}

std::string VectorText(const Vec3& vector) {
  return NumbersText(std::span(vector.data(), 3));
}

void RecordingFrame::SceneComplete() {
  Tell("SceneComplete");
}

void RecordingFrame::SetCamera(const Vec3& eye, const Vec3& direction, const Vec3& up,
                               float fieldOfView, const Vec3& target, bool showProgress) {
  Tell("SetCamera " + VectorText(eye) + ", " + VectorText(direction) + ", " + VectorText(up) +
       ", " + NumbersText(std::span(&fieldOfView, 1)) + ", " + VectorText(target) +
       (showProgress ? ", shown" : ", hidden"));
}

std::int32_t RecordingFrame::AddMaterial(const MaterialParameters& p) {
  const float factors[] = {p.diffuseFactor,   p.specularExponent, p.reflectance, p.glossy,
                           p.refractiveIndex, p.shadingFlag,      p.opacity,     p.bumpFactor};
  Tell("AddMaterial " + VectorText(p.ambientColor) + ", " + VectorText(p.diffuseColor) + ", " +
       VectorText(p.specularColor) + ", " + NumbersText(factors) + ", " +
       (p.hasTexture ? "texture " + p.texturePath : "plain"));
  return materials_++;
}

void RecordingFrame::AddPointLight(const Vec3& color, const Vec3& position) {
  Tell("AddPointLight " + VectorText(color) + ", " + VectorText(position));
}

void RecordingFrame::AddSpotLight(const Vec3& color, const Vec3& position, const Vec3& direction,
                                  float innerAngle, float outerAngle) {
  const float angles[] = {innerAngle, outerAngle};
  Tell("AddSpotLight " + VectorText(color) + ", " + VectorText(position) + ", " +
       VectorText(direction) + ", " + NumbersText(angles));
}

void RecordingFrame::AddDirectionalLight(const Vec3& color, const Vec3& direction) {
  Tell("AddDirectionalLight " + VectorText(color) + ", " + VectorText(direction));
}

void RecordingFrame::AddLEMLight(const Vec3& emission, std::span<const float> vertices) {
  Tell("AddLEMLight " + VectorText(emission) + ", " + NumbersText(vertices));
}

void RecordingFrame::AddMeshData(std::span<const MeshVertex> vertices,
                                 std::span<const MeshTriangle> triangles) {
  std::string line = "AddMeshData " + std::to_string(vertices.size()) + " vertices " +
                     std::to_string(triangles.size()) + " triangles";
  // Big ones by their ends.
  for (std::size_t i = 0; i < vertices.size(); ++i) {
    if (i >= 3 && i + 1 < vertices.size()) continue;
    line += ", " + NumbersText(VertexNumbers(vertices[i]));
  }
  for (std::size_t i = 0; i < triangles.size(); ++i) {
    if (i >= 3 && i + 1 < triangles.size()) continue;
    std::string numbers;
    for (const std::int32_t vertex : triangles[i].vertex) Append(numbers, vertex);
    Append(numbers, triangles[i].materialWord);
    line += ", " + numbers;
  }
  Tell(line);
}

void RecordingFrame::SetModelDirectory(const std::string& text) {
  Tell("SetModelDirectory " + text);
}

void RecordingFrame::BeginBillboard() {
  Tell("BeginBillboard");
}

void RecordingFrame::EndBillboard(const Vec3& position, const Vec2& direction) {
  Tell("EndBillboard " + VectorText(position) + ", " + NumbersText(std::span(direction.data(), 2)));
}

void RecordingFrame::BeginStaticMesh() {
  Tell("BeginStaticMesh");
}

void RecordingFrame::EndMesh() {
  Tell("EndMesh");
}

void RecordingFrame::SetLocationAndTime(const LocationAndTime& w) {
  const float place[] = {w.sunRotation, w.latitude, w.longitude};
  std::string time;
  for (const std::int32_t n : {w.year, w.month, w.day, w.hour, w.minute, w.second, w.timeZone}) {
    Append(time, n);
  }
  Tell("SetLocationAndTime " + NumbersText(place) + ", " + time);
}

void RecordingFrame::SetStatusMessage(const std::string& text) {
  Tell("SetStatusMessage " + text);
}

void RecordingFrame::SetProgress(float value) {
  Tell("SetProgress " + NumbersText(std::span(&value, 1)));
}

bool RecordingFrame::IsCameraLinked() {
  Tell("IsCameraLinked");
  const bool answer = cameraLinked_;
  cameraLinked_ = !cameraLinked_;
  return answer;
}

}  // namespace qv
