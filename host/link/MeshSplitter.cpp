#include "host/link/MeshSplitter.h"

#include <algorithm>
#include <cstdint>

#include "link/Records.h"

namespace qv::host {

namespace {

constexpr std::int32_t kNotInPart = -1;

class Splitter {
 public:
  explicit Splitter(std::span<const MeshVertex> vertices)
      : vertices_(vertices), numberInPart_(vertices.size(), kNotInPart) {}

  bool Valid(const MeshTriangle& triangle) const {
    return std::all_of(std::begin(triangle.vertex), std::end(triangle.vertex), [&](std::int32_t v) {
      return v >= 0 && static_cast<std::size_t>(v) < vertices_.size();
    });
  }

  // The record's size with one more triangle; vertices that it has twice count twice.
  std::size_t SizeWith(const MeshTriangle& triangle) const {
    const auto added = std::count_if(
        std::begin(triangle.vertex), std::end(triangle.vertex),
        [&](std::int32_t v) { return numberInPart_[static_cast<std::size_t>(v)] == kNotInPart; });
    return MeshRecordSize(part_.vertices.size() + static_cast<std::size_t>(added),
                          part_.triangles.size() + 1);
  }

  void Add(const MeshTriangle& triangle) {
    MeshTriangle local = triangle;
    for (std::int32_t& v : local.vertex) v = NumberInPart(static_cast<std::size_t>(v));
    part_.triangles.push_back(local);
  }

  const MeshPart& part() const { return part_; }

  void Clear() {
    for (const std::size_t v : used_) numberInPart_[v] = kNotInPart;
    used_.clear();
    part_.vertices.clear();
    part_.triangles.clear();
  }

 private:
  std::int32_t NumberInPart(std::size_t vertex) {
    std::int32_t& number = numberInPart_[vertex];
    if (number == kNotInPart) {
      number = static_cast<std::int32_t>(part_.vertices.size());
      part_.vertices.push_back(vertices_[vertex]);
      used_.push_back(vertex);
    }
    return number;
  }

  std::span<const MeshVertex> vertices_;
  std::vector<std::int32_t> numberInPart_;
  std::vector<std::size_t> used_;  // vertices of the part, by their numbers in the mesh
  MeshPart part_;
};

}  // namespace

std::size_t MeshRecordSize(std::size_t vertexCount, std::size_t triangleCount) {
  return sizeof(wire::AddMeshDataRecord) + vertexCount * sizeof(MeshVertex) +
         triangleCount * sizeof(MeshTriangle);
}

bool SplitMesh(std::span<const MeshVertex> vertices, std::span<const MeshTriangle> triangles,
               std::size_t capacity, const std::function<bool(const MeshPart&)>& take) {
  Splitter splitter(vertices);
  for (const MeshTriangle& triangle : triangles) {
    if (!splitter.Valid(triangle)) return false;
    if (!splitter.part().triangles.empty() && splitter.SizeWith(triangle) > capacity) {
      if (!take(splitter.part())) return false;
      splitter.Clear();
    }
    splitter.Add(triangle);
  }
  return splitter.part().triangles.empty() || take(splitter.part());
}

}  // namespace qv::host
