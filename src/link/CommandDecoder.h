#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "core/SceneRecords.h"
#include "link/AreaReader.h"
#include "link/IQuorvane.h"

namespace qv {

// Turns the command record at the start of the command area into one call on the frame.
//
// A record that does not fit changes nothing and is told in the log: parts outside of the area,
// missing terminators, negative numbers, vertex numbers beyond the vertices of their call, floats
// that are not finite, mesh data without a mesh. Material numbers are not looked at, since a
// material may follow its triangles. Unknown codes do nothing.
class CommandDecoder {
 public:
  explicit CommandDecoder(IQuorvane& frame, const SharedAccess& access = {})
      : frame_(frame), access_(access) {}

  // Carries out the record, and writes the results of AddMaterial (the first four bytes; -1 for a
  // refused record) and IsCameraLinked (the first byte) into the area. Does not throw. One thread
  // at a time.
  void Decode(std::span<std::byte> area);

  // The frame has dropped its meshes: data needs a new Begin... first. Any thread.
  void ForgetMesh() { mesh_ = Mesh::kNone; }

 private:
  enum class Mesh { kNone, kStatic, kBillboard };

  bool CarryOut(std::int32_t code, std::span<std::byte> area, AreaReader& reader);
  bool SetCamera(AreaReader& reader);
  bool AddMaterial(std::span<std::byte> area, AreaReader& reader);
  bool AddPointLight(AreaReader& reader);
  bool AddSpotLight(AreaReader& reader);
  bool AddDirectionalLight(AreaReader& reader);
  bool AddLEMLight(AreaReader& reader);
  bool AddMeshData(AreaReader& reader);
  bool SetModelDirectory(AreaReader& reader);
  bool EndBillboard(AreaReader& reader);
  bool SetLocationAndTime(AreaReader& reader);
  bool SetStatusMessage(AreaReader& reader);
  bool SetProgress(AreaReader& reader);
  bool IsCameraLinked(std::span<std::byte> area);

  bool Fail(std::string reason);
  bool AllFinite(const char* what, std::span<const float> numbers);
  bool VerticesFinite();
  bool TrianglesWithinVertices();
  bool WriteResult(std::span<std::byte> area, const void* result, std::size_t size);

  IQuorvane& frame_;
  const SharedAccess access_;
  std::atomic<Mesh> mesh_{Mesh::kNone};
  std::string failure_;  // of the record at hand, beside the reader's

  // Kept from call to call while a scene comes in, so that memory is asked for once.
  std::vector<MeshVertex> vertices_;
  std::vector<MeshTriangle> triangles_;
};

}  // namespace qv
