#include <cmath>
#include <limits>

#include "render/material/LightmapPage.h"
#include "render/material/TextureSampling.h"
#include "render/shade/ShadePacket.h"

namespace qv {
namespace {

constexpr float kLeastDiffuse = 0.02f;
constexpr float kLeastExponent = 0.05f;
constexpr float kOpaque = 0.99f;
constexpr float kLeastBump = 0.001f;

// Which side of which triangle a lane has hit.
struct SurfaceSide {
  const Mesh* mesh;
  std::size_t triangle;
  int side;  // 0 front, 1 back
  const RenderMaterial* material;
};

// A hit from behind turns the normal, so that the incidence is never positive afterwards.
SurfaceSide FindSide(const RenderScene& scene, RayPacket& packet, int lane) {
  SurfaceSide s;
  s.mesh = scene.Meshes()[packet.geometry[lane]].get();
  s.triangle = static_cast<std::size_t>(packet.primitive[lane]);
  const std::uint32_t word = s.mesh->TriangleMaterials()[s.triangle];
  if (packet.incidence[lane] <= 0) {
    s.side = 0;
    s.material = &scene.Materials()[FrontMaterial(word)];
    return s;
  }
  packet.incidence[lane] = -packet.incidence[lane];
  for (auto& axis : packet.normal) axis[lane] = -axis[lane];
  s.side = 1;
  s.material = &scene.Materials()[static_cast<std::size_t>(BackMaterial(word))];
  return s;
}

void InterpolateTexCoords(const SurfaceSide& s, RayPacket& packet, int lane) {
  const std::uint32_t* corner = s.mesh->Indices() + s.triangle * 3;
  const UvPair* uvs = s.mesh->TextureCoords();
  const auto& uv0 = uvs[corner[0]].side[s.side];
  const auto& uv1 = uvs[corner[1]].side[s.side];
  const auto& uv2 = uvs[corner[2]].side[s.side];
  const float u = packet.hitU[lane];
  const float v = packet.hitV[lane];
  const float w = 1 - u - v;
  packet.texU[lane] = w * uv0[0] + u * uv1[0] + v * uv2[0];
  packet.texV[lane] = w * uv0[1] + u * uv1[1] + v * uv2[1];
}

// The baked light at the hit: what the corners hold and what the page holds. Read only where the
// mesh has a lightmap.
void FetchLightmap(const RenderScene& scene, const SurfaceSide& s, RayPacket& packet, int lane) {
  for (auto& channel : packet.lightmap) channel[lane] = 0;
  if (s.mesh->LightmapCoords() == nullptr) return;
  const UvCoord* uv = s.mesh->LightmapCoords() + s.triangle * 3;
  const PaddedVec3* color = s.mesh->LightmapColors() + s.triangle * 3;
  const float u = packet.hitU[lane];
  const float v = packet.hitV[lane];
  const float w = 1 - u - v;
  packet.lightmapU[lane] = w * uv[0].u + u * uv[1].u + v * uv[2].u;
  packet.lightmapV[lane] = w * uv[0].v + u * uv[1].v + v * uv[2].v;
  packet.lightmap[0][lane] = w * color[0].x + u * color[1].x + v * color[2].x;
  packet.lightmap[1][lane] = w * color[0].y + u * color[1].y + v * color[2].y;
  packet.lightmap[2][lane] = w * color[0].z + u * color[1].z + v * color[2].z;

  const std::int32_t number = s.mesh->LightmapPages()[s.triangle];
  packet.lightmapPage[lane] = number;
  const auto& pages = scene.LightmapPages();
  if (number < 0 || static_cast<std::size_t>(number) >= pages.size()) return;
  const LightmapPage& page = pages[static_cast<std::size_t>(number)];
  if (!page.IsWhole()) return;
  const LightmapColor texel = SampleLightmap(page, packet.lightmapU[lane], packet.lightmapV[lane]);
  for (int c = 0; c < 3; ++c) packet.lightmap[c][lane] += texel.c[c];
}

// A kind above 1 stands for that many rays and one.
std::int32_t ReflectKindOf(const RenderMaterial& material, bool forceMirror) {
  if (forceMirror || !(material.glossy > 0)) return 1;
  if (material.reflectance > 0.51f) return 7;
  return material.reflectance > 0.21f ? 4 : 2;
}

// Texels of the top mip level that a pixel covers at the hit.
float FootprintOf(const ShadeInputs& in, const SurfaceSide& s, const RayPacket& packet, int lane) {
  const float incidence = packet.incidence[lane];
  if (incidence == 0) return std::numeric_limits<float>::max();
  return in.footprintScale * packet.distance[lane] *
         s.mesh->TexelScales()[s.triangle].side[s.side] / -incidence;
}

// The texture read as a relief.
float HeightOf(const TexelColor& texel) {
  return std::fmax(texel.c[0], std::fmax(texel.c[1], texel.c[2]));
}

// Bends the normal by the relief of the texture. Both neighbours lie in the v direction, one texel
// of the width and one of the height away: that is how the relief is read.
void BendNormal(const SurfaceSide& s, const MipSelection& selection, const TexelColor& texel,
                RayPacket& packet, int lane) {
  const RenderTexture& texture = s.material->texture;
  const TextureMip& mip = texture.mips[selection.level];
  const float u = packet.texU[lane];
  const float v = 1 - packet.texV[lane];
  const float height = HeightOf(texel);
  const float alongU = HeightOf(SampleMips(texture, selection, u, v + mip.invWidth)) - height;
  const float alongV = HeightOf(SampleMips(texture, selection, u, v + mip.invHeight)) - height;

  const TangentFrame::Side& frame = s.mesh->TangentFrames()[s.triangle].side[s.side];
  const Eigen::Map<const Vec3> tangent(frame.tangent);
  Vec3 bitangent = Eigen::Map<const Vec3>(frame.bitangent);
  if (s.side == 1) bitangent = -bitangent;
  const Vec3 normal(packet.normal[0][lane], packet.normal[1][lane], packet.normal[2][lane]);
  const float factor = s.material->bumpFactor;
  Vec3 bent = normal + factor * alongU * tangent + factor * alongV * bitangent;
  const float squared = bent.squaredNorm();
  if (squared > 0) bent /= std::sqrt(squared);
  if (normal.dot(bent) < 0) bent = -bent;
  for (int axis = 0; axis < 3; ++axis) packet.normal[axis][lane] = bent[axis];
}

void FetchDiffuse(const ShadeInputs& in, const SurfaceSide& s, RayPacket& packet, int lane) {
  packet.alpha[lane] = 1;
  if (!s.material->hasTexture) {
    for (int c = 0; c < 3; ++c) packet.diffuse[c][lane] = s.material->diffuseColor[c];
    return;
  }
  InterpolateTexCoords(s, packet, lane);
  const RenderTexture& texture = s.material->texture;
  const MipSelection mip = SelectMip(texture, FootprintOf(in, s, packet, lane));
  const TexelColor texel = SampleMips(texture, mip, packet.texU[lane], 1 - packet.texV[lane]);
  for (int c = 0; c < 3; ++c) packet.diffuse[c][lane] = texel.c[c];
  packet.alpha[lane] = texel.c[3];
  if (!(s.material->bumpFactor < kLeastBump)) BendNormal(s, mip, texel, packet, lane);
}

void FetchFactors(const RenderMaterial& m, RayPacket& packet, int lane, bool forceMirror) {
  packet.diffuseFactor[lane] = m.diffuseFactor;
  if (m.diffuseFactor > kLeastDiffuse) packet.hasDiffuse[lane] = 1;
  packet.specularExponent[lane] = m.specularExponent;
  if (m.specularExponent > kLeastExponent) packet.hasSpecular[lane] = 1;
  packet.reflectance[lane] = m.reflectance;
  if (m.reflectance > 0) packet.reflectKind[lane] = ReflectKindOf(m, forceMirror);
  for (int c = 0; c < 3; ++c) packet.specular[c][lane] = m.specularColor[c];
}

// A ray outside of everything enters; one inside leaves.
void FetchIndices(const RenderMaterial& m, RayPacket& packet, int lane) {
  if (packet.iorTo[lane] == 1.0f) {
    packet.iorFrom[lane] = 1.0f;
    packet.iorTo[lane] = m.refractiveIndex;
  } else {
    packet.iorFrom[lane] = packet.iorTo[lane];
    packet.iorTo[lane] = 1.0f;
  }
}

void FetchOpacity(const RenderMaterial& m, RayPacket& packet, int lane) {
  if (m.opacity < kOpaque) {
    packet.transmitKind[lane] = 1;
  } else if (packet.alpha[lane] < kOpaque) {
    packet.transmitKind[lane] = 2;
  }
  packet.alpha[lane] *= m.opacity;
}

}  // namespace

void FetchMaterial(const ShadeInputs& in, RayPacket& packet, bool forceMirror) {
  for (int lane = 0; lane < kLanes; ++lane) {
    if (packet.geometry[lane] < 0) continue;
    const SurfaceSide s = FindSide(*in.scene, packet, lane);
    FetchFactors(*s.material, packet, lane, forceMirror);
    FetchIndices(*s.material, packet, lane);
    FetchDiffuse(in, s, packet, lane);
    if (in.switches.useLightmap) FetchLightmap(*in.scene, s, packet, lane);
    FetchOpacity(*s.material, packet, lane);
  }
}

}  // namespace qv
