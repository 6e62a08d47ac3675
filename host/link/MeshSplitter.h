#pragma once

#include <cstddef>
#include <functional>
#include <span>
#include <vector>

#include "core/SceneRecords.h"

namespace qv::host {

// A piece of a mesh with the vertices that its triangles use, numbered anew.
struct MeshPart {
  std::vector<MeshVertex> vertices;
  std::vector<MeshTriangle> triangles;
};

// The bytes that AddMeshData takes in the command area.
std::size_t MeshRecordSize(std::size_t vertexCount, std::size_t triangleCount);

// Hands out the triangles in their order, in parts whose records take at most `capacity` bytes (but
// one triangle at least). False if a triangle names a vertex that is not there, or as soon as
// `take` says so.
bool SplitMesh(std::span<const MeshVertex> vertices, std::span<const MeshTriangle> triangles,
               std::size_t capacity, const std::function<bool(const MeshPart&)>& take);

}  // namespace qv::host
