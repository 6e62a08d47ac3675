#include "render/trace/TransmissionFilter.h"

#include "render/material/TextureSampling.h"

namespace qv {
namespace {

struct SurfaceHit {
  unsigned geometry;
  unsigned primitive;
  float u, v;
  float distance;
};

float OpacityAt(const ShadowContext& context, const SurfaceHit& hit) {
  const Mesh& mesh = *context.scene->Meshes()[hit.geometry];
  const std::uint32_t word = mesh.TriangleMaterials()[hit.primitive];
  const RenderMaterial& material = context.scene->Materials()[FrontMaterial(word)];
  if (!material.hasTexture || !material.texture.hasAlpha) return material.opacity;

  const std::uint32_t* corner = mesh.Indices() + std::size_t{hit.primitive} * 3;
  const UvPair* uvs = mesh.TextureCoords();
  const float w = 1 - hit.u - hit.v;
  float uv[2];
  for (int i = 0; i < 2; ++i) {
    uv[i] = w * uvs[corner[0]].side[0][i] + hit.u * uvs[corner[1]].side[0][i] +
            hit.v * uvs[corner[2]].side[0][i];
  }
  const float footprint =
      context.footprintScale * hit.distance * mesh.TexelScales()[hit.primitive].side[0];
  return SampleAlphaMips(material.texture, footprint, uv[0], 1 - uv[1]) * material.opacity;
}

}  // namespace

void TransmissionFilter(const RTCFilterFunctionNArguments* args) {
  constexpr float kNothingLeft = 0.01f;
  auto& context = *reinterpret_cast<ShadowContext*>(args->context);
  const unsigned n = args->N;
  for (unsigned i = 0; i < n; ++i) {
    if (args->valid[i] == 0) continue;
    const SurfaceHit hit{RTCHitN_geomID(args->hit, n, i), RTCHitN_primID(args->hit, n, i),
                         RTCHitN_u(args->hit, n, i), RTCHitN_v(args->hit, n, i),
                         RTCRayN_tfar(args->ray, n, i)};
    float& attenuation = context.attenuation[RTCRayN_id(args->ray, n, i)];
    attenuation *= 1 - OpacityAt(context, hit);
    if (attenuation < kNothingLeft) {
      attenuation = 0;
    } else {
      args->valid[i] = 0;
    }
  }
}

void InitShadowContext(ShadowContext& context, const RenderScene& scene, float footprintScale) {
  rtcInitIntersectContext(&context.context);
  context.context.flags = RTC_INTERSECT_CONTEXT_FLAG_INCOHERENT;
  context.context.filter = &TransmissionFilter;
  context.scene = &scene;
  context.footprintScale = footprintScale;
  for (float& left : context.attenuation) left = 1.0f;
}

}  // namespace qv
