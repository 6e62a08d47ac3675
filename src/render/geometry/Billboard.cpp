#include "render/geometry/Billboard.h"

#include <algorithm>

#include "core/Rotation.h"

namespace qv {
namespace {

AlignedArray<PaddedVec3> CopyOf(const AlignedArray<PaddedVec3>& from) {
  AlignedArray<PaddedVec3> copy(from.size());
  std::copy_n(from.data(), from.size(), copy.data());
  return copy;
}

}  // namespace

Billboard::~Billboard() {
  Billboard::Reset();
}

void Billboard::SetAnchor(const Vec3& pivot, const Vec2& frontAxis) {
  pivot_ = pivot;
  frontAxis_ = Vec3(frontAxis.x(), frontAxis.y(), 0);
  const float length = frontAxis_.norm();
  if (length > 0) frontAxis_ /= length;
}

void Billboard::Reset() {
  Mesh::Reset();
  turnedPositions_ = {};
  turnedNormals_ = {};
}

void Billboard::Build(RTCDevice device, RTCScene scene, std::span<const RenderMaterial> materials,
                      void* userData) {
  FillArrays(materials);
  turnedPositions_ = CopyOf(positions_);
  turnedNormals_ = CopyOf(normals_);
  AttachGeometry(device, scene, turnedPositions_.data(), userData);
}

void Billboard::Update(RTCScene scene, const Vec3& viewDirection) {
  constexpr float kSteepestHorizontal = 1e-10f;
  const Vec3 towardsCamera(-viewDirection.x(), -viewDirection.y(), 0);
  const float length = towardsCamera.norm();
  if (length >= kSteepestHorizontal) Turn(towardsCamera / length);

  RTCGeometry geometry = rtcGetGeometry(scene, geometryId_);
  rtcUpdateGeometryBuffer(geometry, RTC_BUFFER_TYPE_VERTEX, 0);
  rtcCommitGeometry(geometry);
}

// Always from the untouched arrays, so that no error accumulates.
void Billboard::Turn(const Vec3& towardsCamera) {
  const Eigen::Matrix3f turn = RotationBetween(frontAxis_, towardsCamera).toRotationMatrix();
  for (std::size_t i = 0; i < vertexCount_; ++i) {
    const PaddedVec3& p = positions_[i];
    const Vec3 turned = turn * (Vec3(p.x, p.y, p.z) - pivot_) + pivot_;
    turnedPositions_[i] = {turned.x(), turned.y(), turned.z(), 0};
    const PaddedVec3& n = normals_[i];
    const Vec3 normal = turn * Vec3(n.x, n.y, n.z);
    turnedNormals_[i] = {normal.x(), normal.y(), normal.z(), 0};
  }
}

}  // namespace qv
