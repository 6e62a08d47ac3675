#include <FreeImage.h>

#include "host/model/ImagePixels.h"
#include "tests/host/model/ModelFolder.h"

namespace qv::host {
namespace {

struct Rgba {
  int red, green, blue, alpha;
  bool operator==(const Rgba& other) const = default;
};

void PrintTo(const Rgba& pixel, std::ostream* out) {
  *out << pixel.red << ' ' << pixel.green << ' ' << pixel.blue << ' ' << pixel.alpha;
}

class Images : public ModelFolder {
 protected:
  // Two texels in a row, given from the top left.
  static ImagePixels Row(const aiTexel& left, const aiTexel& right) {
    aiTexture texture;
    texture.mWidth = 2;
    texture.mHeight = 1;
    texture.pcData = new aiTexel[2]{left, right};
    return std::move(*PixelsFromTexels(texture));
  }

  static Rgba At(const ImagePixels& pixels, unsigned x, unsigned y = 0) {
    RGBQUAD pixel = {};
    FreeImage_GetPixelColor(pixels.get(), x, y, &pixel);
    return {pixel.rgbRed, pixel.rgbGreen, pixel.rgbBlue, pixel.rgbReserved};
  }
};

// A texel is blue, green, red, alpha.
TEST_F(Images, TintMultipliesInLinearLight) {
  ImagePixels pixels = Row({255, 188, 255, 77}, {0, 0, 0, 255});
  // sRGB 188 is about half of full linear light; half of that is 137.
  EXPECT_TRUE(Tint(pixels, Vec3(0, 0.5f, 1)));
  EXPECT_EQ(At(pixels, 0), (Rgba{0, 137, 255, 77}));
  EXPECT_EQ(At(pixels, 1), (Rgba{0, 0, 0, 255}));
  EXPECT_FALSE(Tint(pixels, Vec3(1, 1, 1)));
}

TEST_F(Images, AlphaIsDroppedOrCut) {
  ImagePixels opaque = Row({1, 2, 3, 0}, {4, 5, 6, 255});
  EXPECT_TRUE(MakeOpaque(opaque));
  EXPECT_EQ(At(opaque, 0), (Rgba{3, 2, 1, 255}));
  EXPECT_FALSE(MakeOpaque(opaque));

  ImagePixels cut = Row({1, 2, 3, 127}, {4, 5, 6, 128});
  EXPECT_TRUE(CutAlpha(cut, 0.5f));
  EXPECT_EQ(At(cut, 0).alpha, 0);
  EXPECT_EQ(At(cut, 1).alpha, 255);
}

TEST_F(Images, OpacityComesFromAlphaOrElseFromBrightness) {
  ImagePixels pixels = Row({9, 9, 9, 255}, {9, 9, 9, 255});
  EXPECT_TRUE(TakeOpacity(pixels, Row({255, 255, 255, 10}, {0, 0, 0, 200})));
  EXPECT_EQ(At(pixels, 0).alpha, 10);
  EXPECT_EQ(At(pixels, 1).alpha, 200);
  EXPECT_TRUE(TakeOpacity(pixels, Row({255, 255, 255, 255}, {0, 0, 0, 255})));
  EXPECT_EQ(At(pixels, 0), (Rgba{9, 9, 9, 255}));
  EXPECT_EQ(At(pixels, 1), (Rgba{9, 9, 9, 0}));
}

TEST_F(Images, EmbeddedTexelsStartAtTheTop) {
  aiTexture texture;
  texture.mWidth = 1;
  texture.mHeight = 2;
  texture.pcData = new aiTexel[2]{{0, 0, 255, 255}, {255, 0, 0, 255}};
  const auto pixels = PixelsFromTexels(texture);
  ASSERT_TRUE(pixels);
  const auto path = folder() / "texels.png";
  ASSERT_TRUE(Save(*pixels, path));
  const auto loaded = LoadPixels(path);
  ASSERT_TRUE(loaded);
  // The library counts rows from the bottom.
  EXPECT_EQ(At(*loaded, 0, 1), (Rgba{255, 0, 0, 255}));
  EXPECT_EQ(At(*loaded, 0, 0), (Rgba{0, 0, 255, 255}));
}

TEST_F(Images, OpacityMapOfAMaterialGoesIntoItsTexture) {
  ASSERT_TRUE(Save(Row({1, 2, 3, 255}, {4, 5, 6, 255}), folder() / "color.png"));
  ASSERT_TRUE(Save(Row({255, 255, 255, 255}, {0, 0, 0, 255}), folder() / "mask.png"));
  Write("model.mtl", "newmtl m\nmap_Kd color.png\nmap_d mask.png\n");
  const Scene scene = Load(WriteTriangle());
  const auto texture = LoadPixels(scene.materials.at(0).texturePath);
  ASSERT_TRUE(texture);
  EXPECT_EQ(At(*texture, 0), (Rgba{3, 2, 1, 255}));
  EXPECT_EQ(At(*texture, 1), (Rgba{6, 5, 4, 0}));
}

// A mask of 16 bits, and a picture that is cut off: what is sound stays.
TEST_F(Images, UnusualAndSpoiltFilesOfAMaterial) {
  FIBITMAP* mask = FreeImage_AllocateT(FIT_UINT16, 2, 1, 16);
  reinterpret_cast<WORD*>(FreeImage_GetScanLine(mask, 0))[0] = 0x80FF;
  ASSERT_TRUE(FreeImage_Save(FIF_PNG, mask, (folder() / "mask.png").string().c_str(), 0));
  FreeImage_Unload(mask);
  ASSERT_TRUE(Save(Row({1, 2, 3, 255}, {4, 5, 6, 255}), folder() / "color.png"));
  std::filesystem::copy_file(folder() / "color.png", folder() / "cut.png");
  std::filesystem::resize_file(folder() / "cut.png", 45);
  Write("model.mtl",
        "newmtl a\nKd 0 1 0\nmap_Kd color.png\nmap_d mask.png\n"
        "newmtl b\nKd 0 1 0\nmap_Kd cut.png\nmap_d mask.png\n"
        "newmtl c\nmap_Kd color.png\nmap_d cut.png\n");
  const Scene scene = Load(WriteTriangle("abc"));
  ASSERT_EQ(scene.materials.size(), 3u);
  const auto masked = LoadPixels(scene.materials[0].texturePath);
  ASSERT_TRUE(masked);
  EXPECT_EQ(At(*masked, 0).alpha, 0x80);
  EXPECT_EQ(At(*masked, 1).alpha, 0);
  EXPECT_FALSE(scene.materials[1].hasTexture);
  EXPECT_TRUE(scene.materials[1].diffuseColor.isApprox(Vec3(0, 1, 0)));
  const auto unmasked = LoadPixels(scene.materials[2].texturePath);
  ASSERT_TRUE(unmasked);
  EXPECT_EQ(At(*unmasked, 0), (Rgba{3, 2, 1, 255}));
  EXPECT_EQ(scene.warnings.size(), 1u);
}

TEST_F(Images, NoImageIsReadFromOtherFiles) {
  EXPECT_FALSE(IsReadableImage(Write("text.txt", "nothing")));
  EXPECT_FALSE(LoadPixels(Write("broken.png", "\x89PNG but not really")));
  EXPECT_FALSE(LoadPixels(folder() / "none.png"));
}

}  // namespace
}  // namespace qv::host
