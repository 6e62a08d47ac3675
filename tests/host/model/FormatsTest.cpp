// Units and axes, over small files written here.
#include <cmath>

#include "tests/host/model/ModelFolder.h"

namespace qv::host {
namespace {

class Formats : public ModelFolder {
 protected:
  // A triangle from the origin to `width` along x, and to `height` along the second axis given.
  std::filesystem::path WriteObj(float width, const std::string& upPoint) {
    return Write("model.obj",
                 "v 0 0 0\nv " + std::to_string(width) + " 0 0\nv " + upPoint + "\nf 1 2 3\n");
  }

  std::filesystem::path WriteCollada(const std::string& asset, const std::string& matrix = "") {
    return Write("model.dae", R"(<?xml version="1.0"?>
<COLLADA xmlns="http://www.collada.org/2005/11/COLLADASchema" version="1.4.1">
<asset>)" + asset + R"(</asset>
<library_geometries><geometry id="g"><mesh>
<source id="p"><float_array id="pa" count="9">0 0 0 10 0 0 0 0 30</float_array>
<technique_common><accessor source="#pa" count="3" stride="3"><param name="X" type="float"/>
<param name="Y" type="float"/><param name="Z" type="float"/></accessor></technique_common></source>
<source id="n"><float_array id="na" count="9">0 -1 0 0 -1 0 0 -1 0</float_array>
<technique_common><accessor source="#na" count="3" stride="3"><param name="X" type="float"/>
<param name="Y" type="float"/><param name="Z" type="float"/></accessor></technique_common></source>
<vertices id="v"><input semantic="POSITION" source="#p"/></vertices>
<triangles count="1"><input semantic="VERTEX" source="#v" offset="0"/>
<input semantic="NORMAL" source="#n" offset="0"/><p>0 1 2</p></triangles>
</mesh></geometry></library_geometries>
<library_visual_scenes><visual_scene id="s"><node id="o">)" +
                                  matrix +
                                  R"(<instance_geometry url="#g"/></node>
</visual_scene></library_visual_scenes><scene><instance_visual_scene url="#s"/></scene>
</COLLADA>)");
  }

  static LoadOptions With(std::optional<UpAxis> up, std::optional<LengthUnit> unit) {
    LoadOptions options;
    options.up = up;
    options.unit = unit;
    return options;
  }
};

TEST_F(Formats, ObjHasItsYAxisUpUnlessToldOtherwise) {
  const auto path = WriteObj(1, "0 2 0");
  EXPECT_TRUE(Load(path).bounds.max().isApprox(Vec3(1, 0, 2) / 0.0254f, 1e-5f));
  const Scene flat = Load(path, With(UpAxis::kZ, {}));
  EXPECT_TRUE(flat.bounds.max().isApprox(Vec3(1, 2, 0) / 0.0254f, 1e-5f));
  // Turning y up to z up is a turn, not a mirror: what is in front of the object comes at -y.
  EXPECT_LT(Load(WriteObj(1, "0 1 3")).bounds.min().y(), -3 / 0.026f);
}

TEST_F(Formats, UnitsAreThoseOfTheOption) {
  const auto path = WriteObj(1, "0 2 0");
  const std::pair<LengthUnit, float> inches[] = {{LengthUnit::kInch, 1},
                                                 {LengthUnit::kMetre, 39.3701f},
                                                 {LengthUnit::kCentimetre, 0.393701f},
                                                 {LengthUnit::kMillimetre, 0.0393701f},
                                                 {LengthUnit::kFoot, 12}};
  for (const auto& [unit, expected] : inches) {
    const Scene scene = Load(path, With({}, unit));
    EXPECT_NEAR(scene.bounds.max().x() / expected, 1, 1e-4f);
  }
}

TEST_F(Formats, SizeTellsTheUnitWhereTheFileDoesNot) {
  const std::pair<float, float> inchesPerUnit[] = {
      {12, 39.3701f}, {90, 39.3701f}, {1200, 0.393701f}, {12000, 0.0393701f}};
  for (const auto& [width, expected] : inchesPerUnit) {
    EXPECT_NEAR(Load(WriteObj(width, "0 1 0")).bounds.max().x() / width / expected, 1, 1e-4f)
        << width;
  }
}

TEST_F(Formats, ColladaStatesUnitAndAxis) {
  const auto path = WriteCollada("<unit name=\"foot\" meter=\"0.3048\"/><up_axis>Z_UP</up_axis>");
  EXPECT_TRUE(Load(path).bounds.max().isApprox(Vec3(120, 0, 360), 1e-4f));
  // What the caller says counts for the coordinates as they stand in the file.
  EXPECT_TRUE(
      Load(path, With({}, LengthUnit::kInch)).bounds.max().isApprox(Vec3(10, 0, 30), 1e-4f));
  const Scene lying = Load(path, With(UpAxis::kY, {}));
  EXPECT_NEAR(lying.bounds.min().y(), -360, 0.01f);
  EXPECT_NEAR(lying.bounds.max().x(), 120, 0.01f);
}

TEST_F(Formats, ColladaMayHaveItsXAxisUp) {
  const Scene scene = Load(WriteCollada("<unit meter=\"0.0254\"/><up_axis>X_UP</up_axis>"));
  EXPECT_NEAR(scene.bounds.max().z(), 10, 1e-3f);
}

TEST_F(Formats, IfcCanBeToldToLieDown) {
  const Scene lying = Load(Sample("IFC/AC14-FZK-Haus.ifc"), With(UpAxis::kY, {}));
  EXPECT_NEAR(lying.bounds.max().z(), 13 / 0.0254f, 0.01f);
}

TEST_F(Formats, MirrorsAndScalesOfNodesKeepNormalsUprightAndTrianglesTurnedTheSameWay) {
  const std::string asset = "<unit meter=\"0.0254\"/><up_axis>Z_UP</up_axis>";
  for (const char* matrix : {"", "<matrix>-1 0 0 0 0 1 0 0 0 0 1 0 0 0 0 1</matrix>",
                             "<matrix>1 0 0 5 0 -1 0 0 0 0 1 0 0 0 0 1</matrix>",
                             "<matrix>1 0.5 0 0 0 3 0 0 0 0 -0.1 0 0 0 0 1</matrix>"}) {
    const Scene scene = Load(WriteCollada(asset, matrix));
    ASSERT_EQ(scene.TriangleCount(), 1u) << matrix;
    const SceneMesh& mesh = scene.meshes[0];
    const auto corner = [&](int i) {
      return PositionOf(mesh.vertices[static_cast<std::size_t>(mesh.triangles[0].vertex[i])]);
    };
    const Vec3 face = (corner(1) - corner(0)).cross(corner(2) - corner(0)).normalized();
    for (const MeshVertex& vertex : mesh.vertices) {
      EXPECT_NEAR(NormalOf(vertex).dot(face), 1, 1e-4f) << matrix;
    }
  }
}

TEST_F(Formats, ModelFarFromItsOriginIsMovedThere) {
  const auto path =
      Write("far.obj", "v 4500000 0 -900000\nv 4500010 0 -900000\nv 4500000 5 -900000\nf 1 2 3\n");
  const Scene scene = Load(path, With({}, LengthUnit::kMetre));
  EXPECT_LT(scene.bounds.max().cwiseAbs().maxCoeff(), 1000);
  EXPECT_NEAR(scene.bounds.sizes().x(), 10 / 0.0254f, 0.1f);
  // With y up, the distances east and north; the point in the middle.
  EXPECT_NEAR(scene.origin.x(), 4500005 / 0.0254, 20);
  EXPECT_NEAR(scene.origin.y(), 900000 / 0.0254, 20);
}

}  // namespace
}  // namespace qv::host
