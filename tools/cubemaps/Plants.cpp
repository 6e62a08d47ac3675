#include "Plants.h"

#include <algorithm>
#include <cmath>

#include "Noise.h"

namespace qv::cubemaps {
namespace {

constexpr float kTurn = 6.2831853f;

Vec3 InBall(Dice& dice) {
  Vec3 p;
  do {
    p = Vec3(dice.Roll(-1, 1), dice.Roll(-1, 1), dice.Roll(-1, 1));
  } while (p.squaredNorm() > 1);
  return p;
}

Vec3 OnBall(Dice& dice) {
  return InBall(dice).normalized();
}

void AddLeaf(Mesh& mesh, const Vec3& middle, const Vec3& normal, float size, Dice& dice) {
  const Vec3 side = normal.unitOrthogonal();
  const Vec3 other = normal.cross(side);
  const float angle = dice.Roll(0, kTurn);
  const Vec3 along = (side * std::cos(angle) + other * std::sin(angle)) * size;
  const Vec3 across = normal.cross(along) * 0.32f;
  // A rhombus is near enough to a leaf.
  mesh.AddQuad(middle - along * 0.5f, middle + across, middle + along * 0.5f, middle - across);
}

// How wide a crown is at a height of 0 to 1 in it, 1 at its widest.
float CrownWidth(float height, float point) {
  const float round =
      std::sqrt(std::max(0.0f, 1 - std::pow(std::abs(height * 2 - 0.85f) / 1.15f, 2.2f)));
  const float cone = std::pow(1 - height, 0.8f) * std::min(1.0f, height * 6 + 0.5f);
  return Blend(round, cone, point);
}

Material LeafMaterial(const Vec3& color) {
  return [color](const Hit& hit) {
    Surface surface;
    const float bunch = Noise(hit.local * 0.9f, 3);
    const float leaf = Noise(hit.local * 9.0f, 5);
    const float light = 1 + 0.45f * bunch + 0.35f * leaf + 0.5f * (hit.tint - 0.5f);
    const float yellow = 0.5f * (hit.tint - 0.5f) + 0.25f * leaf;
    surface.albedo = (color * light + Vec3(0.05f, 0.02f, -0.01f) * yellow).cwiseMax(0.005f);
    surface.normal = hit.normal;
    surface.through = 0.75f;
    return surface;
  };
}

Surface Bark(const Hit& hit) {
  Surface surface;
  const float rough = Fbm(Vec3(hit.local.x() * 9, hit.local.y() * 9, hit.local.z() * 2), 3, 8);
  surface.albedo = Vec3(0.10f, 0.080f, 0.062f) * (1 + 0.6f * rough);
  surface.normal = hit.normal;
  return surface;
}

// From the trunk outwards and up, in a bow.
void AddBranch(Mesh& wood, const Vec3& from, const Vec3& to, float radius) {
  const Vec3 bow(0, 0, -0.12f * (to - from).norm());
  Vec3 before = from;
  constexpr int kPieces = 4;
  for (int i = 1; i <= kPieces; ++i) {
    const float t = static_cast<float>(i) / kPieces;
    const Vec3 here = from + (to - from) * t + bow * (4 * t * (1 - t));
    const float thin = static_cast<float>(i - 1) / kPieces;
    wood.AddRod(before, here, radius * (1 - 0.85f * thin), radius * (1 - 0.85f * t), 5);
    before = here;
  }
}

}  // namespace

int AddTree(World& world, const TreeShape& shape, std::uint32_t seed) {
  Dice dice(seed);
  Mesh wood;
  Mesh leaves;
  const float crown = shape.height - shape.trunk;
  const float girth = 0.028f * shape.height;
  if (shape.trunk > 0) {
    Vec3 before(0, 0, -0.3f);
    for (int i = 1; i <= 6; ++i) {
      const float t = static_cast<float>(i) / 6;
      const Vec3 here(dice.Roll(-0.12f, 0.12f), dice.Roll(-0.12f, 0.12f),
                      (shape.trunk + crown * 0.75f) * t);
      wood.AddRod(before, here, girth * (1.05f - 0.9f * (t - 1.0f / 6)), girth * (1.05f - 0.9f * t),
                  8);
      before = here;
    }
  }
  for (int i = 0; i < shape.twigs; ++i) {
    const float height = std::pow(dice.Roll(), 0.85f);
    const float angle = dice.Roll(0, kTurn);
    // Crowns have bays and bulges of their own.
    const float lumps =
        1 + 0.5f * Noise(Vec3(std::cos(angle) * 1.3f, std::sin(angle) * 1.3f, height * 3), seed);
    const float reach =
        shape.spread * CrownWidth(height, shape.point) * lumps * std::sqrt(dice.Roll(0.12f, 1));
    const Vec3 middle(reach * std::cos(angle), reach * std::sin(angle),
                      shape.trunk + crown * height * (0.96f + 0.06f * lumps));
    if (shape.trunk > 0 && i % 3 == 0) {
      const float foot = std::max(shape.trunk * 0.8f, middle.z() - reach * 0.9f);
      AddBranch(wood, Vec3(0, 0, std::min(foot, shape.trunk + crown * 0.7f)), middle,
                girth * 0.28f);
    }
    const Vec3 outwards = (middle - Vec3(0, 0, shape.trunk + crown * 0.35f)).normalized();
    for (int leaf = 0; leaf < shape.leaves; ++leaf) {
      const Vec3 off = InBall(dice).cwiseProduct(Vec3(1, 1, 0.7f)) * shape.bunch;
      const Vec3 normal = (OnBall(dice) + outwards * 0.8f + Vec3(0, 0, 0.5f)).normalized();
      AddLeaf(leaves, middle + off, normal, shape.leafSize * dice.Roll(0.7f, 1.3f), dice);
    }
  }
  std::vector<World::Part> parts;
  parts.push_back({std::move(leaves), LeafMaterial(shape.color)});
  if (!wood.points.empty()) parts.push_back({std::move(wood), Bark});
  return world.AddPrototype(std::move(parts));
}

int AddGrass(World& world, const GrassShape& shape, std::uint32_t seed) {
  Dice dice(seed);
  Mesh green;
  Mesh dry;
  Mesh petals;
  const auto blade = [&](Mesh& mesh, float height, float width, float bend) {
    const Vec3 foot(dice.Roll(-0.5f, 0.5f), dice.Roll(-0.5f, 0.5f), -0.02f);
    const float angle = dice.Roll(0, kTurn);
    const Vec3 lean(std::cos(angle), std::sin(angle), 0);
    const float turn = dice.Roll(0, kTurn);
    const Vec3 side = Vec3(std::cos(turn), std::sin(turn), 0) * (width / 2);
    const Vec3 up(0, 0, height);
    const Vec3 knee = foot + up * 0.55f + lean * (height * bend * 0.25f);
    const Vec3 tip = foot + up * (1 - 0.25f * bend) + lean * (height * bend);
    mesh.AddQuad(foot - side, foot + side, knee + side * 0.8f, knee - side * 0.8f);
    mesh.AddQuad(knee - side * 0.8f, knee + side * 0.8f, tip, tip);
    return tip;
  };
  for (int i = 0; i < shape.blades; ++i) {
    const bool isDry = dice.Roll() < shape.dryness;
    blade(isDry ? dry : green, shape.height * dice.Roll(0.45f, 1.15f),
          shape.width * dice.Roll(0.6f, 1.3f), shape.bend * dice.Roll(0.3f, 1.3f));
  }
  for (int i = 0; i < shape.stalks; ++i) {
    const Vec3 tip = blade(dry, shape.height * dice.Roll(1.2f, 1.8f), 0.0025f, 0.25f);
    dry.AddRod(tip - Vec3(0, 0, 0.05f), tip + Vec3(0.005f, 0, 0.01f), 0.0035f, 0.001f, 4);
  }
  for (int i = 0; i < shape.flowers; ++i) {
    const Vec3 tip = blade(green, shape.height * dice.Roll(0.8f, 1.25f), 0.003f, 0.2f);
    for (int petal = 0; petal < 6; ++petal) {
      AddLeaf(petals, tip + Vec3(dice.Roll(-.008f, .008f), dice.Roll(-.008f, .008f), 0.004f),
              (Vec3(0, 0, 1) + 0.4f * OnBall(dice)).normalized(), 0.026f, dice);
    }
  }
  const auto leafy = [&shape](const Vec3& color) -> Material {
    return [color, height = shape.height](const Hit& hit) {
      Surface surface;
      const float up = std::clamp(hit.local.z() / height, 0.0f, 1.0f);
      const float patch = Fbm(hit.position.x() * 0.35f, hit.position.y() * 0.35f, 4, 31);
      const float own = Noise(hit.local * 60.0f, 33);
      surface.albedo =
          (color * (0.55f + 0.65f * up) * (1 + 0.3f * own + 0.25f * patch) +
           Vec3(0.055f, 0.030f, 0.0f) * (std::max(patch, 0.0f) + (hit.tint - 0.5f)) * up)
              .cwiseMax(0.004f);
      // Halfway to the sky: a blade is round, and a meadow looks the same from all sides.
      surface.normal = (hit.normal + Vec3(0, 0, 0.7f)).normalized();
      surface.through = 0.6f;
      return surface;
    };
  };
  std::vector<World::Part> parts;
  parts.push_back({std::move(green), leafy(shape.color)});
  if (!dry.points.empty()) parts.push_back({std::move(dry), leafy(shape.dry)});
  if (!petals.points.empty()) {
    parts.push_back({std::move(petals), [](const Hit& hit) {
                       Surface surface;
                       surface.albedo =
                           hit.tint < 0.6f ? Vec3(0.72f, 0.56f, 0.04f) : Vec3(0.75f, 0.74f, 0.70f);
                       surface.normal = hit.normal;
                       surface.through = 0.4f;
                       return surface;
                     }});
  }
  return world.AddPrototype(std::move(parts));
}

}  // namespace qv::cubemaps
