#include "host/model/TextureFinder.h"
#include "tests/host/model/ModelFolder.h"

namespace qv::host {
namespace {

class TextureFinding : public ModelFolder {
 protected:
  void SetUp() override {
    Write("model/near.png", "");
    Write("model/Maps/Wood 1.JPG", "");
    Write("model/maps2/deep/below/brick.bmp", "");
    Write("textures/Stone.png", "");
    Write("elsewhere/marble.png", "");
  }

  // The path found from the model's folder, as it lies in the test's folder.
  std::string Found(const std::string& name) {
    TextureFinder finder(folder() / "model");
    const auto path = finder.Find(name);
    return path ? path->lexically_relative(folder()).string() : "";
  }
};

TEST_F(TextureFinding, FollowsPathsAsTheyStand) {
  EXPECT_EQ(Found("near.png"), "model/near.png");
  EXPECT_EQ(Found("./Maps/Wood 1.JPG"), "model/Maps/Wood 1.JPG");
  EXPECT_EQ(Found("../elsewhere/marble.png"), "elsewhere/marble.png");
  EXPECT_EQ(Found((folder() / "elsewhere/marble.png").string()), "elsewhere/marble.png");
}

TEST_F(TextureFinding, RepairsWhatOtherSystemsAndProgramsWrite) {
  EXPECT_EQ(Found("maps\\wood 1.jpg"), "model/Maps/Wood 1.JPG");
  EXPECT_EQ(Found("Maps/Wood%201.JPG"), "model/Maps/Wood 1.JPG");
  EXPECT_EQ(Found("file:///C:/work/maps/WOOD%201.jpg"), "model/Maps/Wood 1.JPG");
  EXPECT_EQ(Found("C:\\Users\\me\\Desktop\\near.png"), "model/near.png");
  EXPECT_EQ(Found("\"NEAR.PNG\"\r"), "model/near.png");
}

TEST_F(TextureFinding, LooksForTheNameAloneBelowAndBesideTheModel) {
  EXPECT_EQ(Found("D:\\lost\\Brick.BMP"), "model/maps2/deep/below/brick.bmp");
  EXPECT_EQ(Found("stone.png"), "textures/Stone.png");
}

TEST_F(TextureFinding, FindsNothingWhereThereIsNothing) {
  for (const char* name : {"", "  ", "/", "..", "marble.png", "Maps", "near.png/x", "%", "%zz"}) {
    EXPECT_EQ(Found(name), "") << name;
  }
  EXPECT_EQ(Found(std::string(5000, 'x')), "");
}

}  // namespace
}  // namespace qv::host
