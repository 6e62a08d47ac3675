#pragma once

#include "render/shade/ShadeInputs.h"

namespace qv {

constexpr int kMostDepth = 10;

// Adds the colour of the packet's traced rays to `packet.color`. `packets` are the calling thread's
// own.
void ShadePacket(const ShadeInputs& in, RayPacket& packet, ThreadPackets& packets, int depth,
                 bool forceMirror);

// The steps of ShadePacket, each over the lanes with a hit (`geometry` not negative).

// Reads the material at the hit: side, texture, factors, and how the ray goes on.
void FetchMaterial(const ShadeInputs& in, RayPacket& packet, bool forceMirror);
// Adds the ambient term.
void ShadeAmbient(const ShadeInputs& in, RayPacket& packet);
// Adds diffuse and specular light of the lights, with shadows.
void ShadeDirect(const ShadeInputs& in, RayPacket& packet);

}  // namespace qv
