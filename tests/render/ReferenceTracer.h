#pragma once

#include <map>
#include <string>
#include <vector>

#include "TracedScene.h"

namespace qv::test {

// The shading of the renderer a second time, written from its formulas alone: one ray at a time, in
// doubles, meeting the triangles by trying them all. It takes from the renderer what is data: mip
// levels, the points of the emitting triangles, the sample directions, the sky.
class ReferenceTracer {
 public:
  using V = Eigen::Vector3d;

  // Both must outlive the tracer; switches and factors of `traced` are read when a ray is traced.
  ReferenceTracer(const SceneBuilder& builder, const TracedScene& traced);

  // The colour of a ray that lies in this lane of its packet. The packet must hold no other ray, or
  // none that meets both a surface to look through and one that blurs.
  V Color(const Ray& ray, RenderPass pass, int lane);

  // How often each branch of the shading was taken, by its name.
  std::map<std::string, int> visits;
  // Of the meshes, in their order; may be shorter.
  std::vector<MeshLightmap> lightmaps;

 private:
  struct Triangle {
    V p[3], n[3];
    V edges[2];          // from the first corner to the others
    double uv[2][3][2];  // [side][corner]
    std::size_t mesh;
    std::size_t number;  // in its mesh
    std::size_t material[2];
    double texels[2];  // a unit
    V tangent[2], bitangent[2];
  };
  struct Hit {
    const Triangle* triangle = nullptr;
    double t = 0, u = 0, v = 0;
  };
  struct Path {
    V origin, direction;
    double t, distance, throughput, iorTo;
    Hit hit;
  };
  struct Surface {
    V position, view, normal;
    double incidence;
    int side;
    const MaterialParameters* material;
    V diffuse, baked;
    double alpha;
    double iorFrom, iorTo;
    int reflectKind, transmitKind;
    bool hasBaked;
    double throughput;
  };
  struct Texel {
    double c[4];
  };

  void Visit(const char* branch) { ++visits[branch]; }
  bool Previewed() const { return pass_ == PassPreview || pass_ == PassSunPreview; }
  bool Final() const { return pass_ == PassFull || pass_ == PassAntialias; }

  void AddTriangle(const SceneBuilder& builder, std::size_t mesh, std::size_t number);
  static bool Meet(const Triangle& triangle, const V& origin, const V& direction, Hit& hit);
  // Moves the path to what it meets.
  void Trace(Path& path) const;
  static Eigen::Vector2d PlaceOnTexture(const Hit& hit, int side);
  // What is left of a ray of light; 0 where it is blocked.
  double Light(const V& origin, const V& direction, double reach);

  V Shade(Path path, int depth, bool forceMirror);
  Surface Fetch(Path& path, bool forceMirror);
  void FetchTexture(const Path& path, Surface& s);
  void FetchBaked(const Path& path, Surface& s);
  V Ambient(const Surface& s, int depth);
  V AmbientColor(const Surface& s);
  double Openness(const Surface& s);
  V Direct(const Surface& s);
  V Phong(const Surface& s, const RenderLight& light, const V& toSurface, double cosine,
          double spot, const V& color);
  V FromLamp(const Surface& s, const RenderLight& light);
  double SpotFactor(const RenderLight& light, double c);
  V FromDirection(const Surface& s, const RenderLight& light);
  V Emitters(const Surface& s);
  V Through(const Path& path, const Surface& s, int depth, bool forceMirror);
  V Blurred(const Path& path, const Surface& s, double throughput);

  static double Log2(double v);
  static Texel Bilinear(const TextureMip& mip, double s, double t);
  Texel Blend(const RenderTexture& texture, double footprint, double s, double t);
  V Sky(const V& direction) const;

  const SceneBuilder& builder_;
  const TracedScene& traced_;
  std::vector<Triangle> triangles_;
  RenderPass pass_ = PassFull;
  int lane_ = 0;
  std::uint32_t draws_ = 0;
};

}  // namespace qv::test
