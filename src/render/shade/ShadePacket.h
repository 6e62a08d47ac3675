#pragma once

#include "render/shade/ShadeInputs.h"
#include "render/shade/ShadeThread.h"

namespace qv {

constexpr int kMostDepth = 10;

// Adds the colour of the packet's traced rays to `packet.color`. With `forceMirror` blurred
// reflections are plain mirrors.
void ShadePacket(const ShadeInputs& in, RayPacket& packet, ShadeThread& thread, int depth,
                 bool forceMirror);

// The steps of ShadePacket, each over the lanes with a hit (`geometry` not negative).

// Reads the material at the hit: side, texture, factors, and how the ray goes on.
void FetchMaterial(const ShadeInputs& in, RayPacket& packet, bool forceMirror);
// Adds the ambient term.
void ShadeAmbient(const ShadeInputs& in, RayPacket& packet, ShadeThread& thread, int depth);
// Adds diffuse and specular light of the lights, with shadows.
void ShadeDirect(const ShadeInputs& in, RayPacket& packet);
// Adds the light of emitting triangles.
void ShadeLEM(const ShadeInputs& in, RayPacket& packet);
// Adds what lies behind transparent surfaces.
void ShadeTransmission(const ShadeInputs& in, RayPacket& packet, ShadeThread& thread, int depth,
                       bool forceMirror);
// Adds mirrored and blurred reflections; `direction` holds the mirror directions already.
void ShadeGlossy(const ShadeInputs& in, RayPacket& packet, ShadeThread& thread);

}  // namespace qv
