#pragma once

#include <cstddef>
#include <functional>

#include "core/RenderCamera.h"
#include "host/link/HostLink.h"
#include "host/model/Scene.h"

namespace qv::host {

struct SendOptions {
  bool lights = true;
  bool areaLights = true;
  LocationAndTime when;
  RenderCamera camera;
};

struct SentCounts {
  std::size_t meshes = 0, triangles = 0, materials = 0, textures = 0, lights = 0, areaLights = 0;
};

// Hands a whole scene to the viewer, with what the user reads meanwhile: materials, lights, place
// and time, meshes, the end of the scene, the camera. Nothing if the viewer has gone.
std::optional<SentCounts> SendScene(HostLink& link, const Scene& scene, const SendOptions& options);

}  // namespace qv::host
