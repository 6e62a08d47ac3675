#pragma once

#include "render/geometry/Mesh.h"

namespace qv {

// A mesh that is turned about the vertical through its pivot so that it faces the camera, before
// each frame.
class Billboard final : public Mesh {
 public:
  ~Billboard() override;

  // `frontAxis` is the horizontal direction in which the unturned billboard faces; normalised here
  // if it is not zero.
  void SetAnchor(const Vec3& pivot, const Vec2& frontAxis);

  void Reset() override;
  void Build(RTCDevice device, RTCScene scene, std::span<const RenderMaterial> materials,
             void* userData) override;
  void Update(RTCScene scene, const Vec3& viewDirection) override;
  bool IsStatic() const override { return false; }
  const PaddedVec3* Positions() const override { return turnedPositions_.data(); }
  const PaddedVec3* Normals() const override { return turnedNormals_.data(); }

 private:
  void Turn(const Vec3& towardsCamera);

  Vec3 pivot_{0, 0, 0};
  Vec3 frontAxis_{0, 0, 0};
  AlignedArray<PaddedVec3> turnedPositions_;
  AlignedArray<PaddedVec3> turnedNormals_;
};

}  // namespace qv
