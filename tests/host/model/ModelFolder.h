#pragma once

#include <gtest/gtest.h>

#include <assimp/Importer.hpp>
#include <filesystem>
#include <fstream>
#include <string>

#include "host/model/LoadModel.h"
#include "host/model/TemporaryFolder.h"

namespace qv::host {

// A folder of a test's own, for model files and what lies beside them.
class ModelFolder : public ::testing::Test {
 protected:
  ModelFolder() : folder_(*temporary_.NewPath("-test")) {
    std::filesystem::create_directory(folder_);
  }

  std::filesystem::path Write(const std::filesystem::path& name, const std::string& text) {
    std::filesystem::path path = folder_ / name;
    std::filesystem::create_directories(path.parent_path());
    std::ofstream(path, std::ios::binary) << text;
    return path;
  }

  // The scene of a model that has to be readable.
  static Scene Load(const std::filesystem::path& path, const LoadOptions& options = {}) {
    LoadResult result = LoadModel(path, options);
    EXPECT_TRUE(result.scene) << result.error;
    return result.scene ? std::move(*result.scene) : Scene();
  }

  const std::filesystem::path& folder() const { return folder_; }

 private:
  TemporaryFolder temporary_;
  std::filesystem::path folder_;
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
