#include "render/geometry/StaticMesh.h"

namespace qv {

StaticMesh::~StaticMesh() {
  StaticMesh::Reset();
}

}  // namespace qv
