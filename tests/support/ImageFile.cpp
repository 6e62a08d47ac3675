#include "support/ImageFile.h"

#include <FreeImage.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <iterator>
#include <random>
#include <vector>

namespace qv::test {
namespace {

class ScratchFolder {
 public:
  ScratchFolder() {
    path_ = std::filesystem::temp_directory_path() /
            ("quorvane-test-" + std::to_string(std::random_device()()));
    std::filesystem::create_directories(path_);
  }
  ~ScratchFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
  }
  const std::filesystem::path& path() const { return path_; }

 private:
  std::filesystem::path path_;
};

}  // namespace

std::string ScratchPath(const std::string& name) {
  static const ScratchFolder folder;
  const testing::TestInfo* test = testing::UnitTest::GetInstance()->current_test_info();
  std::string file = (test == nullptr ? "" : std::string(test->name()) + "-") + name;
  std::replace(file.begin(), file.end(), '/', '-');
  return (folder.path() / file).string();
}

std::string ReadBytes(const std::filesystem::path& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

void WriteBytes(const std::filesystem::path& path, const std::string& bytes) {
  std::ofstream(path, std::ios::binary) << bytes;
}

std::string WritePng(const std::string& name, int width, int height,
                     std::span<const std::uint8_t> rgba) {
  std::string path = ScratchPath(name);
  FIBITMAP* bitmap = FreeImage_Allocate(width, height, 32);
  const std::uint8_t* from = rgba.data();
  for (int y = height - 1; y >= 0; --y) {
    BYTE* to = FreeImage_GetScanLine(bitmap, y);
    for (int x = 0; x < width; ++x, from += 4, to += 4) {
      to[FI_RGBA_RED] = from[0];
      to[FI_RGBA_GREEN] = from[1];
      to[FI_RGBA_BLUE] = from[2];
      to[FI_RGBA_ALPHA] = from[3];
    }
  }
  EXPECT_TRUE(FreeImage_Save(FIF_PNG, bitmap, path.c_str(), 0)) << path;
  FreeImage_Unload(bitmap);
  return path;
}

std::string WritePlainPng(const std::string& name, int width, int height, std::uint8_t r,
                          std::uint8_t g, std::uint8_t b, std::uint8_t a) {
  std::vector<std::uint8_t> rgba;
  for (int i = 0; i < width * height; ++i) rgba.insert(rgba.end(), {r, g, b, a});
  return WritePng(name, width, height, rgba);
}

}  // namespace qv::test
