#include <FreeImage.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <string>
#include <utility>
#include <vector>

#include "core/Log.h"
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
  const int offset = row * mip.pitch + column * 4;
  const auto texel = mip.pixels.begin() + offset;
  return {texel, texel + 4};
}

// Saves a bitmap as a PNG file, frees it, and gives the path.
std::string SavePng(FIBITMAP* bitmap) {
  std::string path = test::ScratchPath("saved.png");
  EXPECT_TRUE(FreeImage_Save(FIF_PNG, bitmap, path.c_str(), PNG_Z_BEST_SPEED));
  FreeImage_Unload(bitmap);
  return path;
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
    EXPECT_FALSE(texture->hasAlpha);
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

// Two colours in a palette, the second half transparent.
TEST(Texture, ReadsPalettes) {
  FIBITMAP* bitmap = FreeImage_Allocate(2, 1, 8);
  RGBQUAD* palette = FreeImage_GetPalette(bitmap);
  palette[0] = {30, 20, 10, 0};
  palette[1] = {60, 50, 40, 0};
  FreeImage_GetScanLine(bitmap, 0)[1] = 1;
  BYTE alphas[] = {255, 128};
  FreeImage_SetTransparencyTable(bitmap, alphas, 2);
  const auto texture = LoadTexture(SavePng(bitmap));
  ASSERT_TRUE(texture);
  EXPECT_TRUE(texture->hasAlpha);
  EXPECT_EQ(Bgra(texture->mips[0], 0, 0), (std::vector<int>{30, 20, 10, 255}));
  EXPECT_EQ(Bgra(texture->mips[0], 1, 0), (std::vector<int>{60, 50, 40, 128}));
}

TEST(Texture, ReadsSixteenBits) {
  FIBITMAP* bitmap = FreeImage_AllocateT(FIT_UINT16, 2, 1, 16);
  auto* row = reinterpret_cast<WORD*>(FreeImage_GetScanLine(bitmap, 0));
  row[0] = 0x4080;
  row[1] = 0xC0FF;
  const auto grey = LoadTexture(SavePng(bitmap));
  ASSERT_TRUE(grey);
  EXPECT_EQ(Bgra(grey->mips[0], 0, 0), (std::vector<int>{0x40, 0x40, 0x40, 255}));
  EXPECT_EQ(Bgra(grey->mips[0], 1, 0), (std::vector<int>{0xC0, 0xC0, 0xC0, 255}));

  bitmap = FreeImage_AllocateT(FIT_RGBA16, 1, 1);
  *reinterpret_cast<FIRGBA16*>(FreeImage_GetScanLine(bitmap, 0)) = {0x2080, 0x40FF, 0x6000, 0x8000};
  const auto color = LoadTexture(SavePng(bitmap));
  ASSERT_TRUE(color);
  EXPECT_TRUE(color->hasAlpha);
  EXPECT_EQ(Bgra(color->mips[0], 0, 0), (std::vector<int>{0x60, 0x40, 0x20, 0x80}));
}

// 8 by 8 pixels of red 200, green 100, blue 50 in four inks, under a name that is not theirs.
TEST(Texture, ReadsJpegsOfFourInksAndByWhatTheyAreNotByTheirName) {
  const std::string path = test::ScratchPath("inks.png");
  test::WriteBytes(path, test::ReadBytes(QUORVANE_RENDER_TESTS "/inks.jpg"));
  const auto texture = LoadTexture(path);
  ASSERT_TRUE(texture);
  EXPECT_EQ(MipSizes(*texture).front(), (Size{8, 8}));
  const std::vector<int> bgra = Bgra(texture->mips[0], 3, 3);
  const int expected[] = {50, 100, 200, 255};
  for (std::size_t i = 0; i < 4; ++i) EXPECT_NEAR(bgra[i], expected[i], 6) << i;
}

// The longest side that is allowed on a narrow strip, in one bit a pixel.
TEST(Texture, ReadsLongSides) {
  FIBITMAP* bitmap = FreeImage_Allocate(16384, 3, 1);
  const auto texture = LoadTexture(SavePng(bitmap));
  ASSERT_TRUE(texture);
  EXPECT_EQ(MipSizes(*texture), (std::vector<Size>{{16384, 3}, {8192, 1}}));
}

// Files of all usual kinds, cut off or with a byte of their header changed, which may make them
// say that they are huge: no texture, or a whole one, and soon.
TEST(Texture, OutlivesSpoiltFiles) {
  SetLogSink([](LogLevel, const std::string&) {});
  const auto start = std::chrono::steady_clock::now();
  FIBITMAP* bitmap = FreeImage_Allocate(16, 16, 24);
  for (std::size_t i = 0; i < 16; ++i) FreeImage_GetScanLine(bitmap, 3)[3 * i] = 255;
  for (const char* kind : {"png", "jpg", "bmp", "tga", "gif"}) {
    const std::string path = test::ScratchPath(std::string("spoilt.") + kind);
    const FREE_IMAGE_FORMAT format = FreeImage_GetFIFFromFilename(path.c_str());
    FIBITMAP* eight = FreeImage_ConvertTo8Bits(bitmap);
    ASSERT_TRUE(FreeImage_Save(format, format == FIF_GIF ? eight : bitmap, path.c_str(), 0));
    FreeImage_Unload(eight);
    const std::string whole = test::ReadBytes(path);
    ASSERT_TRUE(LoadTexture(path)) << kind;
    for (std::size_t at = 0; at < std::min<std::size_t>(whole.size(), 64); ++at) {
      std::string changed = whole;
      changed[at] = static_cast<char>(changed[at] ^ (at % 2 == 0 ? 0xff : 0x40));
      for (const std::string& bytes : {whole.substr(0, at), changed}) {
        test::WriteBytes(path, bytes);
        const auto texture = LoadTexture(path);
        if (!texture) continue;
        for (const TextureMip& mip : texture->mips) {
          ASSERT_GT(mip.width, 0);
          ASSERT_EQ(mip.pixels.size(), static_cast<std::size_t>(mip.width * mip.height * 4));
        }
      }
    }
  }
  FreeImage_Unload(bitmap);
  EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::minutes(1));
  SetLogSink({});
}

// 24000 by 24000 texels would need more than 2^31 bytes; as one bit a pixel the file is small.
TEST(Texture, RefusesMoreTexelsThanCanBeAddressed) {
  FIBITMAP* bitmap = FreeImage_Allocate(24000, 24000, 1);
  EXPECT_FALSE(LoadTexture(SavePng(bitmap)));
}

TEST(Texture, MayLieWhereNamesHaveAnyLetters) {
  const std::filesystem::path plain = test::WritePlainPng("plain.png", 3, 2, 1, 2, 3, 255);
  const std::filesystem::path folder = plain.parent_path() / u8"\u00e4\u6728";
  std::filesystem::create_directory(folder);
  std::filesystem::rename(plain, folder / u8"w\u00e4nd.png");
  const auto texture =
      LoadTexture(plain.parent_path().string() + "/\xC3\xA4\xE6\x9C\xA8/w\xC3\xA4nd.png");
  ASSERT_TRUE(texture);
  EXPECT_EQ(texture->mips[0].width, 3);
}

TEST(Texture, RefusesWhatIsNoImage) {
  const std::string bytes = test::ReadBytes(test::WritePlainPng("whole.png", 64, 64, 1, 2, 3, 4));
  test::WriteBytes(test::ScratchPath("cut.png"), bytes.substr(0, bytes.size() / 2));
  test::WriteBytes(test::ScratchPath("head.png"), bytes.substr(0, 20));
  test::WriteBytes(test::ScratchPath("empty.png"), "");
  test::WriteBytes(test::ScratchPath("text.png"), "This is a text.\n");
  test::WriteBytes(test::ScratchPath("text.unknown"), "This is a text.\n");
  // A bitmap file of no columns.
  std::string flat(54, '\0');
  flat.replace(0, 2, "BM");
  flat[10] = 54;
  flat[14] = 40;
  flat[22] = 4;
  flat[26] = 1;
  flat[28] = 24;
  test::WriteBytes(test::ScratchPath("flat.bmp"), flat);
  std::filesystem::create_directory(test::ScratchPath("folder.png"));
  for (const char* name : {"cut.png", "head.png", "empty.png", "text.png", "text.unknown",
                           "flat.bmp", "folder.png", "missing.png"}) {
    EXPECT_FALSE(LoadTexture(test::ScratchPath(name))) << name;
  }
  EXPECT_FALSE(LoadTexture(""));
}

}  // namespace
}  // namespace qv
