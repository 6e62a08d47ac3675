#include "ReferenceTracer.h"

#include <Eigen/Geometry>
#include <Eigen/LU>
#include <cmath>
#include <limits>

namespace qv::test {
namespace {

using V = ReferenceTracer::V;

constexpr double kInfinity = std::numeric_limits<double>::infinity();

V VectorOf(const float* v) {
  return {v[0], v[1], v[2]};
}

V Mirrored(const V& d, const V& n) {
  return d - 2 * d.dot(n) * n;
}

// The turn by the shortest way from +z to `to`, by Rodrigues' formula; half a turn about x for -z.
V TurnedFromUp(const V& v, const V& to) {
  const V axis = V::UnitZ().cross(to);
  const double sine = axis.norm();
  if (to.z() < 0 && sine < 1e-6) return {v.x(), -v.y(), -v.z()};
  if (sine == 0) return v;
  return Eigen::AngleAxisd(std::atan2(sine, to.z()), axis / sine) * v;
}

// Calls take(column, row, share) for the four texels around a place.
template <class Take>
void ForNeighbours(double x, double y, const Take& take) {
  const double fx = x - std::floor(x), fy = y - std::floor(y);
  for (int dy = 0; dy < 2; ++dy) {
    for (int dx = 0; dx < 2; ++dx) {
      take(static_cast<int>(x) + dx, static_cast<int>(y) + dy,
           (dx == 1 ? fx : 1 - fx) * (dy == 1 ? fy : 1 - fy));
    }
  }
}

bool AnyReaches(const V& light, double least) {
  return light.maxCoeff() >= least;
}

}  // namespace

ReferenceTracer::ReferenceTracer(const SceneBuilder& builder, const TracedScene& traced)
    : builder_(builder), traced_(traced) {
  for (std::size_t mesh = 0; mesh < builder.meshes.size(); ++mesh) {
    for (std::size_t i = 0; i < builder.meshes[mesh].triangles.size(); ++i) {
      AddTriangle(builder, mesh, i);
    }
  }
}

void ReferenceTracer::AddTriangle(const SceneBuilder& builder, std::size_t mesh,
                                  std::size_t number) {
  const SceneMesh& from = builder.meshes[mesh];
  const MeshTriangle& indices = from.triangles[number];
  Triangle t;
  t.mesh = mesh;
  t.number = number;
  t.material[0] = indices.materialWord & 0xffff;
  t.material[1] = indices.materialWord >> 16;
  for (int k = 0; k < 3; ++k) {
    const MeshVertex& vertex = from.vertices[static_cast<std::size_t>(indices.vertex[k])];
    t.p[k] = VectorOf(vertex.position);
    t.n[k] = VectorOf(vertex.normal).normalized();
    for (int i = 0; i < 2; ++i) {
      t.uv[0][k][i] = vertex.frontUv[i];
      t.uv[1][k][i] = vertex.backUv[i];
    }
  }
  for (int side = 0; side < 2; ++side) {
    const auto& uv = t.uv[side];
    const RenderMaterial& material = traced_.scene.Materials()[t.material[side]];
    const Eigen::Vector2d first(uv[1][0] - uv[0][0], uv[1][1] - uv[0][1]);
    const Eigen::Vector2d second(uv[2][0] - uv[0][0], uv[2][1] - uv[0][1]);
    t.texels[side] = 1;
    if (material.hasTexture) {
      const TextureMip& top = material.texture.mips[0];
      t.texels[side] =
          std::hypot(first.x() * top.width, first.y() * top.height) / (t.p[1] - t.p[0]).norm();
    }
    // Edges are sums of the steps of u and of v times how the place changes with them.
    Eigen::Matrix2d steps;
    steps << first.transpose(), second.transpose();
    Eigen::Matrix<double, 2, 3> edges;
    edges << (t.p[1] - t.p[0]).transpose(), (t.p[2] - t.p[0]).transpose();
    const bool flat = std::abs(steps.determinant()) < 1e-10;
    const Eigen::Matrix<double, 2, 3> change =
        flat ? Eigen::Matrix<double, 2, 3>::Zero().eval() : (steps.inverse() * edges).eval();
    t.tangent[side] = V(change.row(0)).normalized();
    t.bitangent[side] = V(change.row(1)).normalized();
  }
  for (int i = 0; i < 2; ++i) t.edges[i] = t.p[i + 1] - t.p[0];
  triangles_.push_back(t);
}

// Möller and Trumbore, "Fast, minimum storage ray/triangle intersection" (1997). In single numbers,
// since nearly all of the time goes here and a sanitizer looks at each use of a vector.
bool ReferenceTracer::Meet(const Triangle& triangle, const V& origin, const V& direction,
                           Hit& hit) {
  const double* const e1 = triangle.edges[0].data();
  const double* const e2 = triangle.edges[1].data();
  const double dx = direction.data()[0], dy = direction.data()[1], dz = direction.data()[2];
  const double px = dy * e2[2] - dz * e2[1];
  const double py = dz * e2[0] - dx * e2[2];
  const double pz = dx * e2[1] - dy * e2[0];
  const double determinant = e1[0] * px + e1[1] * py + e1[2] * pz;
  if (determinant == 0) return false;
  const double* const corner = triangle.p[0].data();
  const double* const start = origin.data();
  const double sx = start[0] - corner[0], sy = start[1] - corner[1], sz = start[2] - corner[2];
  const double u = (sx * px + sy * py + sz * pz) / determinant;
  if (u < 0 || u > 1) return false;
  const double qx = sy * e1[2] - sz * e1[1];
  const double qy = sz * e1[0] - sx * e1[2];
  const double qz = sx * e1[1] - sy * e1[0];
  const double v = (dx * qx + dy * qy + dz * qz) / determinant;
  if (v < 0 || u + v > 1) return false;
  const double t = (e2[0] * qx + e2[1] * qy + e2[2] * qz) / determinant;
  if (t <= 0) return false;
  hit = {&triangle, t, u, v};
  return true;
}

void ReferenceTracer::Trace(Path& path) const {
  path.hit = {};
  Hit hit;
  for (const Triangle& triangle : triangles_) {
    if (Meet(triangle, path.origin, path.direction, hit) &&
        (path.hit.triangle == nullptr || hit.t < path.hit.t)) {
      path.hit = hit;
    }
  }
  if (path.hit.triangle == nullptr) return;
  path.t = path.hit.t;
  path.origin += (path.t - 0.1) * path.direction;
}

// Textures begin at the top.
Eigen::Vector2d ReferenceTracer::PlaceOnTexture(const Hit& hit, int side) {
  const auto& uv = hit.triangle->uv[side];
  const double w = 1 - hit.u - hit.v;
  return {w * uv[0][0] + hit.u * uv[1][0] + hit.v * uv[2][0],
          1 - (w * uv[0][1] + hit.u * uv[1][1] + hit.v * uv[2][1])};
}

double ReferenceTracer::Light(const V& origin, const V& direction, double reach) {
  double left = 1;
  Hit hit;
  for (const Triangle& triangle : triangles_) {
    if (!Meet(triangle, origin, direction, hit) || hit.t >= reach) continue;
    const RenderMaterial& material = traced_.scene.Materials()[triangle.material[0]];
    double opacity = material.opacity;
    if (material.hasTexture && material.texture.hasAlpha) {
      Visit("shadow of an alpha texture");
      const double footprint = traced_.in.footprintScale * hit.t * triangle.texels[0];
      const Eigen::Vector2d place = PlaceOnTexture(hit, 0);
      opacity *= Blend(material.texture, footprint, place.x(), place.y()).c[3];
    }
    left *= 1 - opacity;
    if (left < 0.01) return 0;
    Visit("shadow that lets light through");
  }
  return left;
}

V ReferenceTracer::Sky(const V& direction) const {
  return traced_.sky.Sample(direction.cast<float>()).cast<double>();
}

V ReferenceTracer::Color(const Ray& ray, RenderPass pass, int lane) {
  pass_ = pass;
  lane_ = lane;
  draws_ = 0;
  Path path{
      ray.origin.cast<double>(), ray.direction.cast<double>().normalized(), kInfinity, 0, 1, 1, {}};
  Trace(path);
  return Shade(path, 0, false);
}

V ReferenceTracer::Shade(Path path, int depth, bool forceMirror) {
  V color = V::Zero();
  while (true) {
    if (path.hit.triangle == nullptr) {
      Visit(path.t > 0 ? "background" : "background of a faint ray");
      if (path.t > 0) color += path.throughput * Sky(path.direction);
      return color;
    }
    path.distance += path.t;
    path.direction.normalize();
    const Surface s = Fetch(path, forceMirror);
    color += Ambient(s, depth);
    if (pass_ != PassPreview) {
      color += Direct(s);
      if (traced_.in.switches.useLightmap && traced_.in.switches.lightmapHasLEM) {
        Visit("emitters in the lightmap");
      } else {
        color += Emitters(s);
      }
    }
    if (s.transmitKind > 0) {
      if (depth == 10) {
        Visit("depth 10 behind glass");
        return color;
      }
      color += Through(path, s, depth, forceMirror);
    }
    if (s.reflectKind < 0) return color;
    if (depth == 10 || Previewed()) {
      Visit(depth == 10 ? "depth 10 in a mirror" : "mirror in a preview");
      return color;
    }
    ++depth;
    path.direction = Mirrored(path.direction, s.normal);
    path.throughput *= s.material->reflectance;
    path.iorTo = s.iorTo;
    path.t = path.throughput >= 0.02 ? kInfinity : 0;
    if (s.reflectKind > 1 && path.t > 0) return color + Blurred(path, s, path.throughput);
    Visit("mirror");
    Trace(path);
  }
}

ReferenceTracer::Surface ReferenceTracer::Fetch(Path& path, bool forceMirror) {
  const Triangle& triangle = *path.hit.triangle;
  Surface s;
  s.position = path.origin;
  s.view = path.direction;
  s.throughput = path.throughput;
  const double u = path.hit.u, v = path.hit.v;
  s.normal = ((1 - u - v) * triangle.n[0] + u * triangle.n[1] + v * triangle.n[2]).normalized();
  s.incidence = s.view.dot(s.normal);
  s.side = s.incidence <= 0 ? 0 : 1;
  if (s.side == 1) {
    Visit("back side");
    s.incidence = -s.incidence;
    s.normal = -s.normal;
  }
  const MaterialParameters& m = builder_.materials[triangle.material[s.side]];
  s.material = &m;
  s.reflectKind = -1;
  if (m.reflectance > 0) {
    const bool blurred = m.glossy > 0 && !forceMirror;
    s.reflectKind = !blurred ? 1 : m.reflectance > 0.51f ? 7 : m.reflectance > 0.21f ? 4 : 2;
  }
  const bool enters = path.iorTo == 1;
  s.iorFrom = enters ? 1 : path.iorTo;
  s.iorTo = enters ? m.refractiveIndex : 1;
  s.diffuse = m.diffuseColor.cast<double>();
  s.alpha = 1;
  if (m.hasTexture) FetchTexture(path, s);
  s.baked = V::Zero();
  s.hasBaked = false;
  if (traced_.in.switches.useLightmap) FetchBaked(path, s);
  s.transmitKind = m.opacity < 0.99f ? 1 : s.alpha < 0.99 ? 2 : -1;
  s.alpha *= m.opacity;
  return s;
}

void ReferenceTracer::FetchTexture(const Path& path, Surface& s) {
  const Triangle& triangle = *path.hit.triangle;
  const RenderTexture& texture = traced_.scene.Materials()[triangle.material[s.side]].texture;
  const Eigen::Vector2d place = PlaceOnTexture(path.hit, s.side);
  const double u = place.x(), v = place.y();
  const double footprint = s.incidence == 0 ? 3.40282347e+38
                                            : traced_.in.footprintScale * path.distance *
                                                  triangle.texels[s.side] / -s.incidence;
  const Texel a = Blend(texture, footprint, u, v);
  s.diffuse = V(a.c[0], a.c[1], a.c[2]);
  s.alpha = a.c[3];
  const double factor = s.material->bumpFactor;
  if (factor < 0.001f) return;
  Visit(s.side == 0 ? "relief" : "relief on the back");
  const auto level = static_cast<std::size_t>(std::max(0.0, Log2(footprint) - 0.5));
  const TextureMip& mip = texture.mips[std::min(level, texture.mips.size() - 1)];
  const auto highest = [](const Texel& t) { return std::max({t.c[0], t.c[1], t.c[2]}); };
  const double du = highest(Blend(texture, footprint, u, v + 1.0 / mip.width)) - highest(a);
  const double dv = highest(Blend(texture, footprint, u, v + 1.0 / mip.height)) - highest(a);
  const double turn = s.side == 1 ? -1 : 1;
  V bent = s.normal + factor * du * triangle.tangent[s.side] +
           factor * dv * turn * triangle.bitangent[s.side];
  bent.normalize();
  s.normal = s.normal.dot(bent) < 0 ? V(-bent) : bent;
}

// On the page: x and y count texels from its first, and stop at the last.
void ReferenceTracer::FetchBaked(const Path& path, Surface& s) {
  const Triangle& triangle = *path.hit.triangle;
  if (triangle.mesh >= lightmaps.size() || lightmaps[triangle.mesh].pages.empty()) return;
  const MeshLightmap& map = lightmaps[triangle.mesh];
  s.hasBaked = true;
  const double weight[3] = {1 - path.hit.u - path.hit.v, path.hit.u, path.hit.v};
  Eigen::Vector2d place(0, 0);
  for (std::size_t k = 0; k < 3; ++k) {
    place += weight[k] * map.coords[triangle.number * 3 + k].cast<double>();
    s.baked += weight[k] * map.colors[triangle.number * 3 + k].cast<double>();
  }
  const std::int32_t number = map.pages[triangle.number];
  if (number < 0 || number >= static_cast<int>(traced_.scene.LightmapPages().size())) {
    Visit("no lightmap page");
    return;
  }
  Visit("lightmap page");
  const LightmapPage& page = traced_.scene.LightmapPages()[static_cast<std::size_t>(number)];
  ForNeighbours(place.x() * page.width, place.y() * page.height, [&](int x, int y, double share) {
    const int column = std::min(x, page.width - 1), row = std::min(y, page.height - 1);
    const float* bgra = &page.texels[static_cast<std::size_t>(row * page.width + column) * 4];
    s.baked += share * V(bgra[2], bgra[1], bgra[0]);
  });
}

V ReferenceTracer::AmbientColor(const Surface& s) {
  if (!traced_.in.factors.useSkyColorForAmbient) return {0.8784314, 0.9882353, 1};
  Visit("ambient light of the sky");
  return Sky(s.normal);
}

double ReferenceTracer::Openness(const Surface& s) {
  double sum = 0.5;
  for (const Vec3& d : traced_.in.directions->occlusion) {
    sum += Light(s.position, TurnedFromUp(d.cast<double>(), s.normal), 20) / 128;
  }
  return sum;
}

V ReferenceTracer::Ambient(const Surface& s, int depth) {
  const V light = s.throughput * s.alpha * s.diffuse;
  const double factor = traced_.in.factors.ambient;
  if (Final() && traced_.in.switches.useLightmap) {
    Visit(s.hasBaked ? "baked light" : "ambient light beside a lightmap");
    if (s.hasBaked) return factor * light.cwiseProduct(s.baked);
    return 0.5 * factor * light.cwiseProduct(AmbientColor(s));
  }
  if (Final() && traced_.in.switches.useAmbientOcclusion && depth < 2) {
    Visit("ambient occlusion");
    return 0.5 * factor * Openness(s) * light.cwiseProduct(AmbientColor(s));
  }
  Visit(Final() && traced_.in.switches.useAmbientOcclusion ? "too deep for occlusion"
                                                           : "plain ambient light");
  if (pass_ == PassPreview) return 0.8 * light;
  return 0.5 * light.cwiseProduct(AmbientColor(s));
}

V ReferenceTracer::Direct(const Surface& s) {
  V color = V::Zero();
  for (const RenderLight& light : traced_.scene.Lights()) {
    const bool isSun = light.type == LightType::kDirectional;
    color += isSun ? FromDirection(s, light) : FromLamp(s, light);
    if (pass_ == PassSunPreview) break;
  }
  return color;
}

// `d` is the vector of the light: away from point lights, towards directional ones.
V ReferenceTracer::Phong(const Surface& s, const RenderLight& light, const V& d, double cosine,
                         double spot, const V& color) {
  const MaterialParameters& m = *s.material;
  V sum = V::Zero();
  if (m.diffuseFactor > 0.02f) {
    sum += cosine * s.throughput * spot * m.diffuseFactor * s.alpha * color.cwiseProduct(s.diffuse);
  }
  if (!(m.specularExponent > 0.05f)) return sum;
  const double c = s.view.dot(Mirrored(d, s.normal).normalized());
  const bool directional = light.type == LightType::kDirectional;
  if (directional ? c <= 0 : c >= 0) return sum;
  Visit(directional ? "highlight of the sun" : "highlight of a lamp");
  const double w = (directional ? 1 : d.norm()) * std::pow(std::abs(c), m.specularExponent);
  return sum +
         w * s.throughput * spot * s.alpha * color.cwiseProduct(m.specularColor.cast<double>());
}

// A point light or a spot.
V ReferenceTracer::FromLamp(const Surface& s, const RenderLight& light) {
  const bool isSpot = light.type == LightType::kSpot;
  const V d = s.position - light.position.cast<double>();
  const double cosine = -s.normal.dot(d);
  if (isSpot ? cosine <= 0 : cosine < 0.0017453292) return V::Zero();
  const V color = light.color.cast<double>() * traced_.in.factors.point;
  const double squared = d.squaredNorm();
  const V atMost = cosine / squared / d.norm() * (isSpot ? 1 : s.throughput) * color;
  if (!AnyReaches(atMost, 0.0001)) {
    Visit("negligible lamp");
    return V::Zero();
  }
  const double spot =
      isSpot ? SpotFactor(light, light.direction.cast<double>().dot(d) / d.norm()) : 1;
  if (spot == 0) return V::Zero();
  const double left = Light(light.position.cast<double>(), d, 0.99999);
  Visit(left > 0 ? "lamp" : "lamp in shadow");
  return Phong(s, light, d, cosine, spot, left / squared * color);
}

double ReferenceTracer::SpotFactor(const RenderLight& light, double c) {
  const double inner = std::cos(light.innerAngle), outer = std::cos(light.outerAngle);
  if (c < outer) {
    Visit("outside of a spot");
    return 0;
  }
  if (c >= inner || inner - outer <= 0.01) return 1;
  Visit("penumbra of a spot");
  const double x = (c - outer) / (inner - outer);
  return (3 - 2 * x) * x * x;
}

V ReferenceTracer::FromDirection(const Surface& s, const RenderLight& light) {
  const V d = -light.direction.cast<double>();
  const double cosine = d.dot(s.normal);
  if (cosine <= 0) return V::Zero();
  const double left = Light(s.position, d, kInfinity);
  Visit(left > 0 ? "sun" : "sun in shadow");
  return Phong(s, light, d, cosine, 1, left * traced_.in.factors.sun * light.color.cast<double>());
}

V ReferenceTracer::Emitters(const Surface& s) {
  V sum = V::Zero();
  if (!traced_.in.switches.useLEM || !(s.material->diffuseFactor > 0.02f)) return sum;
  for (const RenderLEMLight& light : traced_.scene.LEMLights()) {
    const std::size_t m = std::min<std::size_t>(64, light.samplePositions.size());
    for (std::size_t i = 0; i < m; ++i) {
      const V color = light.power.cast<double>() / static_cast<double>(m) * traced_.in.factors.lem;
      const V from = light.samplePositions[i].cast<double>();
      const V d = s.position - from;
      const double cosine = -s.normal.dot(d);
      const double emission = d.dot(light.sampleNormals[i].cast<double>());
      if (cosine < 0.0017453292 || emission <= 0) continue;
      const double form = cosine * emission / (d.squaredNorm() * d.squaredNorm());
      if (!AnyReaches(form * s.throughput * color, 0.0001 / static_cast<double>(m))) continue;
      const double left = Light(from, d, 0.99999);
      Visit(left > 0 ? "emitter" : "emitter in shadow");
      sum += form * s.throughput * s.material->diffuseFactor * s.alpha * left *
             color.cwiseProduct(s.diffuse);
    }
    if (pass_ == PassSunPreview) break;
  }
  return sum;
}

// Snell's law, from the sine: the part along the surface is scaled by eta, the rest goes inwards.
V ReferenceTracer::Through(const Path& path, const Surface& s, int depth, bool forceMirror) {
  Path on{s.position + 0.2 * s.view,       s.view,  kInfinity, path.distance,
          (1 - s.alpha) * path.throughput, s.iorTo, {}};
  if (s.transmitKind == 1) {
    const double eta = s.iorFrom / s.iorTo;
    const V along = eta * (s.view - s.view.dot(s.normal) * s.normal);
    if (along.squaredNorm() > 0.99999) {
      Visit("total reflection");
      return V::Zero();
    }
    Visit(eta == 1 ? "glass that does not bend" : eta < 1 ? "into glass" : "out of glass");
    on.direction = (along - std::sqrt(1 - along.squaredNorm()) * s.normal).normalized();
  } else {
    Visit("through an alpha texture");
  }
  Trace(on);
  if (Previewed() && depth > 0) {
    Visit("depth 1 in a preview");
    return V::Zero();
  }
  return Shade(on, depth + 1, forceMirror);
}

V ReferenceTracer::Blurred(const Path& path, const Surface& s, double throughput) {
  V sum = V::Zero();
  const int rays = s.reflectKind - 1;
  Visit(rays == 1 ? "blurred, 1 ray" : rays == 3 ? "blurred, 3 rays" : "blurred, 6 rays");
  for (int round = 0; round < 6; ++round) {
    const std::size_t start = traced_.in.directions->GlossyStart(draws_++);
    if (round >= rays) break;
    const V sample =
        traced_.in.directions->glossy[start + static_cast<std::size_t>(lane_)].cast<double>();
    Path on{s.position,
            TurnedFromUp(sample, path.direction.normalized()).normalized(),
            kInfinity,
            path.distance,
            throughput / rays,
            1,
            {}};
    Trace(on);
    sum += Shade(on, 7, true);
  }
  return sum;
}

// A table of hundredths, read between its entries.
double ReferenceTracer::Log2(double v) {
  if (v >= 1022.9) return std::log2(1023.99);
  const auto entry = [](double i) { return i == 0 ? 0 : std::log2(0.01 * i); };
  const double i = std::floor(100 * v);
  return entry(i) + (100 * v - i) * (entry(i + 1) - entry(i));
}

ReferenceTracer::Texel ReferenceTracer::Bilinear(const TextureMip& mip, double s, double t) {
  const double x = (s - std::floor(s)) * 0.999999 * mip.width;
  const double y = (t - std::floor(t)) * 0.999999 * mip.height;
  Texel sum{};
  ForNeighbours(x, y, [&](int column, int row, double share) {
    const int offset = row % mip.height * mip.pitch + column % mip.width * 4;
    const std::uint8_t* bgra = &mip.pixels[static_cast<std::size_t>(offset)];
    for (int c = 0; c < 3; ++c) sum.c[c] += share / 255 * bgra[2 - c];
    sum.c[3] += share / 255 * bgra[3];
  });
  return sum;
}

ReferenceTracer::Texel ReferenceTracer::Blend(const RenderTexture& texture, double footprint,
                                              double s, double t) {
  const double lod = std::max(0.0, Log2(footprint) - 0.5);
  const auto level = static_cast<std::size_t>(lod);
  if (level + 1 >= texture.mips.size()) {
    Visit("last mip level");
    return Bilinear(texture.mips.back(), s, t);
  }
  Visit(level == 0 ? "top mip levels" : "between mip levels");
  const Texel fine = Bilinear(texture.mips[level], s, t);
  const Texel coarse = Bilinear(texture.mips[level + 1], s, t);
  const double f = lod - static_cast<double>(level);
  Texel blend;
  for (int c = 0; c < 4; ++c) blend.c[c] = (1 - f) * fine.c[c] + f * coarse.c[c];
  return blend;
}

}  // namespace qv::test
