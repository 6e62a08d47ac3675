#include "host/model/MeshReader.h"

#include <Eigen/Geometry>
#include <algorithm>
#include <bit>
#include <cmath>
#include <functional>
#include <span>
#include <unordered_map>

#include "host/model/CreaseNormals.h"
#include "host/model/PolygonCutter.h"

namespace qv::host {
namespace {

using VertexBits = std::array<std::uint32_t, 8>;

struct BitsHash {
  std::size_t operator()(const VertexBits& bits) const {
    std::uint64_t hash = 0;
    for (const std::uint32_t word : bits) {
      hash = (hash ^ word) * 3935559000370003845ULL;  // P. L'Ecuyer, 1999
      hash ^= hash >> 29;
    }
    return static_cast<std::size_t>(hash);
  }
};

// Gives each vertex that differs from all before it the next number.
class VertexJoiner {
 public:
  VertexJoiner(std::vector<LocalVertex>& vertices, std::size_t expected) : vertices_(vertices) {
    numberOf_.reserve(expected);
  }

  std::uint32_t NumberOf(const LocalVertex& vertex) {
    const auto [place, isNew] =
        numberOf_.try_emplace(BitsOf(vertex), static_cast<std::uint32_t>(vertices_.size()));
    if (isNew) vertices_.push_back(vertex);
    return place->second;
  }

 private:
  static VertexBits BitsOf(const LocalVertex& v) {
    const std::array<float, 8> numbers = {v.position.x(), v.position.y(), v.position.z(),
                                          v.normal.x(),   v.normal.y(),   v.normal.z(),
                                          v.uv.x(),       v.uv.y()};
    VertexBits bits;
    // Adding 0 makes one zero of the two.
    std::transform(numbers.begin(), numbers.end(), bits.begin(),
                   [](float number) { return std::bit_cast<std::uint32_t>(number + 0.0f); });
    return bits;
  }

  std::vector<LocalVertex>& vertices_;
  std::unordered_map<VertexBits, std::uint32_t, BitsHash> numberOf_;
};

Vec3 ToVec3(const aiVector3D& v) {
  return {v.x, v.y, v.z};
}

// Points that are not finite, which belong to no face any more, are put to one that is: they must
// not disturb the size of the mesh.
std::vector<Vec3> PositionsOf(const aiMesh& mesh) {
  std::vector<Vec3> positions(mesh.mNumVertices);
  std::transform(mesh.mVertices, mesh.mVertices + mesh.mNumVertices, positions.begin(), ToVec3);
  const auto isFinite = [](const Vec3& position) { return position.allFinite(); };
  const auto finite = std::find_if(positions.begin(), positions.end(), isFinite);
  const Vec3 place = finite == positions.end() ? Vec3(0, 0, 0) : *finite;
  std::replace_if(positions.begin(), positions.end(), std::not_fn(isFinite), place);
  return positions;
}

bool HasArea(const Vec3& a, const Vec3& b, const Vec3& c) {
  const Eigen::Vector3d ab = (b - a).cast<double>();
  const Eigen::Vector3d ac = (c - a).cast<double>();
  const double longest = std::max(ab.squaredNorm(), ac.squaredNorm());
  return ab.cross(ac).norm() > 1e-10 * longest;
}

// The vertex numbers of a face's triangles, three for each.
std::vector<std::uint32_t> TriangulatedFace(const aiFace& face, std::span<const Vec3> positions) {
  const std::span indices(face.mIndices, face.mNumIndices);
  if (indices.size() <= 3) return {indices.begin(), indices.end()};
  std::vector<Vec3> polygon;
  for (const unsigned index : indices) polygon.push_back(positions[index]);
  std::vector<std::uint32_t> corners;
  for (const auto& triangle : CutPolygon(polygon)) {
    for (const std::uint32_t corner : triangle) corners.push_back(indices[corner]);
  }
  return corners;
}

std::vector<std::uint32_t> CornersWithArea(const aiMesh& mesh, std::span<const Vec3> positions,
                                           LeftOut& leftOut) {
  std::vector<std::uint32_t> corners;
  corners.reserve(std::size_t{3} * mesh.mNumFaces);
  for (const aiFace& face : std::span(mesh.mFaces, mesh.mNumFaces)) {
    if (face.mNumIndices < 3) continue;
    const std::vector<std::uint32_t> cut = TriangulatedFace(face, positions);
    if (cut.empty()) ++leftOut.withoutArea;
    for (std::size_t i = 0; i < cut.size(); i += 3) {
      if (HasArea(positions[cut[i]], positions[cut[i + 1]], positions[cut[i + 2]])) {
        corners.insert(corners.end(), cut.begin() + static_cast<std::ptrdiff_t>(i),
                       cut.begin() + static_cast<std::ptrdiff_t>(i) + 3);
      } else {
        ++leftOut.withoutArea;
      }
    }
  }
  return corners;
}

// The file's normal of a vertex at unit length, or zero if it is none.
Vec3 FileNormal(const aiMesh& mesh, std::uint32_t vertex) {
  if (!mesh.HasNormals()) return Vec3::Zero();
  const Vec3 normal = ToVec3(mesh.mNormals[vertex]);
  const float length = normal.stableNorm();
  if (!std::isfinite(length) || length < 1e-6f) return Vec3::Zero();
  return normal / length;
}

std::vector<Vec3> NormalsOf(const aiMesh& mesh, std::span<const Vec3> positions,
                            std::span<const std::uint32_t> corners, const MeshWishes& wishes) {
  if (!wishes.fileNormals) return CreaseNormals(positions, corners);
  std::vector<Vec3> normals(corners.size());
  bool complete = true;
  for (std::size_t i = 0; i < corners.size(); ++i) {
    normals[i] = FileNormal(mesh, corners[i]);
    complete &= !normals[i].isZero(0);
  }
  if (complete) return normals;
  const std::vector<Vec3> made = CreaseNormals(positions, corners);
  for (std::size_t i = 0; i < corners.size(); ++i) {
    if (normals[i].isZero(0)) normals[i] = made[i];
  }
  return normals;
}

Vec2 UvOf(const aiMesh& mesh, const MeshWishes& wishes, std::uint32_t vertex) {
  if (!mesh.HasTextureCoords(wishes.uvChannel)) return Vec2::Zero();
  const aiVector3D& stored = mesh.mTextureCoords[wishes.uvChannel][vertex];
  const Vec2 uv = wishes.uvPlacement * Vec2(stored.x, stored.y);
  return uv.allFinite() ? uv : Vec2::Zero();
}

// The mean of the corners' colours, 5 bits a channel.
std::uint16_t ColorOf(const aiMesh& mesh, std::span<const std::uint32_t, 3> corners) {
  Vec3 sum = Vec3::Zero();
  for (const std::uint32_t corner : corners) {
    const aiColor4D& color = mesh.mColors[0][corner];
    sum += Vec3(color.r, color.g, color.b);
  }
  std::uint16_t bits = 0;
  for (const float channel : sum) {
    const float mean = std::isfinite(channel) ? std::clamp(channel / 3, 0.0f, 1.0f) : 1.0f;
    bits = static_cast<std::uint16_t>(bits << 5 | static_cast<unsigned>(std::lround(mean * 31)));
  }
  return bits;
}

constexpr std::uint16_t kWhite = 0x7fff;

}  // namespace

LeftOut& LeftOut::operator+=(const LeftOut& other) {
  notFinite += other.notFinite;
  outOfRange += other.outOfRange;
  withoutArea += other.withoutArea;
  return *this;
}

Vec3 ColorOfTriangle(std::uint16_t color) {
  return Vec3(static_cast<float>(color >> 10 & 31), static_cast<float>(color >> 5 & 31),
              static_cast<float>(color & 31)) /
         31;
}

LeftOut RemoveBrokenFaces(aiMesh& mesh) {
  LeftOut leftOut;
  const unsigned vertices = mesh.HasPositions() ? mesh.mNumVertices : 0;
  for (aiFace& face : std::span(mesh.mFaces, mesh.mNumFaces)) {
    const std::span indices(face.mIndices, face.mNumIndices);
    const auto exists = [&](unsigned index) { return index < vertices; };
    const auto isFinite = [&](unsigned index) { return ToVec3(mesh.mVertices[index]).allFinite(); };
    const bool inRange = std::all_of(indices.begin(), indices.end(), exists);
    if (inRange && std::all_of(indices.begin(), indices.end(), isFinite)) continue;
    ++(inRange ? leftOut.notFinite : leftOut.outOfRange);
    face.mNumIndices = 0;
  }
  return leftOut;
}

LocalMesh ReadMesh(const aiMesh& mesh, const MeshWishes& wishes, LeftOut& leftOut) {
  const std::vector<Vec3> positions = PositionsOf(mesh);
  const std::vector<std::uint32_t> corners = CornersWithArea(mesh, positions, leftOut);
  const std::vector<Vec3> normals = NormalsOf(mesh, positions, corners, wishes);

  LocalMesh local;
  local.triangles.reserve(corners.size() / 3);
  local.vertices.reserve(std::min<std::size_t>(mesh.mNumVertices, corners.size()));
  VertexJoiner joiner(local.vertices, mesh.mNumVertices);
  for (std::size_t i = 0; i < corners.size(); i += 3) {
    LocalTriangle triangle{{}, kWhite};
    for (std::size_t corner = 0; corner < 3; ++corner) {
      const std::uint32_t vertex = corners[i + corner];
      triangle.vertex[corner] =
          joiner.NumberOf({positions[vertex], normals[i + corner], UvOf(mesh, wishes, vertex)});
    }
    if (mesh.HasVertexColors(0)) {
      triangle.color = ColorOf(mesh, std::span(corners).subspan(i).first<3>());
      local.colored |= triangle.color != kWhite;
    }
    local.triangles.push_back(triangle);
  }
  return local;
}

}  // namespace qv::host
