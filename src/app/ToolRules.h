#pragma once

namespace qv {

// What the lightmap of the model means for the tools that light it otherwise.
struct LightmapUse {
  bool inUse = false;
  bool holdsLEM = false;  // the light of the LEM lights is in it
};

struct ToolState {
  bool enabled = false;
  bool checked = false;
};

// A lightmap in use has its own occlusion.
constexpr ToolState AmbientOcclusionTool(bool interactive, bool used, const LightmapUse& lightmap) {
  return {interactive && !lightmap.inUse, used};
}

// A lightmap in use that holds the LEM light already must not get it twice.
constexpr ToolState LEMTool(bool interactive, bool used, const LightmapUse& lightmap) {
  const bool held = lightmap.inUse && lightmap.holdsLEM;
  return {interactive && !held, used && !held};
}

}  // namespace qv
