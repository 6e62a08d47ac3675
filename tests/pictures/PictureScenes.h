#pragma once

#include <functional>
#include <string>
#include <vector>

#include "core/RenderCamera.h"
#include "render/RaytraceImpl.h"

namespace qv::test {

// A scene whose picture two systems are compared by.
struct PictureScene {
  std::string name;
  RenderCamera camera;
  // Hands the scene to a renderer that has none yet. False, with a line on standard error, if it
  // cannot be read.
  std::function<bool(RaytraceImpl& renderer)> send;
};

// Bodies with shadows and a mirror; every kind of material and light; and a house, from `model`.
std::vector<PictureScene> PictureScenes(const std::string& model);

}  // namespace qv::test
