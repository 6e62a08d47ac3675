#include <FreeImage.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <utility>
#include <vector>

#include "render/material/RenderTexture.h"
#include "support/ImageFile.h"

namespace qv {
namespace {

using Size = std::pair<int, int>;

std::vector<Size> MipSizes(const RenderTexture& texture) {
  std::vector<Size> sizes;
  for (const TextureMip& mip : texture.mips) sizes.emplace_back(mip.width, mip.height);
  return sizes;
}

std::vector<int> Bgra(const TextureMip& mip, int column, int row) {
  const auto offset = static_cast<std::size_t>(row * mip.pitch + column * 4);
  return {mip.pixels.begin() + static_cast<std::ptrdiff_t>(offset),
          mip.pixels.begin() + static_cast<std::ptrdiff_t>(offset + 4)};
}

void WriteFile(const std::string& path, const std::string& bytes) {
  std::ofstream(path, std::ios::binary) << bytes;
}

TEST(Texture, HalvesItsSidesWhileBothStayAtLeastOne) {
  const std::vector<std::pair<Size, std::vector<Size>>> cases = {
      {{1, 1}, {{1, 1}}},
      {{5, 3}, {{5, 3}, {2, 1}}},
      {{1, 16}, {{1, 16}}},
      {{8, 8}, {{8, 8}, {4, 4}, {2, 2}, {1, 1}}},
      {{33, 12}, {{33, 12}, {16, 6}, {8, 3}, {4, 1}}}};
  for (const auto& [size, mips] : cases) {
    const auto path = test::WritePlainPng("size.png", size.first, size.second, 10, 20, 30, 255);
    const auto texture = LoadTexture(path);
    ASSERT_TRUE(texture);
    EXPECT_EQ(MipSizes(*texture), mips);
    EXPECT_EQ(texture->path, path);
    for (const TextureMip& mip : texture->mips) {
      EXPECT_FLOAT_EQ(mip.invWidth * static_cast<float>(mip.width), 1);
      EXPECT_FLOAT_EQ(mip.invHeight * static_cast<float>(mip.height), 1);
      EXPECT_EQ(Bgra(mip, mip.width - 1, mip.height - 1), (std::vector<int>{30, 20, 10, 255}));
    }
  }
}

TEST(Texture, StoresTheTopRowFirstAndBoxesItsMips) {
  // Four quarters of 2 by 2: red and green above, blue and white below.
  std::vector<std::uint8_t> rgba;
  for (int y = 0; y < 4; ++y) {
    for (int x = 0; x < 4; ++x) {
      const bool right = x >= 2;
      const bool below = y >= 2;
      const auto on = [](bool v) { return static_cast<std::uint8_t>(v ? 255 : 0); };
      rgba.insert(rgba.end(), {on(right == below), on(right), on(below), 255});
    }
  }
  const auto texture = LoadTexture(test::WritePng("quarters.png", 4, 4, rgba));
  ASSERT_TRUE(texture);
  EXPECT_EQ(Bgra(texture->mips[0], 0, 0), (std::vector<int>{0, 0, 255, 255}));
  EXPECT_EQ(Bgra(texture->mips[0], 3, 0), (std::vector<int>{0, 255, 0, 255}));
  EXPECT_EQ(Bgra(texture->mips[0], 0, 3), (std::vector<int>{255, 0, 0, 255}));
  EXPECT_EQ(Bgra(texture->mips[1], 1, 1), (std::vector<int>{255, 255, 255, 255}));
  EXPECT_EQ(Bgra(texture->mips[1], 1, 0), (std::vector<int>{0, 255, 0, 255}));
  for (int byte = 0; byte < 3; ++byte) EXPECT_NEAR(Bgra(texture->mips[2], 0, 0)[byte], 127, 1);
}

TEST(Texture, KnowsWhetherItIsTransparent) {
  const auto opaque = LoadTexture(test::WritePlainPng("opaque.png", 2, 2, 1, 2, 3, 255));
  ASSERT_TRUE(opaque);
  EXPECT_FALSE(opaque->hasAlpha);
  const auto clear = LoadTexture(test::WritePlainPng("clear.png", 2, 2, 1, 2, 3, 77));
  ASSERT_TRUE(clear);
  EXPECT_TRUE(clear->hasAlpha);
  EXPECT_EQ(Bgra(clear->mips[1], 0, 0)[3], 77);
}

// Two colours in a palette, the second half transparent.
TEST(Texture, ReadsPalettes) {
  FIBITMAP* bitmap = FreeImage_Allocate(2, 1, 8);
  RGBQUAD* palette = FreeImage_GetPalette(bitmap);
  palette[0] = {30, 20, 10, 0};
  palette[1] = {60, 50, 40, 0};
  FreeImage_GetScanLine(bitmap, 0)[1] = 1;
  BYTE alphas[] = {255, 128};
  FreeImage_SetTransparencyTable(bitmap, alphas, 2);
  const std::string path = test::ScratchPath("palette.png");
  ASSERT_TRUE(FreeImage_Save(FIF_PNG, bitmap, path.c_str(), 0));
  FreeImage_Unload(bitmap);

  const auto texture = LoadTexture(path);
  ASSERT_TRUE(texture);
  EXPECT_TRUE(texture->hasAlpha);
  EXPECT_EQ(Bgra(texture->mips[0], 0, 0), (std::vector<int>{30, 20, 10, 255}));
  EXPECT_EQ(Bgra(texture->mips[0], 1, 0), (std::vector<int>{60, 50, 40, 128}));
}

TEST(Texture, ReadsSixteenBitGrey) {
  FIBITMAP* bitmap = FreeImage_AllocateT(FIT_UINT16, 2, 1, 16);
  auto* row = reinterpret_cast<WORD*>(FreeImage_GetScanLine(bitmap, 0));
  row[0] = 0x4080;
  row[1] = 0xC0FF;
  const std::string path = test::ScratchPath("grey16.png");
  ASSERT_TRUE(FreeImage_Save(FIF_PNG, bitmap, path.c_str(), 0));
  FreeImage_Unload(bitmap);

  const auto texture = LoadTexture(path);
  ASSERT_TRUE(texture);
  EXPECT_EQ(Bgra(texture->mips[0], 0, 0), (std::vector<int>{0x40, 0x40, 0x40, 255}));
  EXPECT_EQ(Bgra(texture->mips[0], 1, 0), (std::vector<int>{0xC0, 0xC0, 0xC0, 255}));
}

// 24000 by 24000 texels would need more than 2^31 bytes; as one bit a pixel the file is small.
TEST(Texture, RefusesMoreTexelsThanCanBeAddressed) {
  FIBITMAP* bitmap = FreeImage_Allocate(24000, 24000, 1);
  const std::string path = test::ScratchPath("huge.png");
  ASSERT_TRUE(FreeImage_Save(FIF_PNG, bitmap, path.c_str(), PNG_Z_BEST_SPEED));
  FreeImage_Unload(bitmap);
  EXPECT_FALSE(LoadTexture(path));
}

TEST(Texture, RefusesWhatIsNoImage) {
  const std::string whole = test::WritePlainPng("whole.png", 64, 64, 1, 2, 3, 4);
  std::ifstream in(whole, std::ios::binary);
  const std::string bytes{std::istreambuf_iterator<char>(in), {}};
  WriteFile(test::ScratchPath("cut.png"), bytes.substr(0, bytes.size() / 2));
  WriteFile(test::ScratchPath("head.png"), bytes.substr(0, 20));
  WriteFile(test::ScratchPath("empty.png"), "");
  WriteFile(test::ScratchPath("text.png"), "This is a text.\n");
  WriteFile(test::ScratchPath("text.unknown"), "This is a text.\n");
  std::filesystem::create_directory(test::ScratchPath("folder.png"));
  for (const char* name : {"cut.png", "head.png", "empty.png", "text.png", "text.unknown",
                           "folder.png", "missing.png"}) {
    EXPECT_FALSE(LoadTexture(test::ScratchPath(name))) << name;
  }
  EXPECT_FALSE(LoadTexture(""));
}

}  // namespace
}  // namespace qv
