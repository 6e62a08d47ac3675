#pragma once

#include <span>
#include <vector>

#include "core/Random.h"
#include "core/Vec.h"

namespace qv {

// Triangles that emit light of one colour, sampled as an area light: about one sample for each unit
// of area, about 64 for a large light. A light without area gets no samples and gives no light.
struct RenderLEMLight {
  Vec3 emission{0, 0, 0};
  std::vector<Vec3> vertices;  // three a triangle
  std::vector<Vec3>
      faceNormals;      // one a triangle, unit length, or zero for a triangle without area
  Vec3 power{0, 0, 0};  // emission times the area; set with the samples
  std::vector<Vec3> samplePositions;
  std::vector<Vec3> sampleNormals;

  // `corners` are nine floats a triangle.
  RenderLEMLight(const Vec3& emission, std::span<const float> corners);

  // Lifts the triangles a little off their surfaces and draws the samples anew.
  void Sample(Random& random);
};

// Draws the samples of all lights, in order, from one generator seeded with 1234.
void SampleLEMLights(std::span<RenderLEMLight> lights);

}  // namespace qv
