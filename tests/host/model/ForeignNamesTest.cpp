// Folders and files whose names have letters of other languages, as users of such languages have.

#include <assimp/texture.h>

#include "host/model/ImagePixels.h"
#include "imagefile/ImageFile.h"
#include "platform/PathText.h"
#include "tests/host/model/ModelFolder.h"

namespace qv::host {
namespace {

namespace fs = std::filesystem;

class ForeignNames : public ModelFolder {
 protected:
  static constexpr const char8_t* kFolder = u8"\u00e4\u6728";         // ä木
  static constexpr const char8_t* kImage = u8"w\u00e4nd \u6728.png";  // wänd 木.png

  // One pixel of orange.
  void WriteImage(const fs::path& file) {
    aiTexel orange[1];
    orange[0].r = 200;
    orange[0].g = 100;
    orange[0].b = 50;
    orange[0].a = 255;
    aiTexture texture;
    texture.mWidth = texture.mHeight = 1;
    texture.pcData = orange;
    const auto pixels = PixelsFromTexels(texture);
    texture.pcData = nullptr;
    ASSERT_TRUE(pixels && Save(*pixels, file));
  }
};

TEST_F(ForeignNames, ModelIsReadWithItsTexture) {
  const fs::path model = Write(fs::path(kFolder) / u8"h\u00e4us.obj",
                               "mtllib f\xC3\xA4rben.mtl\nv 0 0 0\nv 1 0 0\nv 0 1 0\nvt 0 0\n"
                               "usemtl m\nf 1/1 2/1 3/1\n");
  Write(fs::path(kFolder) / u8"f\u00e4rben.mtl",
        "newmtl m\nKd 1 1 1\nmap_Kd w\xC3\xA4nd \xE6\x9C\xA8.png\n");
  const fs::path image = folder() / kFolder / kImage;
  WriteImage(image);
  ASSERT_TRUE(fs::is_regular_file(image));

  const Scene scene = Load(model);
  EXPECT_TRUE(scene.warnings.empty()) << scene.warnings.front();
  ASSERT_EQ(scene.materials.size(), 1u);
  ASSERT_TRUE(scene.materials[0].hasTexture);
  // As the link has it.
  const fs::path texture = platform::PathFromUtf8(scene.materials[0].texturePath);
  EXPECT_TRUE(SameFile(texture, image)) << scene.materials[0].texturePath;
  EXPECT_TRUE(SameFile(scene.directory, folder() / kFolder));
  const auto size = imagefile::SizeOf(texture);
  ASSERT_TRUE(size && imagefile::Load(texture));
  EXPECT_EQ(size->width, 1u);

  const LoadResult missing = LoadModel(folder() / kFolder / u8"\u6728.obj");
  EXPECT_NE(missing.error.find("\xC3\xA4\xE6\x9C\xA8"), std::string::npos) << missing.error;
}

}  // namespace
}  // namespace qv::host
