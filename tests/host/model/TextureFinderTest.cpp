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

  // The file found from the model's folder, which has to be that one of the test's folder. Not by
  // its path: systems differ in how they separate folders and in whether letters are small.
  ::testing::AssertionResult Finds(const std::string& name, const std::string& expected) {
    TextureFinder finder(folder() / "model");
    const auto path = finder.Find(name);
    if (!path) return ::testing::AssertionFailure() << name << " is not found";
    if (SameFile(*path, folder() / expected)) return ::testing::AssertionSuccess();
    return ::testing::AssertionFailure() << name << " is taken for " << path->string();
  }
};

TEST_F(TextureFinding, FollowsPathsAsTheyStand) {
  EXPECT_TRUE(Finds("near.png", "model/near.png"));
  EXPECT_TRUE(Finds("./Maps/Wood 1.JPG", "model/Maps/Wood 1.JPG"));
  EXPECT_TRUE(Finds("../elsewhere/marble.png", "elsewhere/marble.png"));
  EXPECT_TRUE(Finds((folder() / "elsewhere/marble.png").string(), "elsewhere/marble.png"));
}

TEST_F(TextureFinding, RepairsWhatOtherSystemsAndProgramsWrite) {
  EXPECT_TRUE(Finds("maps\\wood 1.jpg", "model/Maps/Wood 1.JPG"));
  EXPECT_TRUE(Finds("Maps/Wood%201.JPG", "model/Maps/Wood 1.JPG"));
  EXPECT_TRUE(Finds("file:///C:/work/maps/WOOD%201.jpg", "model/Maps/Wood 1.JPG"));
  EXPECT_TRUE(Finds("C:\\Users\\me\\Desktop\\near.png", "model/near.png"));
  EXPECT_TRUE(Finds("\"NEAR.PNG\"\r", "model/near.png"));
}

TEST_F(TextureFinding, LooksForTheNameAloneBelowAndBesideTheModel) {
  EXPECT_TRUE(Finds("D:\\lost\\Brick.BMP", "model/maps2/deep/below/brick.bmp"));
  EXPECT_TRUE(Finds("stone.png", "textures/Stone.png"));
}

TEST_F(TextureFinding, FindsNothingWhereThereIsNothing) {
  TextureFinder finder(folder() / "model");
  for (const char* name : {"", "  ", "/", "..", "marble.png", "Maps", "near.png/x", "%", "%zz"}) {
    EXPECT_FALSE(finder.Find(name)) << name;
  }
  EXPECT_FALSE(finder.Find(std::string(5000, 'x')));
}

}  // namespace
}  // namespace qv::host
