#pragma once

#include <cstddef>
#include <string_view>

#include "render/frame/PixelRays.h"
#include "render/trace/RayPacket.h"

namespace qv {

// The small vector operations of shading, over the 64 lanes of a packet, compiled for each
// instruction set and chosen at start. A lane whose mask is negative is left alone unless a comment
// says otherwise. All arrays are aligned to 64 bytes.

// Unnormalised directions of the primary rays of a tile whose first pixel is (x, y).
void TileDirections(const PixelRays& rays, int x, int y, LaneFloats (&direction)[3]);

// A packet about to leave the eye through the pixels of the tile whose first one is (x, y): black,
// with unit directions; what hits and materials fill stays as it is.
void StartPrimaryRays(const PixelRays& rays, int x, int y, RayPacket& packet);

// The colours of a whole tile, row by row, into pixels of three floats; rows are `stride` floats
// apart.
void StoreTile(const LaneFloats (&color)[3], float* rows, std::size_t stride);

// A vector shorter than 1e-10 becomes (0, 0, 1). All lanes.
void NormaliseDirections(LaneFloats (&v)[3]);

// Shading normals: scaled by the processor's estimate of 1 / length with one Newton step.
void NormaliseNormals(LaneFloats (&v)[3], const LaneInts& mask);

// Inactive lanes give 0.
void DotProducts(const LaneFloats (&a)[3], const LaneFloats (&b)[3], const LaneInts& mask,
                 LaneFloats& out);

// d - 2 (d . n) n
void Reflect(const LaneFloats (&d)[3], const LaneFloats (&n)[3], const LaneInts& mask,
             LaneFloats (&out)[3]);

// From a point light to the surface: d = position - origin. A lane stays active where the light is
// on the side that the ray comes from; its cosine is then |n . d|, unnormalised. Elsewhere the mask
// becomes -1, d and the cosine 0.
void LightVectors(const float (&origin)[3], const LaneFloats (&position)[3],
                  const LaneFloats (&normal)[3], const LaneFloats& incidence, LaneInts& mask,
                  LaneFloats (&d)[3], LaneFloats& cosine);

// To a directional light: the cosine is n . toLight. A lane stays active where it is above 0.
void DirectionalLightVectors(const float (&toLight)[3], const LaneFloats (&normal)[3],
                             LaneInts& mask, LaneFloats (&d)[3], LaneFloats& cosine);

// color += factor * weight * a * tint, channel by channel.
void AddScaled(LaneFloats (&color)[3], const LaneInts& mask, float factor, const LaneFloats& weight,
               const LaneFloats (&a)[3], const float (&tint)[3]);

// out = a * b on active lanes, 0 elsewhere.
void Products(const LaneFloats& a, const LaneFloats& b, const LaneInts& mask, LaneFloats& out);

// color += weight * a * b, channel by channel.
void AddProducts(LaneFloats (&color)[3], const LaneInts& mask, const LaneFloats& weight,
                 const LaneFloats (&a)[3], const LaneFloats (&b)[3]);

// Turns one direction by the shortest-arc rotations from +z to each lane's unit normal; for a
// normal of -z by half a turn about x.
void RotateFromUp(const float (&v)[3], const LaneFloats (&normal)[3], const LaneInts& mask,
                  LaneFloats (&out)[3]);

// True if a lane is active.
bool AnyActive(const LaneInts& mask);

// The name of the instruction set in use, such as "AVX2".
const char* VectorInstructionSet();

// Lets none better than the named one be used, for comparisons. To be called before anything else
// here. False if the processor has no such set or the program was not built for it.
bool LimitVectorInstructionSet(std::string_view name);

}  // namespace qv
