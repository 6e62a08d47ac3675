#pragma once

#include "render/geometry/Mesh.h"

namespace qv {

// A mesh that never changes once the scene is complete.
class StaticMesh final : public Mesh {
 public:
  ~StaticMesh() override;
  bool IsStatic() const override { return true; }
};

}  // namespace qv
