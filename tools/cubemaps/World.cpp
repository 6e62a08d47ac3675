#include "World.h"

#include <cmath>
#include <cstring>
#include <utility>

namespace qv::cubemaps {

void Mesh::AddQuad(const Vec3& a, const Vec3& b, const Vec3& c, const Vec3& d) {
  const auto first = static_cast<std::uint32_t>(points.size());
  points.insert(points.end(), {a, b, c, d});
  triangles.push_back({first, first + 1, first + 2});
  triangles.push_back({first, first + 2, first + 3});
}

void Mesh::AddBox(const Vec3& low, const Vec3& high) {
  const auto corner = [&](bool x, bool y, bool z) {
    return Vec3(x ? high.x() : low.x(), y ? high.y() : low.y(), z ? high.z() : low.z());
  };
  AddQuad(corner(0, 0, 0), corner(1, 0, 0), corner(1, 0, 1), corner(0, 0, 1));
  AddQuad(corner(0, 1, 0), corner(1, 1, 0), corner(1, 1, 1), corner(0, 1, 1));
  AddQuad(corner(0, 0, 0), corner(0, 1, 0), corner(0, 1, 1), corner(0, 0, 1));
  AddQuad(corner(1, 0, 0), corner(1, 1, 0), corner(1, 1, 1), corner(1, 0, 1));
  AddQuad(corner(0, 0, 1), corner(1, 0, 1), corner(1, 1, 1), corner(0, 1, 1));
}

void Mesh::AddRod(const Vec3& a, const Vec3& b, float radiusA, float radiusB, int sides) {
  const Vec3 axis = (b - a).normalized();
  const Vec3 right = axis.unitOrthogonal();
  const Vec3 front = axis.cross(right);
  const auto at = [&](const Vec3& middle, float radius, int side) -> Vec3 {
    const float angle = 6.2831853f * static_cast<float>(side) / static_cast<float>(sides);
    return middle + (right * std::cos(angle) + front * std::sin(angle)) * radius;
  };
  for (int i = 0; i < sides; ++i) {
    AddQuad(at(a, radiusA, i), at(a, radiusA, i + 1), at(b, radiusB, i + 1), at(b, radiusB, i));
  }
}

World::World() : device_(rtcNewDevice("set_affinity=0")), scene_(rtcNewScene(device_)) {}

World::~World() {
  rtcReleaseScene(scene_);
  for (const Prototype& prototype : prototypes_) rtcReleaseScene(prototype.scene);
  rtcReleaseDevice(device_);
}

int World::AddPrototype(std::vector<Part> parts) {
  Prototype prototype;
  prototype.scene = rtcNewScene(device_);
  for (Part& part : parts) {
    RTCGeometry geometry = rtcNewGeometry(device_, RTC_GEOMETRY_TYPE_TRIANGLE);
    void* points = rtcSetNewGeometryBuffer(geometry, RTC_BUFFER_TYPE_VERTEX, 0, RTC_FORMAT_FLOAT3,
                                           sizeof(Vec3), part.mesh.points.size());
    std::memcpy(points, part.mesh.points.data(), part.mesh.points.size() * sizeof(Vec3));
    void* triangles =
        rtcSetNewGeometryBuffer(geometry, RTC_BUFFER_TYPE_INDEX, 0, RTC_FORMAT_UINT3,
                                3 * sizeof(std::uint32_t), part.mesh.triangles.size());
    std::memcpy(triangles, part.mesh.triangles.data(),
                part.mesh.triangles.size() * 3 * sizeof(std::uint32_t));
    rtcCommitGeometry(geometry);
    rtcAttachGeometry(prototype.scene, geometry);
    rtcReleaseGeometry(geometry);
    prototype.materials.push_back(std::move(part.material));
  }
  rtcCommitScene(prototype.scene);
  prototypes_.push_back(std::move(prototype));
  return static_cast<int>(prototypes_.size()) - 1;
}

void World::Place(int prototype, const Vec3& position, float turn, float size, float tint,
                  float stretch) {
  const Eigen::Affine3f placing = Eigen::Translation3f(position) *
                                  Eigen::AngleAxisf(turn, Vec3::UnitZ()) *
                                  Eigen::Scaling(Vec3(size, size, size * stretch));
  RTCGeometry instance = rtcNewGeometry(device_, RTC_GEOMETRY_TYPE_INSTANCE);
  rtcSetGeometryInstancedScene(instance, prototypes_[static_cast<std::size_t>(prototype)].scene);
  rtcSetGeometryTransform(instance, 0, RTC_FORMAT_FLOAT4X4_COLUMN_MAJOR, placing.matrix().data());
  rtcCommitGeometry(instance);
  rtcAttachGeometry(scene_, instance);
  rtcReleaseGeometry(instance);
  placed_.push_back({prototype, tint, placing, placing.inverse()});
}

void World::Commit() {
  rtcCommitScene(scene_);
}

bool World::Find(const Vec3& origin, const Vec3& direction, float pixel, Hit& hit,
                 Surface& surface) const {
  RTCIntersectContext context;
  rtcInitIntersectContext(&context);
  RTCRayHit ray{};
  ray.ray = {
      origin.x(), origin.y(), origin.z(), 1e-3f, direction.x(), direction.y(), direction.z(), 0,
      1e9f,       ~0u,        0,          0};
  ray.hit.geomID = RTC_INVALID_GEOMETRY_ID;
  ray.hit.instID[0] = RTC_INVALID_GEOMETRY_ID;
  rtcIntersect1(scene_, &context, &ray);
  if (ray.hit.geomID == RTC_INVALID_GEOMETRY_ID) return false;

  const Placed& placed = placed_[ray.hit.instID[0]];
  const Vec3 localNormal(ray.hit.Ng_x, ray.hit.Ng_y, ray.hit.Ng_z);
  hit.position = origin + direction * ray.ray.tfar;
  hit.local = placed.localFromWorld * hit.position;
  hit.normal = (placed.localFromWorld.linear().transpose() * localNormal).normalized();
  if (hit.normal.dot(direction) > 0) hit.normal = -hit.normal;
  hit.localNormal = localNormal.normalized();
  hit.distance = ray.ray.tfar;
  hit.footprint = pixel * ray.ray.tfar;
  hit.tint = placed.tint;
  surface = prototypes_[static_cast<std::size_t>(placed.prototype)].materials[ray.hit.geomID](hit);
  return true;
}

bool World::IsBlocked(const Vec3& origin, const Vec3& direction, float distance) const {
  RTCIntersectContext context;
  rtcInitIntersectContext(&context);
  RTCRay ray = {
      origin.x(), origin.y(), origin.z(), 1e-3f, direction.x(), direction.y(), direction.z(), 0,
      distance,   ~0u,        0,          0};
  rtcOccluded1(scene_, &context, &ray);
  return ray.tfar < 0;
}

}  // namespace qv::cubemaps
