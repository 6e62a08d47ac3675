#pragma once

#include <assimp/Importer.hpp>

#include "host/model/LoadModel.h"
#include "tests/host/TestFolder.h"

namespace qv::host {

// A folder for model files and what lies beside them.
class ModelFolder : public TestFolder {
 protected:
  // The scene of a model that has to be readable.
  static Scene Load(const std::filesystem::path& path, const LoadOptions& options = {}) {
    LoadResult result = LoadModel(path, options);
    EXPECT_TRUE(result.scene) << result.error;
    return result.scene ? std::move(*result.scene) : Scene();
  }

  // A triangle for each material, which is a letter of "model.mtl" beside it.
  std::filesystem::path WriteTriangle(const std::string& materials = "m") {
    std::string text = "mtllib model.mtl\nv 0 0 0\nv 1 0 0\nv 0 1 0\nvt 0 0\nvt 1 0\nvt 0 1\n";
    for (const char name : materials) {
      text += std::string("usemtl ") + name + "\nf 1/1 2/2 3/3\n";
    }
    return Write("model.obj", text);
  }

  // A glTF file of one triangle, (0,0,0), (1,0,0), (0,1,0): the fields of its nodes and scene, and
  // what its primitive has beside its points.
  std::filesystem::path WriteGltf(const std::string& fields, const std::string& primitive = "") {
    return Write("model.gltf", R"({"asset":{"version":"2.0"},"scene":0,)" + fields + R"(,
"meshes":[{"primitives":[{"attributes":{"POSITION":0})" +
                                   primitive +
                                   R"(}]}],
"accessors":[{"bufferView":0,"componentType":5126,"count":3,"type":"VEC3",
"min":[0,0,0],"max":[1,1,0]}],
"bufferViews":[{"buffer":0,"byteLength":36}],
"buffers":[{"byteLength":36,"uri":"data:application/octet-stream;base64,)"
                                   "AAAAAAAAAAAAAAAAAACAPwAAAAAAAAAAAAAAAAAAgD8AAAAA"
                                   R"("}]})");
  }
};

inline std::filesystem::path Sample(const std::string& name) {
  return std::filesystem::path(QUORVANE_SAMPLE_MODELS) / name;
}

// Whether two paths name one file, however they are written.
inline bool SameFile(const std::filesystem::path& a, const std::filesystem::path& b) {
  std::error_code error;
  return std::filesystem::equivalent(a, b, error);
}

// The build for Windows leaves out importers of formats that are seldom met there.
inline bool Reads(const std::string& extension) {
  return Assimp::Importer().IsExtensionSupported(extension);
}

inline Vec3 PositionOf(const MeshVertex& vertex) {
  return {vertex.position[0], vertex.position[1], vertex.position[2]};
}

inline Vec3 NormalOf(const MeshVertex& vertex) {
  return {vertex.normal[0], vertex.normal[1], vertex.normal[2]};
}

}  // namespace qv::host
