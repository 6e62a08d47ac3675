#pragma once

#include <cstdint>
#include <limits>

namespace qv {

// Lanes of a packet: an 8 by 8 tile of the picture, row by row.
constexpr int kLanes = 64;
constexpr int kTileSide = 8;

// `t` of a ray that may go any distance.
constexpr float kUnlimited = std::numeric_limits<float>::max();

using LaneFloats = float[kLanes];
using LaneInts = std::int32_t[kLanes];

// The unit of work: 64 rays and all that shading knows of them, one array a quantity. Three-vectors
// are three arrays. Integer masks are off where negative.
struct alignas(64) RayPacket {
  LaneFloats color[3];      // red, green, blue: the result
  LaneFloats direction[3];  // of the ray
  LaneFloats hitU, hitV;    // barycentric coordinates
  LaneFloats normal[3];     // for shading, on the side that the ray comes from
  LaneFloats texU, texV;
  LaneFloats lightmapU, lightmapV;
  LaneFloats position[3];  // the hit drawn back along the ray: origin of further rays
  LaneFloats lightColor[3];
  LaneFloats lightDirection[3];
  LaneFloats diffuse[3];
  LaneFloats specular[3];
  LaneFloats reflected[3];
  LaneFloats lightmap[3];
  LaneFloats t;          // hit distance of the last ray
  LaneFloats distance;   // sum of the ray lengths from the eye
  LaneFloats incidence;  // dot(direction, normal); negative once the material is fetched
  LaneFloats lightCosine;
  LaneFloats inverseSquare;  // 1 / squared distance to the light
  LaneFloats spotFactor;
  LaneFloats diffuseFactor, specularExponent, reflectance;  // of the material
  LaneFloats throughput;      // what the ray's result counts for in the pixel
  LaneFloats alpha;           // opacity at the hit
  LaneFloats iorFrom, iorTo;  // refractive indices
  LaneInts geometry;          // negative: no hit, or the lane is not active
  LaneInts primitive;
  LaneInts hasDiffuse, hasSpecular;
  LaneInts lightMask, specularMask;
  LaneInts reflectKind;   // 1 mirror; k above 1 blurred with k - 1 rays
  LaneInts transmitKind;  // 1 refracted; 2 straight through
  LaneInts lightmapPage;
};

}  // namespace qv
