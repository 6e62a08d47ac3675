#pragma once

#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

#include "host/model/TemporaryFolder.h"

namespace qv::host {

// A folder of a test's own.
class TestFolder : public ::testing::Test {
 protected:
  TestFolder() : folder_(*temporary_.NewPath("-test")) {
    std::filesystem::create_directory(folder_);
  }

  std::filesystem::path Write(const std::filesystem::path& name, const std::string& text) {
    std::filesystem::path path = folder_ / name;
    std::filesystem::create_directories(path.parent_path());
    std::ofstream(path, std::ios::binary) << text;
    return path;
  }

  // A model that is read at once.
  std::filesystem::path WriteModel() {
    return Write("model.obj", "v 0 0 0\nv 1 0 0\nv 0 1 0\nf 1 2 3\n");
  }

  static std::string TextOf(const std::filesystem::path& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
  }

  const std::filesystem::path& folder() const { return folder_; }

 private:
  TemporaryFolder temporary_;
  std::filesystem::path folder_;
};

}  // namespace qv::host
